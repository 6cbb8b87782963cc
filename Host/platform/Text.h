// Text is the program's string reference: immutable UTF-8, cheap to copy, and possibly null.
// Null is a value of its own and not the empty string: the log prints it as "<null>", a list cell
// stays empty. The bytes of a non-null Text are always valid UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace platform {

class Text {
 public:
  // The null text.
  Text() noexcept = default;

  // Null when `bytes` is not valid UTF-8 (overlong forms and surrogates included).
  static Text fromUtf8(std::string_view bytes);

  // One code point per element. Null when an element is not a Unicode scalar value.
  static Text fromWide(std::wstring_view characters);

  bool isNull() const noexcept { return mBytes == nullptr; }
  explicit operator bool() const noexcept { return !isNull(); }

  // Empty for a null text. Valid while a copy of this Text lives.
  std::string_view utf8() const noexcept;

  // Length in UTF-16 units; 0 for a null text.
  std::size_t length() const noexcept;

  struct Conversion {
    std::size_t units;  // UTF-16 units converted
    std::size_t bytes;  // UTF-8 bytes they take
  };

  // Converts the first `units` UTF-16 units into `buffer`, stopping before the first character
  // that does not fit whole. A buffer without data is not written and sets no limit: the call then
  // only counts. No terminating zero is stored.
  Conversion copyUtf8(std::size_t units, std::span<char> buffer) const noexcept;

  std::u16string utf16() const;

  // One code point per element; empty for a null text.
  std::wstring wide() const;

  // Leading white space, an optional sign, then decimal digits up to the first other character. No
  // digits, or a null text, give 0; a value outside 32 bits gives the nearest limit.
  std::int32_t intValue() const noexcept;

 private:
  explicit Text(std::string bytes);

  std::shared_ptr<const std::string> mBytes;
};

enum class Comparison { Exact, Numeric };

// Negative, 0 or positive. Exact compares UTF-16 units; Numeric additionally compares runs of
// decimal digits by their value. Neither argument may be null.
int compare(const Text& a, const Text& b, Comparison comparison = Comparison::Exact) noexcept;

}  // namespace platform
