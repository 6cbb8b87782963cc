// How bytes that no command line can hold are written on one.
#pragma once

#include <string>

namespace virtualprinter {

// \xHH is a byte, \\ a backslash. Throws std::invalid_argument for anything else after a backslash.
std::string unescape(const std::string& text);

}  // namespace virtualprinter
