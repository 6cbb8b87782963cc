#include "legibleText.h"

#include <wchar.h>

#include <array>

#include "platform/Utf8.h"

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

struct Range {
  char32_t first;
  char32_t last;
};

// Controls, and the characters that change the direction or the joining of others.
constexpr std::array kIllegible{
    Range{0x0000, 0x001F}, Range{0x007F, 0x009F}, Range{0x00AD, 0x00AD},    Range{0x061C, 0x061C},
    Range{0x200B, 0x200F}, Range{0x2028, 0x202E}, Range{0x2060, 0x206F},    Range{0xFEFF, 0xFEFF},
    Range{0xFFF9, 0xFFFB}, Range{0xE000, 0xF8FF}, Range{0xE0000, 0x10FFFF},
};

bool isLegible(char32_t character) {
  for (const Range& range : kIllegible) {
    if (character >= range.first && character <= range.last) return false;
  }
  return true;
}

}  // namespace

std::string legibleText(std::string_view text) {
  std::string legible;
  while (!text.empty()) {
    const auto character = platform::firstUtf8Character(text);
    const std::size_t bytes = character ? character->bytes : 1;
    if (character && isLegible(character->character)) {
      legible += text.substr(0, bytes);
    } else {
      legible += kReplacement;
    }
    text.remove_prefix(bytes);
  }
  return legible;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const auto character = platform::firstUtf8Character(text);
    const int width = character ? wcwidth(static_cast<wchar_t>(character->character)) : 1;
    columns += width < 0 ? 1 : static_cast<std::size_t>(width);
    text.remove_prefix(character ? character->bytes : 1);
  }
  return columns;
}
