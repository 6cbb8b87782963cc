// An unsigned number as it lies in a message: most significant byte first, without alignment.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

template <std::unsigned_integral T>
class BigEndian {
 public:
  constexpr BigEndian() = default;
  constexpr BigEndian(T value) {
    for (std::size_t i = sizeof(T); i > 0; --i, value = static_cast<T>(value >> 8)) {
      mBytes[i - 1] = static_cast<std::uint8_t>(value & 0xFF);
    }
  }

  constexpr operator T() const {
    T value = 0;
    for (const std::uint8_t byte : mBytes) value = static_cast<T>(value << 8 | byte);
    return value;
  }

 private:
  std::uint8_t mBytes[sizeof(T)] = {};
};
