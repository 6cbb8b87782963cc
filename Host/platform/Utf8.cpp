#include "platform/Utf8.h"

namespace platform {
namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

std::optional<Utf8Character> firstUtf8Character(std::string_view bytes) noexcept {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char first = at(0);
  if (first < 0x80) return Utf8Character{first, 1};

  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || bytes.size() < size) return std::nullopt;
  char32_t character = first & (0xFFu >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!isContinuation(at(i))) return std::nullopt;
    character = character << 6 | (at(i) & 0x3Fu);
  }
  const bool overlong = (size == 3 && character < 0x800) || (size == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (overlong || surrogate || character > 0x10FFFF) return std::nullopt;
  return Utf8Character{character, size};
}

}  // namespace platform
