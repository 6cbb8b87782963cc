#include "legibleText.h"

#include <wchar.h>

#include <array>

#include "platform/Utf8.h"

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

constexpr const char* kEllipsis = "\xE2\x80\xA6";
constexpr std::size_t kEllipsisColumns = 1;

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

struct Shown {
  std::size_t columns;
  std::size_t bytes;
};

// The character at the front of a text that is not empty.
Shown firstShown(std::string_view text) {
  const auto character = platform::firstUtf8Character(text);
  if (!character) return {1, 1};
  const int width = wcwidth(static_cast<wchar_t>(character->character));
  return {width < 0 ? 1 : static_cast<std::size_t>(width), character->bytes};
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
    const Shown first = firstShown(text);
    columns += first.columns;
    text.remove_prefix(first.bytes);
  }
  return columns;
}

std::string cutText(std::string_view text, std::size_t columns) {
  if (columnsOf(text) <= columns) return std::string(text);
  if (columns == 0) return {};
  std::size_t used = kEllipsisColumns;
  std::size_t end = 0;
  while (true) {
    const Shown next = firstShown(text.substr(end));
    if (used + next.columns > columns) break;
    used += next.columns;
    end += next.bytes;
  }
  return std::string(text.substr(0, end)) + kEllipsis;
}
