// Says what the system refused, and why.
#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace virtualprinter {

[[noreturn]] inline void fail(const std::string& what, int error = errno) {
  throw std::runtime_error(what + ": " + std::strerror(error));
}

}  // namespace virtualprinter
