#include <gtest/gtest.h>

#include "platform/qt/QtText.h"

using namespace platform::literals;
using platform::breakable;
using platform::codeFrom;
using platform::onOneLine;
using platform::Text;

namespace {

TEST(QtText, ConvertsBothWays) {
  EXPECT_EQ(platform::toQString(Text::fromUtf8("Büro 📠")), QStringLiteral("Büro 📠"));
  EXPECT_EQ(platform::toText(QStringLiteral("Büro 📠")).utf8(), "Büro 📠");
  EXPECT_TRUE(platform::toQString(Text()).isEmpty());
}

TEST(QtText, CodesMayLackTheBlanksAtTheirEnd) {
  EXPECT_EQ(codeFrom("Down"), "Down"_4cc);
  EXPECT_EQ(codeFrom("Yes "), "Yes "_4cc);
  EXPECT_EQ(codeFrom("Yes"), "Yes "_4cc);
  EXPECT_EQ(codeFrom("No"), "No  "_4cc);
  EXPECT_EQ(codeFrom(""), 0u);
  EXPECT_EQ(codeFrom("Download"), 0u);
  EXPECT_EQ(platform::charactersOf("No  "_4cc), "No  ");
}

TEST(QtText, LineBreaksAndControlCharactersBecomeBlanks) {
  EXPECT_EQ(onOneLine(QStringLiteral("a\nb\r\u2028c\u2029d\u0000e")), QStringLiteral("a b  c d e"));
  EXPECT_EQ(onOneLine(QStringLiteral("Büro 3")), QStringLiteral("Büro 3"));
}

TEST(QtText, OnlyLongWordsAreMadeBreakable) {
  EXPECT_EQ(breakable("KX350T in the office"), "KX350T in the office");
  const QString word(21, u'x');
  EXPECT_EQ(breakable("a " + word + " b").remove(QChar(0x200B)), "a " + word + " b");
  EXPECT_EQ(breakable(word).count(QChar(0x200B)), 21);
}

TEST(QtText, CharactersAreNotTornApart) {
  const QString family = QStringLiteral("e\u0301").repeated(15);
  EXPECT_EQ(breakable(family).count(QChar(0x200B)), 15);
}

}  // namespace
