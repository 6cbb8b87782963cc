#include "StrUtils.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <utility>

#include "wcharStub.h"

namespace StrUtils {
namespace {

constexpr std::size_t kBufferLength = 1024;

// Two zeros behind the text, so that a text that fills the buffer still ends, and the comparison
// that looks one element behind the end finds a zero there.
using Buffer = std::array<wchar_t, kBufferLength + 2>;

Buffer upperCaseCopy(const std::wstring& source) {
  Buffer buffer{};
  wcscpy_s(buffer.data(), kBufferLength, source.c_str());
  _wcsupr_s(buffer.data(), kBufferLength);
  return buffer;
}

// Cuts `text` at its first "*" and returns what follows that; null when there is none.
wchar_t* cutAtWildcard(wchar_t* text) {
  wchar_t* const wildcard = std::wcschr(text, L'*');
  if (wildcard == nullptr) return nullptr;
  *wildcard = L'\0';
  return wildcard + 1;
}

bool containsInOrder(wchar_t* segment, const wchar_t* text) {
  for (;;) {
    wchar_t* const next = cutAtWildcard(segment);
    const wchar_t* const found = std::wcsstr(text, segment);
    if (found == nullptr) return false;
    if (next == nullptr) return true;
    text = found + std::wcslen(segment);
    segment = next;
  }
}

bool isDigit(wchar_t ch) { return ch >= L'0' && ch <= L'9'; }

// Reads the next number in `text` and moves behind it; false when there is none.
bool nextNumber(const wchar_t*& text, long& number) {
  while (*text != L'\0' && !isDigit(*text)) ++text;
  wchar_t* end = nullptr;
  number = std::wcstol(text, &end, 10);
  const bool read = end != text;
  text = end;
  return read;
}

}  // namespace

bool GetIEEE1284KeyValue(const std::wstring& id, const std::wstring& key, std::wstring& value) {
  const std::wstring marked = key + L':';
  const std::size_t found = id.find(marked);
  if (found == std::wstring::npos) return false;
  const std::size_t start = found + marked.size();
  const std::size_t end = id.find(L';', start);
  if (end == std::wstring::npos) return false;
  value = id.substr(start, end - start);
  return true;
}

bool MatchIEEE1284Key(const std::wstring& id, const std::wstring& key,
                      const std::wstring& pattern) {
  std::wstring value;
  return GetIEEE1284KeyValue(id, key, value) && StrCmpWildcardNoCase(pattern, value);
}

bool StrCmpWildcardNoCase(const std::wstring& pattern, const std::wstring& text) {
  Buffer upperPattern = upperCaseCopy(pattern);
  const Buffer upperText = upperCaseCopy(text);
  const wchar_t* const wildcard = std::wcschr(upperPattern.data(), L'*');
  if (wildcard == nullptr) return _wcsicmp(upperPattern.data(), upperText.data()) == 0;

  const auto prefixLength = static_cast<std::size_t>(wildcard - upperPattern.data());
  if (std::wcsncmp(upperPattern.data(), upperText.data(), prefixLength) != 0) return false;
  return containsInOrder(upperPattern.data(), upperText.data());
}

int CompareNumericFields(const wchar_t* a, const wchar_t* b) {
  for (;;) {
    long left = 0;
    long right = 0;
    const bool hasLeft = nextNumber(a, left);
    const bool hasRight = nextNumber(b, right);
    if (!hasLeft) return hasRight ? -1 : 0;
    if (!hasRight || left > right) return 1;
    if (left < right) return -1;
  }
}

void StrFmtSubst(std::wstring& out, const std::wstring& format, const std::wstring& arg) {
  std::wstring buffer(format.size() + arg.size(), L'\0');
  // A text that is cut counts as an error there; it is wanted here.
  static_cast<void>(std::swprintf(buffer.data(), buffer.size(), format.c_str(), arg.c_str()));
  out = std::move(buffer);
}

}  // namespace StrUtils
