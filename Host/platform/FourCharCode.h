// Four-character codes name event classes, commands, controls and columns: four bytes, the first
// character the most significant.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

using FourCharCode = std::uint32_t;

inline namespace literals {

// Anything but four characters does not compile.
consteval FourCharCode operator""_4cc(const char* code, std::size_t length) {
  if (length != 4) throw "a four-character code has four characters";
  FourCharCode value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(code[i]);
  return value;
}

}  // namespace literals
}  // namespace platform
