// The characters of UTF-8, one by one, out of bytes that may be anything.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

struct Utf8Character {
  char32_t character;
  std::size_t bytes;  // that it takes
};

// The character at the front of `bytes`, which must not be empty; nothing when the bytes there are
// not valid UTF-8 (overlong forms and surrogates included).
std::optional<Utf8Character> firstUtf8Character(std::string_view bytes) noexcept;

}  // namespace platform
