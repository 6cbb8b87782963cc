#include <gtest/gtest.h>

#include <clocale>

#include "legibleText.h"

namespace {

TEST(LegibleText, OrdinaryTextStaysAsItIs) {
  EXPECT_EQ(legibleText("Office 2"), "Office 2");
  EXPECT_EQ(legibleText("B\xC3\xBCro \xE4\xBA\x8B \xF0\x9F\x96\xA8"),
            "B\xC3\xBCro \xE4\xBA\x8B \xF0\x9F\x96\xA8");
}

TEST(LegibleText, WhatWouldMoveTheRestIsReplaced) {
  EXPECT_EQ(legibleText("a\nb"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(legibleText("\x1B[2J"), "\xEF\xBF\xBD[2J");
  EXPECT_EQ(legibleText("\xC2\x9B"
                        "2J"),
            "\xEF\xBF\xBD"
            "2J");
  EXPECT_EQ(legibleText("\xE2\x80\xAE"
                        "abc"),
            "\xEF\xBF\xBD"
            "abc");
  EXPECT_EQ(legibleText("\xE2\x81\xA6"
                        "abc"),
            "\xEF\xBF\xBD"
            "abc");
  EXPECT_EQ(legibleText("\xEF\xBB\xBF"), "\xEF\xBF\xBD");
}

TEST(LegibleText, BytesThatAreNoTextAreReplacedOneByOne) {
  EXPECT_EQ(legibleText("\xFF\xC3"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(legibleText(std::string_view("\0x", 2)), "\xEF\xBF\xBDx");
}

TEST(LegibleText, WideCharactersTakeTwoColumns) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(columnsOf("Office"), 6u);
  EXPECT_EQ(columnsOf("\xE4\xBA\x8B\xE5\x8A\xA1"), 4u);
  EXPECT_EQ(columnsOf("e\xCC\x81"), 1u);
  EXPECT_EQ(columnsOf(""), 0u);
  std::setlocale(LC_CTYPE, "C");
}

TEST(LegibleText, IsCutAtAWholeCharacterWithItsAccents) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(cutText("Office", 6), "Office");
  EXPECT_EQ(cutText("Office", 5), "Offi\u2026");
  EXPECT_EQ(cutText("\u4E8B\u52A1\u5BA4", 6), "\u4E8B\u52A1\u5BA4");
  EXPECT_EQ(cutText("\u4E8B\u52A1\u5BA4", 5), "\u4E8B\u52A1\u2026");
  EXPECT_EQ(cutText("\u4E8B\u52A1\u5BA4", 4), "\u4E8B\u2026");
  EXPECT_EQ(cutText("e\u0301e\u0301e\u0301", 2), "e\u0301\u2026");
  EXPECT_EQ(cutText("Office", 1), "\u2026");
  EXPECT_EQ(cutText("Office", 0), "");
  EXPECT_EQ(cutText("", 0), "");
  std::setlocale(LC_CTYPE, "C");
}

}  // namespace
