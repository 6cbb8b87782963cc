// Breaks a text for --help into lines that fit a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace virtualprinter {

// `text` in lines of 100 columns at most, the first one beginning after `column` columns that are
// already there, the others indented by as many. Ends its last line.
std::string wrapped(std::string_view text, std::size_t column);

}  // namespace virtualprinter
