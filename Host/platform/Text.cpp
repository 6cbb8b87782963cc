#include "platform/Text.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/Utf8.h"

namespace platform {
namespace {

std::size_t utf16Units(char32_t character) { return character >= 0x10000 ? 2 : 1; }

void appendUtf8(std::string& out, char32_t character) {
  const auto put = [&](char32_t value) { out.push_back(static_cast<char>(value)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | character >> 6);
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | character >> 18);
    put(0x80 | (character >> 12 & 0x3F));
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// The digit run at `position`, without its leading zeros; `position` moves behind it.
std::u16string_view digitRun(std::u16string_view text, std::size_t& position) {
  const auto isEnd = [](char16_t unit) { return !isDigit(unit); };
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(position);
  const auto end = std::find_if(begin, text.end(), isEnd);
  const auto significant = std::find_if(begin, end, [](char16_t unit) { return unit != u'0'; });
  position = static_cast<std::size_t>(end - text.begin());
  return {significant, end};
}

int compareNumbers(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

int compareNumerically(std::u16string_view a, std::u16string_view b) {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    if (isDigit(a[i]) && isDigit(b[j])) {
      const int order = compareNumbers(digitRun(a, i), digitRun(b, j));
      if (order != 0) return order;
    } else if (a[i] != b[j]) {
      return a[i] < b[j] ? -1 : 1;
    } else {
      ++i;
      ++j;
    }
  }
  return static_cast<int>(i < a.size()) - static_cast<int>(j < b.size());
}

}  // namespace

Text::Text(std::string bytes) : mBytes(std::make_shared<const std::string>(std::move(bytes))) {}

Text Text::fromUtf8(std::string_view bytes) {
  for (std::string_view rest = bytes; !rest.empty();) {
    const auto first = firstUtf8Character(rest);
    if (!first) return Text();
    rest.remove_prefix(first->bytes);
  }
  return Text(std::string(bytes));
}

Text Text::fromWide(std::wstring_view characters) {
  std::string bytes;
  bytes.reserve(characters.size());
  for (const wchar_t element : characters) {
    const auto character = static_cast<char32_t>(element);
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) return Text();
    appendUtf8(bytes, character);
  }
  return Text(std::move(bytes));
}

std::string_view Text::utf8() const noexcept {
  return mBytes ? std::string_view(*mBytes) : std::string_view();
}

std::size_t Text::length() const noexcept {
  return copyUtf8(std::numeric_limits<std::size_t>::max(), {}).units;
}

Text::Conversion Text::copyUtf8(std::size_t units, std::span<char> buffer) const noexcept {
  Conversion done{0, 0};
  const bool bounded = buffer.data() != nullptr;
  std::string_view rest = utf8();
  while (!rest.empty()) {
    const Utf8Character next = *firstUtf8Character(rest);
    if (done.units + utf16Units(next.character) > units) break;
    if (bounded && done.bytes + next.bytes > buffer.size()) break;
    done.units += utf16Units(next.character);
    done.bytes += next.bytes;
    rest.remove_prefix(next.bytes);
  }
  if (bounded) std::copy_n(utf8().begin(), done.bytes, buffer.begin());
  return done;
}

std::u16string Text::utf16() const {
  std::u16string units;
  for (std::string_view rest = utf8(); !rest.empty();) {
    const Utf8Character next = *firstUtf8Character(rest);
    if (next.character >= 0x10000) {
      const char32_t offset = next.character - 0x10000;
      units.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
    } else {
      units.push_back(static_cast<char16_t>(next.character));
    }
    rest.remove_prefix(next.bytes);
  }
  return units;
}

std::wstring Text::wide() const {
  std::wstring characters;
  for (std::string_view rest = utf8(); !rest.empty();) {
    const Utf8Character next = *firstUtf8Character(rest);
    characters.push_back(static_cast<wchar_t>(next.character));
    rest.remove_prefix(next.bytes);
  }
  return characters;
}

std::int32_t Text::intValue() const noexcept {
  std::string_view rest = utf8();
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size()));
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);

  std::int64_t value = 0;
  constexpr std::int64_t limit = std::int64_t{1} << 31;
  while (!rest.empty() && rest.front() >= '0' && rest.front() <= '9' && value <= limit) {
    value = value * 10 + (rest.front() - '0');
    rest.remove_prefix(1);
  }
  if (negative) value = -value;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

int compare(const Text& a, const Text& b, Comparison comparison) noexcept {
  const std::u16string left = a.utf16();
  const std::u16string right = b.utf16();
  if (comparison == Comparison::Numeric) return compareNumerically(left, right);
  return left.compare(right);
}

}  // namespace platform
