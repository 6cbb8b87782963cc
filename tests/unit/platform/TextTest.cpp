#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platform/Text.h"

namespace {

using platform::compare;
using platform::Comparison;
using platform::Text;

constexpr auto kEverything = std::numeric_limits<std::size_t>::max();

Text text(std::string_view bytes) { return Text::fromUtf8(bytes); }

// One character of each length in UTF-8: A, u umlaut, euro, printer.
const std::string kMixed = "A\xC3\xBC\xE2\x82\xAC\xF0\x9F\x96\xA8";

TEST(Text, NullIsNotTheEmptyText) {
  EXPECT_TRUE(Text().isNull());
  EXPECT_FALSE(Text());
  EXPECT_FALSE(text("").isNull());
  EXPECT_TRUE(text(""));
}

TEST(Text, NullHasNoContent) {
  EXPECT_EQ(Text().utf8(), "");
  EXPECT_EQ(Text().length(), 0u);
  EXPECT_EQ(Text().utf16(), u"");
  EXPECT_EQ(Text().intValue(), 0);
  char buffer[4];
  EXPECT_EQ(Text().copyUtf8(4, buffer).bytes, 0u);
}

TEST(Text, KeepsItsBytes) {
  EXPECT_EQ(text(kMixed).utf8(), kMixed);
  EXPECT_EQ(text(std::string_view("a\0b", 3)).utf8(), std::string_view("a\0b", 3));
}

TEST(Text, CopiesShareTheirBytes) {
  const Text original = text("KX350T");
  const Text copy = original;
  EXPECT_EQ(copy.utf8().data(), original.utf8().data());
}

TEST(Text, RefusesBytesThatAreNotUtf8) {
  const std::vector<std::string> invalid = {
      "\x80",              // a continuation alone
      "\xC3",              // the end too early
      "\xE2\x82",          //
      "\xF0\x9F\x96",      //
      "\xC3(",             // no continuation
      "\xE2(\xAC",         //
      "\xC0\x80",          // overlong
      "\xC1\xBF",          //
      "\xE0\x9F\xBF",      //
      "\xF0\x8F\xBF\xBF",  //
      "\xED\xA0\x80",      // surrogates
      "\xED\xBF\xBF",      //
      "\xF4\x90\x80\x80",  // beyond the last character
      "\xF5\x80\x80\x80",  //
      "\xFE",              //
      "\xFF",              //
      "ok\xFF",            // after valid ones
  };
  for (const std::string& bytes : invalid) {
    EXPECT_TRUE(text(bytes).isNull()) << testing::PrintToString(bytes);
  }
}

TEST(Text, AcceptsTheBordersOfUtf8) {
  for (const std::string bytes :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(text(bytes).utf8(), bytes) << testing::PrintToString(bytes);
  }
}

TEST(Text, IsMadeFromWideCharacters) {
  EXPECT_EQ(Text::fromWide(L"A\u00FC\u20AC\U0001F5A8").utf8(), kMixed);
  EXPECT_EQ(Text::fromWide(std::wstring(L"a\0b", 3)).utf8(), std::string_view("a\0b", 3));
  EXPECT_FALSE(Text::fromWide(L"").isNull());
}

TEST(Text, WideCharactersAtTheBordersOfUtf8) {
  EXPECT_EQ(Text::fromWide(L"\x7F\x80").utf8(), "\x7F\xC2\x80");
  EXPECT_EQ(Text::fromWide(L"\x7FF\x800").utf8(), "\xDF\xBF\xE0\xA0\x80");
  EXPECT_EQ(Text::fromWide(L"\xFFFF\x10000").utf8(), "\xEF\xBF\xBF\xF0\x90\x80\x80");
}

TEST(Text, RefusesWideElementsThatAreNoCharacters) {
  for (const unsigned element : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
    const std::wstring wide(1, static_cast<wchar_t>(element));
    EXPECT_TRUE(Text::fromWide(wide).isNull()) << std::hex << element;
  }
  for (const unsigned element : {0xD7FFu, 0xE000u, 0x10FFFFu}) {
    const std::wstring wide(1, static_cast<wchar_t>(element));
    EXPECT_FALSE(Text::fromWide(wide).isNull()) << std::hex << element;
  }
}

TEST(Text, CountsUtf16Units) {
  EXPECT_EQ(text("").length(), 0u);
  EXPECT_EQ(text("KX350T").length(), 6u);
  EXPECT_EQ(text(kMixed).length(), 5u);
}

TEST(Text, TurnsIntoUtf16) { EXPECT_EQ(text(kMixed).utf16(), u"A\u00FC\u20AC\U0001F5A8"); }

TEST(Text, CountsWithoutABuffer) {
  const Text::Conversion all = text(kMixed).copyUtf8(kEverything, {});
  EXPECT_EQ(all.units, 5u);
  EXPECT_EQ(all.bytes, 10u);
}

TEST(Text, ConvertsNoMoreUnitsThanAskedFor) {
  char buffer[16];
  const Text::Conversion two = text(kMixed).copyUtf8(2, buffer);
  EXPECT_EQ(two.units, 2u);
  EXPECT_EQ(std::string(buffer, two.bytes), "A\xC3\xBC");
  EXPECT_EQ(text(kMixed).copyUtf8(0, buffer).bytes, 0u);
}

TEST(Text, DoesNotConvertHalfASurrogatePair) {
  char buffer[16];
  const Text::Conversion four = text(kMixed).copyUtf8(4, buffer);
  EXPECT_EQ(four.units, 3u);
  EXPECT_EQ(four.bytes, 6u);
}

TEST(Text, StopsBeforeTheCharacterThatDoesNotFit) {
  const std::size_t expected[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
  for (std::size_t size = 1; size < std::size(expected); ++size) {
    std::vector<char> buffer(size, '?');
    EXPECT_EQ(text(kMixed).copyUtf8(kEverything, buffer).bytes, expected[size]) << size;
    EXPECT_EQ(std::string(buffer.data(), expected[size]), kMixed.substr(0, expected[size]));
  }
}

TEST(Text, StoresNoTerminator) {
  char buffer[] = {'?', '?', '?'};
  text("ab").copyUtf8(2, buffer);
  EXPECT_EQ(std::string(buffer, 3), "ab?");
}

TEST(Text, ReadsAnInteger) {
  EXPECT_EQ(text("00000200").intValue(), 200);
  EXPECT_EQ(text("-12").intValue(), -12);
  EXPECT_EQ(text("+12").intValue(), 12);
  EXPECT_EQ(text(" \t\n\v\f\r12").intValue(), 12);
  EXPECT_EQ(text("12a").intValue(), 12);
  EXPECT_EQ(text("12 3").intValue(), 12);
}

TEST(Text, ReadsNoDigitsAsZero) {
  for (const char* bytes : {"", "a12", "-", "+", "+-1", "--1", "- 1", "   ", "\xC2\xA0\x31"}) {
    EXPECT_EQ(text(bytes).intValue(), 0) << bytes;
  }
}

TEST(Text, ReadsTheNearestLimitForANumberTooLarge) {
  EXPECT_EQ(text("2147483647").intValue(), 2147483647);
  EXPECT_EQ(text("2147483648").intValue(), 2147483647);
  EXPECT_EQ(text("-2147483648").intValue(), -2147483647 - 1);
  EXPECT_EQ(text("-2147483649").intValue(), -2147483647 - 1);
  EXPECT_EQ(text(std::string(1000, '9')).intValue(), 2147483647);
  EXPECT_EQ(text("-" + std::string(1000, '9')).intValue(), -2147483647 - 1);
}

int sign(int value) { return (value > 0) - (value < 0); }

int order(std::string_view a, std::string_view b, Comparison comparison) {
  const int result = sign(compare(text(a), text(b), comparison));
  EXPECT_EQ(sign(compare(text(b), text(a), comparison)), -result) << a << " " << b;
  return result;
}

TEST(TextComparison, ExactComparesUtf16Units) {
  EXPECT_EQ(order("abc", "abc", Comparison::Exact), 0);
  EXPECT_EQ(order("", "", Comparison::Exact), 0);
  EXPECT_EQ(order("abc", "abd", Comparison::Exact), -1);
  EXPECT_EQ(order("ab", "abc", Comparison::Exact), -1);
  EXPECT_EQ(order("B", "a", Comparison::Exact), -1);
  EXPECT_EQ(order("10", "9", Comparison::Exact), -1);
}

TEST(TextComparison, CharactersOutsideTheBasicPlaneSortByTheirSurrogates) {
  EXPECT_EQ(order("\xF0\x9F\x96\xA8", "\xEF\xBF\xBD", Comparison::Exact), -1);
}

TEST(TextComparison, ExactIsTheDefault) { EXPECT_LT(compare(text("10"), text("9")), 0); }

TEST(TextComparison, NumericComparesDigitsByTheirValue) {
  EXPECT_EQ(order("10", "9", Comparison::Numeric), 1);
  EXPECT_EQ(order("192.0.2.9", "192.0.2.10", Comparison::Numeric), -1);
  EXPECT_EQ(order("a2b", "a10a", Comparison::Numeric), -1);
  EXPECT_EQ(order("a", "1", Comparison::Numeric), 1);
  EXPECT_EQ(order("a1", "a", Comparison::Numeric), 1);
  EXPECT_EQ(order("abc", "abd", Comparison::Numeric), -1);
}

TEST(TextComparison, NumericIgnoresLeadingZeros) {
  EXPECT_EQ(order("007", "7", Comparison::Numeric), 0);
  EXPECT_EQ(order("0", "000", Comparison::Numeric), 0);
  EXPECT_EQ(order("007a", "7b", Comparison::Numeric), -1);
}

TEST(TextComparison, NumericTakesNumbersOfAnyLength) {
  const std::string nines(1000, '9');
  EXPECT_EQ(order(nines, "1" + nines, Comparison::Numeric), -1);
  EXPECT_EQ(order(nines, nines, Comparison::Numeric), 0);
}

}  // namespace
