#include <gtest/gtest.h>

#include <locale>
#include <optional>
#include <ostream>
#include <string>

#include "GlobalLocale.h"
#include "StrUtils.h"
#include "platform/Text.h"

using StrUtils::CompareNumericFields;
using StrUtils::StrCmpWildcardNoCase;

namespace {

std::string narrow(const wchar_t* text) {
  return std::string(platform::Text::fromWide(text).utf8());
}

std::optional<std::wstring> valueOf(const std::wstring& id, const std::wstring& key) {
  std::wstring value = L"before";
  if (StrUtils::GetIEEE1284KeyValue(id, key, value)) return value;
  EXPECT_EQ(value, L"before");
  return std::nullopt;
}

TEST(GetIeee1284KeyValue, FindsEachFieldOfAnId) {
  const std::wstring id = L"MFG:X;MDL:KX350T;LIC:;";
  EXPECT_EQ(valueOf(id, L"MFG"), L"X");
  EXPECT_EQ(valueOf(id, L"MDL"), L"KX350T");
  EXPECT_EQ(valueOf(id, L"LIC"), L"");
}

TEST(GetIeee1284KeyValue, DoesNotFindAnAbsentKey) {
  EXPECT_EQ(valueOf(L"MFG:X;MDL:KX350T;", L"LIC"), std::nullopt);
  EXPECT_EQ(valueOf(L"", L"LIC"), std::nullopt);
}

TEST(GetIeee1284KeyValue, DoesNotFindALastFieldWithoutItsSemicolon) {
  EXPECT_EQ(valueOf(L"MDL:KX350T", L"MDL"), std::nullopt);
}

TEST(GetIeee1284KeyValue, GivesUpAtTheFirstKeyWithoutASemicolon) {
  EXPECT_EQ(valueOf(L"MDL;MDL:KX350T", L"MDL"), std::nullopt);
}

TEST(GetIeee1284KeyValue, DoesNotTrimTheValue) {
  EXPECT_EQ(valueOf(L"MDL: KX350T ;", L"MDL"), L" KX350T ");
}

TEST(GetIeee1284KeyValue, MindsTheCaseOfTheKey) {
  EXPECT_EQ(valueOf(L"mdl:KX350T;", L"MDL"), std::nullopt);
}

TEST(GetIeee1284KeyValue, FindsAKeyWithinALongerOne) {
  EXPECT_EQ(valueOf(L"XMDL:inner;MDL:KX350T;", L"MDL"), L"inner");
}

TEST(GetIeee1284KeyValue, NeedsTheColonRightBehindTheKey) {
  EXPECT_EQ(valueOf(L"MDL :KX350T;", L"MDL"), std::nullopt);
  EXPECT_EQ(valueOf(L"MDLX:no;MDL:yes;", L"MDL"), L"yes");
}

TEST(GetIeee1284KeyValue, TakesTheFirstOfTwo) { EXPECT_EQ(valueOf(L"MDL:A;MDL:B;", L"MDL"), L"A"); }

TEST(GetIeee1284KeyValue, ReadsThroughZerosInTheId) {
  EXPECT_EQ(valueOf(std::wstring(L"MFG:\0;MDL:K\0X;\0", 15), L"MDL"), std::wstring(L"K\0X", 3));
}

TEST(GetIeee1284KeyValue, MayReplaceTheIdItself) {
  std::wstring id = L"MDL:KX350T;";
  EXPECT_TRUE(StrUtils::GetIEEE1284KeyValue(id, L"MDL", id));
  EXPECT_EQ(id, L"KX350T");
}

TEST(MatchIeee1284Key, MatchesTheValueWithThePattern) {
  const std::wstring id = L"MFG:X;MDL:KX350T;LIC:;";
  EXPECT_TRUE(StrUtils::MatchIEEE1284Key(id, L"MDL", L"kx*"));
  EXPECT_TRUE(StrUtils::MatchIEEE1284Key(id, L"LIC", L""));
  EXPECT_FALSE(StrUtils::MatchIEEE1284Key(id, L"MDL", L"KX351*"));
}

TEST(MatchIeee1284Key, AnAbsentKeyMatchesNoPattern) {
  EXPECT_FALSE(StrUtils::MatchIEEE1284Key(L"MDL:KX350T;", L"LIC", L"*"));
  EXPECT_FALSE(StrUtils::MatchIEEE1284Key(L"MDL:KX350T;", L"LIC", L""));
}

struct Match {
  const wchar_t* pattern;
  const wchar_t* text;
  bool matches;
};

void PrintTo(const Match& match, std::ostream* out) {
  *out << narrow(match.pattern) << " on " << narrow(match.text);
}

class StrCmpWildcard : public testing::TestWithParam<Match> {};

TEST_P(StrCmpWildcard, Matches) {
  const Match& match = GetParam();
  EXPECT_EQ(StrCmpWildcardNoCase(match.pattern, match.text), match.matches);
}

INSTANTIATE_TEST_SUITE_P(
    WithoutWildcard, StrCmpWildcard,
    testing::Values(Match{L"kx350t", L"KX350T", true}, Match{L"KX350T", L"kx350t", true},
                    Match{L"KX350T", L"KX350T2", false}, Match{L"KX350T", L"KX350", false},
                    Match{L"QT725013", L"", false}, Match{L"", L"", true}, Match{L"", L"a", false},
                    Match{L"a?c", L"abc", false}, Match{L"a.c", L"abc", false},
                    Match{L"\u00C4", L"\u00E4", false}));

INSTANTIATE_TEST_SUITE_P(
    WithWildcard, StrCmpWildcard,
    testing::Values(Match{L"*", L"", true}, Match{L"*", L"anything", true}, Match{L"**", L"", true},
                    Match{L"KX*", L"kx350t", true}, Match{L"KX*", L"KX", true},
                    Match{L"KX*", L"k", false}, Match{L"KX*", L"akx", false},
                    Match{L"*50T", L"KX350T", true}, Match{L"*50T", L"KX350Tyy", true},
                    Match{L"*50T", L"KX350", false}, Match{L"AB*C", L"ABxCyy", true},
                    Match{L"AB*C", L"ABxDyy", false}, Match{L"AB*C", L"xABC", false},
                    Match{L"AB*AB", L"AB", false}, Match{L"AB*AB", L"ABAB", true},
                    Match{L"a*b*c", L"A1B2C3", true}, Match{L"a*b*c", L"A1C2B3", false},
                    Match{L"*b*a*", L"abab", true}, Match{L"*b*a*b*a*", L"abab", false},
                    Match{L"a**b", L"ab", true}, Match{L"AB*", L"", false}));

INSTANTIATE_TEST_SUITE_P(
    WithSegmentsThatMightOverlap, StrCmpWildcard,
    testing::Values(Match{L"AA*AA", L"AAA", false}, Match{L"AA*AA", L"AAAA", true},
                    Match{L"*AA*AA", L"xAAA", false}, Match{L"*AA*AA", L"xAAAA", true},
                    Match{L"ABA*BAB", L"ABAB", false}, Match{L"ABA*BAB", L"ABABAB", true},
                    Match{L"*A*A", L"A", false}, Match{L"A*A*A", L"AA", false}));

TEST(StrCmpWildcardLengths, TextsOfThousandAndTwentyThreeCharactersAreComparedWhole) {
  const std::wstring longText(1023, L'a');
  EXPECT_TRUE(StrCmpWildcardNoCase(longText, std::wstring(1023, L'A')));
  EXPECT_FALSE(StrCmpWildcardNoCase(longText, std::wstring(1022, L'a') + L'b'));
}

TEST(StrCmpWildcardLengths, LongerTextsAreCut) {
  const std::wstring full(1024, L'a');
  EXPECT_TRUE(StrCmpWildcardNoCase(full, full));
  EXPECT_TRUE(StrCmpWildcardNoCase(full, full + L"b"));
  EXPECT_TRUE(StrCmpWildcardNoCase(full + L"c", full + L"b"));
  EXPECT_FALSE(StrCmpWildcardNoCase(full, std::wstring(1023, L'a')));
  EXPECT_FALSE(StrCmpWildcardNoCase(L"KX350T", std::wstring(100000, L'K')));
  EXPECT_FALSE(StrCmpWildcardNoCase(L"*b", full + L"b"));
}

TEST(StrCmpWildcardLengths, WildcardsReachTheEndOfALongText) {
  EXPECT_TRUE(StrCmpWildcardNoCase(L"*b", std::wstring(1023, L'a') + L"b"));
  EXPECT_TRUE(StrCmpWildcardNoCase(std::wstring(1023, L'a') + L"*", std::wstring(4096, L'a')));
  EXPECT_TRUE(StrCmpWildcardNoCase(std::wstring(1024, L'*'), L"a"));
  EXPECT_TRUE(StrCmpWildcardNoCase(std::wstring(5000, L'*'), std::wstring(5000, L'a')));
}

TEST(StrCmpWildcardLengths, TextsEndAtTheirFirstZero) {
  EXPECT_TRUE(StrCmpWildcardNoCase(L"KX350T", std::wstring(L"kx350t\0x", 8)));
  EXPECT_FALSE(StrCmpWildcardNoCase(L"*x", std::wstring(L"k\0x", 3)));
}

struct Order {
  const wchar_t* a;
  const wchar_t* b;
  int order;
};

void PrintTo(const Order& order, std::ostream* out) {
  *out << narrow(order.a) << " and " << narrow(order.b);
}

class CompareNumeric : public testing::TestWithParam<Order> {};

TEST_P(CompareNumeric, OrdersBothWays) {
  const Order& order = GetParam();
  EXPECT_EQ(CompareNumericFields(order.a, order.b), order.order);
  EXPECT_EQ(CompareNumericFields(order.b, order.a), -order.order);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, CompareNumeric,
    testing::Values(Order{L"1.2.10", L"1.2.9", 1}, Order{L"1.2", L"1-2", 0},
                    Order{L"1.2", L"1.2.0", -1}, Order{L"x2", L"10", -1}, Order{L"", L"", 0},
                    Order{L"", L"0", -1}, Order{L"abc", L"", 0}, Order{L"v1", L"1b", 0},
                    Order{L"-5", L"3", 1}, Order{L"007", L"7", 0}, Order{L"1.", L"1", 0},
                    Order{L"2", L"1.9.9", 1}, Order{L"\u0665", L"", 0},
                    Order{L"99999999999999999999", L"99999999999999999998", 0},
                    Order{L"99999999999999999999.1", L"99999999999999999999", 1}));

INSTANTIATE_TEST_SUITE_P(NumbersAreDecimal, CompareNumeric,
                         testing::Values(Order{L"010", L"10", 0}, Order{L"010", L"9", 1},
                                         Order{L"08", L"7", 1}, Order{L"0x10", L"0.10", 0},
                                         Order{L"0x1F", L"0.1", 0}));

// What other tables of characters take for digits, and the neighbours of "0" and "9".
INSTANTIATE_TEST_SUITE_P(NothingElseIsADigit, CompareNumeric,
                         testing::Values(Order{L"\u00B21", L"1", 0}, Order{L"\u00B31", L"1", 0},
                                         Order{L"\u00B91", L"1", 0}, Order{L"\u00BD1", L"1", 0},
                                         Order{L"\u06651", L"1", 0}, Order{L"\uFF151", L"1", 0},
                                         Order{L"\u01301", L"1", 0}, Order{L"/1", L"1", 0},
                                         Order{L":1", L"1", 0}, Order{L"1\u00B2", L"1", 0},
                                         Order{L"1\u00B22", L"1.2", 0}));

TEST(CompareNumericLocale, DigitsDoNotFollowTheLocale) {
  // Takes every character for a digit.
  class AllDigits : public std::ctype<wchar_t> {
   protected:
    bool do_is(mask, char_type) const override { return true; }
  };
  const GlobalLocale scope(new AllDigits);
  EXPECT_EQ(CompareNumericFields(L"a1", L"1"), 0);
}

TEST(StrFmtSubst, PutsTheArgumentInAndFillsUpWithZeros) {
  std::wstring out = L"before";
  StrUtils::StrFmtSubst(out, L"[%ls]", L"ab");
  EXPECT_EQ(out, std::wstring(L"[ab]\0\0\0", 7));
}

TEST(StrFmtSubst, WithoutAConversionKeepsTheFormat) {
  std::wstring out;
  StrUtils::StrFmtSubst(out, L"abc", L"xy");
  EXPECT_EQ(out, std::wstring(L"abc\0\0", 5));
}

TEST(StrFmtSubst, CutsWhatIsLongerThanBothTogether) {
  std::wstring out;
  StrUtils::StrFmtSubst(out, L"%10ls", L"ab");
  EXPECT_EQ(out, std::wstring(L"      \0", 7));
}

TEST(StrFmtSubst, LeavesNoRoomForTheLastCharacterOfABareFormat) {
  std::wstring out;
  StrUtils::StrFmtSubst(out, L"abc", L"");
  EXPECT_EQ(out, std::wstring(L"ab\0", 3));
}

TEST(StrFmtSubst, OfNothingIsNothing) {
  std::wstring out = L"before";
  StrUtils::StrFmtSubst(out, L"", L"");
  EXPECT_EQ(out, L"");
}

}  // namespace
