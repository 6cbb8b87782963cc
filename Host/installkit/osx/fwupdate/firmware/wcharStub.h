// The few wide-string routines of another runtime library that the shared device-ID code is written
// against, under their own names, and the conversion of a printer's bytes into a wide string. A
// wide string holds one Unicode code point in each element. All functions are stateless.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <string>

using CFStringEncoding = std::uint32_t;

inline constexpr CFStringEncoding kCFStringEncodingUTF32BE = 0x18000100;
inline constexpr CFStringEncoding kCFStringEncodingUTF32LE = 0x1c000100;

// Nonzero for white space: U+0009 to U+000D and U+0020, and above 127 what the current locale says.
int iswspace(int ch);

// Case follows the global locale.
bool isEqualAsLowerCase(wchar_t a, wchar_t b);

// Compares without case over the shorter text and its terminator; the result at the first
// difference is that of the unconverted characters. Equal texts are told apart by the element
// BEHIND the terminator: both texts must stand in zero-filled buffers with an element to spare.
int _wcsicmp(const wchar_t* a, const wchar_t* b);

// Converts all `n` elements of `s`, those behind a terminator included.
void _wcsupr_s(wchar_t* s, std::size_t n);

// Copies at most `n` characters and fills up with zeros; a text of `n` or more characters leaves
// `dst` without a terminator. Returns `dst`.
wchar_t* wcscpy_s(wchar_t* dst, std::size_t n, const wchar_t* src);

// The UTF-8 text in `bytes`, with one extra zero character at its end that counts in its length.
// Bytes that are not UTF-8 fail an assertion and end the program.
std::wstring constructFromCStr(const char* bytes, std::size_t len);

// `s` without white space at either end. A text of nothing but white space throws
// std::length_error.
std::wstring wtrim(const std::wstring& s);

// The UTF-32 encoding in which a wide string lies in this machine's memory.
CFStringEncoding getWideCharEncoding();
