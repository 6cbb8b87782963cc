// Texts come from printers, files and the network: whatever the bytes are, they are a text exactly
// when they are UTF-8, and every other form of the text says the same.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Log.h"
#include "LogRecorder.h"
#include "platform/Text.h"
#include "require.h"

namespace {

using platform::Comparison;
using platform::Text;

// What the C library makes of the bytes; false when they are not UTF-8. It knows characters beyond
// Unicode, too.
bool decode(std::string bytes, std::wstring& characters) {
  static const auto conversion = ::iconv_open("WCHAR_T", "UTF-8");
  characters.resize(bytes.size());
  char* from = bytes.data();
  std::size_t fromLeft = bytes.size();
  char* to = reinterpret_cast<char*>(characters.data());
  std::size_t toLeft = characters.size() * sizeof(wchar_t);
  ::iconv(conversion, nullptr, nullptr, nullptr, nullptr);
  const bool isText = ::iconv(conversion, &from, &fromLeft, &to, &toLeft) != std::size_t(-1);
  characters.resize(characters.size() - toLeft / sizeof(wchar_t));
  const auto isUnicode = [](wchar_t character) { return character <= 0x10FFFF; };
  return isText && std::all_of(characters.begin(), characters.end(), isUnicode);
}

void checkForms(const Text& text, std::string_view bytes, const std::wstring& characters) {
  require(text.utf8() == bytes && text.wide() == characters);
  require(Text::fromWide(characters).utf8() == bytes);
  const auto isBeyondUtf16Unit = [](wchar_t character) { return character >= 0x10000; };
  const auto pairs = std::count_if(characters.begin(), characters.end(), isBeyondUtf16Unit);
  require(text.length() == characters.size() + static_cast<std::size_t>(pairs));
  require(text.utf16().size() == text.length());
  text.intValue();
}

// A conversion takes whole characters from the front, as many as both limits allow.
void checkCut(const Text& text, std::size_t units, std::size_t room) {
  std::array<char, 64> buffer;
  buffer.fill('#');
  const Text::Conversion done = text.copyUtf8(units, std::span(buffer).first(room));
  require(done.units <= units && done.bytes <= room);
  const std::string_view copied(buffer.data(), done.bytes);
  require(text.utf8().starts_with(copied) && Text::fromUtf8(copied).length() == done.units);
  require(std::all_of(buffer.begin() + static_cast<std::ptrdiff_t>(done.bytes), buffer.end(),
                      [](char byte) { return byte == '#'; }));
  const std::wstring rest = Text::fromUtf8(text.utf8().substr(done.bytes)).wide();
  const Text next = Text::fromWide(std::wstring_view(rest).substr(0, 1));
  require(rest.empty() || done.bytes + next.utf8().size() > room ||
          done.units + next.length() > units);
}

void checkOrder(const Text& a, const Text& b) {
  for (const Comparison comparison : {Comparison::Exact, Comparison::Numeric}) {
    const int order = platform::compare(a, b, comparison);
    const int opposite = platform::compare(b, a, comparison);
    require((order < 0) == (opposite > 0) && (order == 0) == (opposite == 0));
    require(platform::compare(a, a, comparison) == 0);
  }
  require((platform::compare(a, b) == 0) == (a.utf8() == b.utf8()));
}

// An entry is the text up to its first zero byte, or the beginning of it.
void checkEntry(const Text& text) {
  const LogRecorder recorder;
  Log<5>() << text << std::flush;
  const std::string whole(text.utf8().substr(0, text.utf8().find('\0')));
  require(whole.starts_with(recorder.entries().back().text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  const Text text = Text::fromUtf8(bytes);
  std::wstring characters;
  require(decode(bytes, characters) == !text.isNull());
  if (text.isNull()) return 0;

  checkForms(text, bytes, characters);
  for (const std::size_t room : {0u, 1u, 2u, 3u, 5u, 64u}) {
    for (const std::size_t units : {0u, 1u, 2u, 3u, 7u, 100u}) checkCut(text, units, room);
  }
  const std::size_t middle = characters.size() / 2;
  checkOrder(Text::fromWide(characters.substr(0, middle)),
             Text::fromWide(characters.substr(middle)));
  checkEntry(text);
  return 0;
}
