#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <clocale>
#include <locale>
#include <ostream>
#include <stdexcept>
#include <string>

#include "GlobalLocale.h"
#include "wcharStub.h"

namespace {

std::wstring constructed(const std::string& bytes) {
  return constructFromCStr(bytes.data(), bytes.size());
}

TEST(IsWspace, TakesTheSixAsciiSpaces) {
  for (int ch = 0; ch <= 127; ++ch) {
    const bool expected =
        ch == 0x09 || ch == 0x0A || ch == 0x0B || ch == 0x0C || ch == 0x0D || ch == 0x20;
    EXPECT_EQ(iswspace(ch) != 0, expected) << ch;
  }
}

TEST(IsWspace, KnowsNoSpaceAboveAsciiInTheDefaultLocale) {
  for (int ch = 128; ch < 0x3100; ++ch) EXPECT_EQ(iswspace(ch), 0) << ch;
}

TEST(IsWspace, FollowsTheCurrentLocaleAboveAscii) {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8 here";
  const bool isSpace = iswspace(0x2003) != 0;  // EM SPACE
  std::setlocale(LC_CTYPE, "C");
  EXPECT_TRUE(isSpace);
}

TEST(IsWspace, TakesAnyNumber) {
  EXPECT_EQ(iswspace(-1), 0);
  EXPECT_EQ(iswspace(0x7FFFFFFF), 0);
  EXPECT_EQ(iswspace(-0x7FFFFFFF), 0);
}

TEST(IsEqualAsLowerCase, IgnoresTheCaseOfAsciiLettersOnly) {
  EXPECT_TRUE(isEqualAsLowerCase(L'K', L'k'));
  EXPECT_TRUE(isEqualAsLowerCase(L'k', L'k'));
  EXPECT_TRUE(isEqualAsLowerCase(L'1', L'1'));
  EXPECT_FALSE(isEqualAsLowerCase(L'k', L'j'));
  EXPECT_FALSE(isEqualAsLowerCase(L'\u00C4', L'\u00E4'));
  EXPECT_FALSE(isEqualAsLowerCase(L'@', L'`'));
}

// The two ways differ: "x" and "y" have the same lower case, "1" and "2" the same upper case.
class UnequalCases : public std::ctype<wchar_t> {
 protected:
  char_type do_tolower(char_type ch) const override { return ch == L'y' ? L'x' : ch; }
  char_type do_toupper(char_type ch) const override { return ch == L'2' ? L'1' : ch; }
};

TEST(IsEqualAsLowerCase, ComparesTheLowerCaseOfTheGlobalLocale) {
  const GlobalLocale scope(new UnequalCases);
  EXPECT_TRUE(isEqualAsLowerCase(L'x', L'y'));
  EXPECT_TRUE(isEqualAsLowerCase(L'y', L'x'));
  EXPECT_FALSE(isEqualAsLowerCase(L'1', L'2'));
  EXPECT_FALSE(isEqualAsLowerCase(L'K', L'k'));
}

TEST(IsEqualAsLowerCase, IsAsBeforeOnceTheGlobalLocaleIsBack) {
  { const GlobalLocale scope(new UnequalCases); }
  EXPECT_FALSE(isEqualAsLowerCase(L'x', L'y'));
  EXPECT_TRUE(isEqualAsLowerCase(L'K', L'k'));
}

TEST(WcsIcmp, OfOnePointerIsEqualWithoutReading) {
  const wchar_t* const nowhere = nullptr;
  EXPECT_EQ(_wcsicmp(nowhere, nowhere), 0);
}

TEST(WcsIcmp, IsTheDifferenceOfTheUnconvertedCharacters) {
  EXPECT_EQ(_wcsicmp(L"a", L"B"), 'a' - 'B');
  EXPECT_EQ(_wcsicmp(L"B", L"a"), 'B' - 'a');
  EXPECT_EQ(_wcsicmp(L"KX350T", L"kx351t"), '0' - '1');
}

TEST(WcsIcmp, ComparesTheTerminatorOfTheShorterText) {
  EXPECT_EQ(_wcsicmp(L"KX", L"kx3"), -'3');
  EXPECT_EQ(_wcsicmp(L"kx3", L"KX"), '3');
  EXPECT_EQ(_wcsicmp(L"", L"a"), -'a');
}

TEST(WcsIcmp, OfEqualTextsInZeroFilledBuffersIsZero) {
  const std::array<wchar_t, 8> upper{L'K', L'X'};
  const std::array<wchar_t, 8> lower{L'k', L'x'};
  EXPECT_EQ(_wcsicmp(upper.data(), lower.data()), 0);
}

TEST(WcsIcmp, OfEqualTextsIsTheDifferenceBehindTheTerminators) {
  const std::array<wchar_t, 4> a{L'K', L'\0', L'9', L'\0'};
  const std::array<wchar_t, 4> b{L'k', L'\0', L'4', L'\0'};
  EXPECT_EQ(_wcsicmp(a.data(), b.data()), 5);
  EXPECT_EQ(_wcsicmp(b.data(), a.data()), -5);
}

TEST(WcsIcmp, TakesElementsWhoseDifferenceDoesNotFit) {
  const std::array<wchar_t, 2> largest{WCHAR_MAX, L'\0'};
  const std::array<wchar_t, 2> smallest{WCHAR_MIN, L'\0'};
  EXPECT_NE(_wcsicmp(largest.data(), smallest.data()), 0);
}

TEST(WcsUprS, ConvertsEveryElementWhereverTheTerminatorLies) {
  std::array<wchar_t, 6> text{L'a', L'\0', L'b', L'1', L'c', L'd'};
  _wcsupr_s(text.data(), 5);
  EXPECT_EQ(text, (std::array<wchar_t, 6>{L'A', L'\0', L'B', L'1', L'C', L'd'}));
}

TEST(WcsUprS, TakesTheUpperCaseOfTheGlobalLocale) {
  const GlobalLocale scope(new UnequalCases);
  std::array<wchar_t, 4> text{L'1', L'2', L'k', L'y'};
  _wcsupr_s(text.data(), 4);
  EXPECT_EQ(text, (std::array<wchar_t, 4>{L'1', L'1', L'k', L'y'}));
}

TEST(WcsUprS, LeavesWhatTheDefaultLocaleHasNoUpperCaseFor) {
  std::array<wchar_t, 2> text{L'\u00E4', L'\u017F'};
  _wcsupr_s(text.data(), 2);
  EXPECT_EQ(text, (std::array<wchar_t, 2>{L'\u00E4', L'\u017F'}));
}

TEST(WcscpyS, FillsUpWithZeros) {
  std::array<wchar_t, 6> buffer{L'x', L'x', L'x', L'x', L'x', L'x'};
  EXPECT_EQ(wcscpy_s(buffer.data(), 5, L"ab"), buffer.data());
  EXPECT_EQ(buffer, (std::array<wchar_t, 6>{L'a', L'b', L'\0', L'\0', L'\0', L'x'}));
}

TEST(WcscpyS, LeavesATextThatFillsTheBufferUnterminated) {
  std::array<wchar_t, 4> buffer{L'x', L'x', L'x', L'x'};
  wcscpy_s(buffer.data(), 3, L"abcd");
  EXPECT_EQ(buffer, (std::array<wchar_t, 4>{L'a', L'b', L'c', L'x'}));
}

TEST(ConstructFromCStr, EndsInOneExtraZero) {
  const std::wstring text = constructed("ABC");
  EXPECT_EQ(text.size(), 4u);
  EXPECT_EQ(text, std::wstring(L"ABC\0", 4));
}

TEST(ConstructFromCStr, OfNothingIsOneZero) {
  EXPECT_EQ(constructFromCStr(nullptr, 0), std::wstring(1, L'\0'));
}

TEST(ConstructFromCStr, MakesOneElementOfEachCodePoint) {
  const std::wstring expected{L'A', 0xE4, 0x20AC, 0x1F5A8, L'\0'};
  EXPECT_EQ(constructed("A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8"), expected);
}

TEST(ConstructFromCStr, KeepsZerosWithinTheText) {
  EXPECT_EQ(constructed(std::string("A\0B", 3)), std::wstring(L"A\0B\0", 4));
}

TEST(ConstructFromCStr, KeepsAByteOrderMark) {
  EXPECT_EQ(constructed("\xEF\xBB\xBF"
                        "A"),
            (std::wstring{0xFEFF, L'A', L'\0'}));
}

TEST(ConstructFromCStr, ReadsNoFurtherThanToldTo) {
  EXPECT_EQ(constructFromCStr("ABC", 2), std::wstring(L"AB\0", 3));
}

struct InvalidUtf8 {
  const char* what;
  const char* bytes;
};

void PrintTo(const InvalidUtf8& invalid, std::ostream* out) { *out << invalid.what; }

class ConstructFromCStrDeathTest : public testing::TestWithParam<InvalidUtf8> {};

TEST_P(ConstructFromCStrDeathTest, InvalidUtf8FailsTheAssertion) {
  EXPECT_DEATH(constructed(GetParam().bytes),
               "^Assertion failed: \\(cfData\\), function constructFromCStr, file "
               "Host/installkit/osx/fwupdate/wcharStub, line 67\\.\n$");
}

INSTANTIATE_TEST_SUITE_P(Bytes, ConstructFromCStrDeathTest,
                         testing::Values(InvalidUtf8{"stray continuation", "\x80"},
                                         InvalidUtf8{"cut sequence", "A\xC3"},
                                         InvalidUtf8{"byte FF", "\xFF"},
                                         InvalidUtf8{"overlong form", "\xC0\xAF"},
                                         InvalidUtf8{"surrogate", "\xED\xA0\x80"},
                                         InvalidUtf8{"beyond Unicode", "\xF4\x90\x80\x80"},
                                         InvalidUtf8{"Latin-1 in a device ID", "MDL:\xE4;"}));

TEST(Wtrim, RemovesWhiteSpaceAtBothEnds) {
  EXPECT_EQ(wtrim(L"\t product.brand.bin \t"), L"product.brand.bin");
  EXPECT_EQ(wtrim(L"\n\v\f\r a b"), L"a b");
  EXPECT_EQ(wtrim(L"a"), L"a");
}

TEST(Wtrim, KeepsZeros) {
  EXPECT_EQ(wtrim(std::wstring(L" a\0", 3)), std::wstring(L"a\0", 2));
  EXPECT_EQ(wtrim(std::wstring(L"a\0 ", 3)), std::wstring(L"a\0", 2));
  EXPECT_EQ(wtrim(std::wstring(L"\0a", 2)), std::wstring(L"\0a", 2));
  EXPECT_EQ(wtrim(std::wstring(L" \0 ", 3)), std::wstring(1, L'\0'));
}

TEST(Wtrim, OfAnEmptyTextIsEmpty) { EXPECT_EQ(wtrim(L""), L""); }

TEST(Wtrim, OfNothingButWhiteSpaceThrows) {
  EXPECT_THROW(wtrim(L" "), std::length_error);
  EXPECT_THROW(wtrim(L" \t\r\n "), std::length_error);
}

TEST(GetWideCharEncoding, NamesTheByteOrderOfThisMachine) {
  if constexpr (std::endian::native == std::endian::little) {
    EXPECT_EQ(getWideCharEncoding(), 0x1c000100u);
  } else {
    EXPECT_EQ(getWideCharEncoding(), 0x18000100u);
  }
}

}  // namespace
