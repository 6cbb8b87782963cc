#include "wcharStub.h"

#include <algorithm>
#include <bit>
#include <cwchar>
#include <locale>
#include <stdexcept>
#include <string_view>

#include "platform/Assertion.h"
#include "platform/Text.h"

int iswspace(int ch) {
  if (ch >= 0 && ch <= 127) return (ch >= 0x09 && ch <= 0x0D) || ch == 0x20;
  return std::iswspace(static_cast<std::wint_t>(ch));
}

bool isEqualAsLowerCase(wchar_t a, wchar_t b) {
  const std::locale locale;
  return std::tolower(a, locale) == std::tolower(b, locale);
}

int _wcsicmp(const wchar_t* a, const wchar_t* b) {
  // Unsigned, because the difference of two arbitrary elements need not fit.
  const auto difference = [&](std::size_t i) {
    return static_cast<int>(static_cast<unsigned int>(a[i]) - static_cast<unsigned int>(b[i]));
  };
  if (a == b) return 0;
  const std::size_t shorter = std::min(std::wcslen(a), std::wcslen(b));
  for (std::size_t i = 0; i <= shorter; ++i) {
    if (!isEqualAsLowerCase(a[i], b[i])) return difference(i);
  }
  return difference(shorter + 1);
}

void _wcsupr_s(wchar_t* s, std::size_t n) {
  const std::locale locale;
  std::transform(s, s + n, s, [&](wchar_t element) { return std::toupper(element, locale); });
}

wchar_t* wcscpy_s(wchar_t* dst, std::size_t n, const wchar_t* src) {
  return std::wcsncpy(dst, src, n);
}

std::wstring constructFromCStr(const char* bytes, std::size_t len) {
  const platform::Text cfData = platform::Text::fromUtf8(std::string_view(bytes, len));
  platform::assertAt(!cfData.isNull(), "cfData", "constructFromCStr",
                     "Host/installkit/osx/fwupdate/wcharStub", 67);
  return cfData.wide() + L'\0';
}

std::wstring wtrim(const std::wstring& s) {
  const auto isText = [](wchar_t ch) { return iswspace(static_cast<int>(ch)) == 0; };
  const auto first = std::find_if(s.begin(), s.end(), isText);
  const auto last = std::find_if(s.rbegin(), s.rend(), isText).base();
  if (last < first) throw std::length_error("wtrim");
  return std::wstring(first, last);
}

CFStringEncoding getWideCharEncoding() {
  static_assert(sizeof(wchar_t) == 4);
  return std::endian::native == std::endian::big ? kCFStringEncodingUTF32BE
                                                 : kCFStringEncodingUTF32LE;
}
