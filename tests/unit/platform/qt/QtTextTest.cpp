#include <gtest/gtest.h>

#include "platform/qt/QtText.h"

using namespace platform::literals;
using platform::breakable;
using platform::codeFrom;
using platform::isolated;
using platform::legible;
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

TEST(QtText, ByteOrderMarkAtTheBeginningIsACharacter) {
  EXPECT_EQ(platform::toQString(Text::fromUtf8("\xEF\xBB\xBFKX350T")),
            QStringLiteral("\uFEFFKX350T"));
}

TEST(QtText, DigitsOfAmountsAndTimesAreLatin) {
  EXPECT_EQ(platform::withLatinDigits(QStringLiteral("٨٫٠ م.ب")), u"8.0 م.ب");
  EXPECT_EQ(platform::withLatinDigits(QStringLiteral("٤:٠٣ ص")), u"4:03 ص");
  EXPECT_EQ(platform::withLatinDigits(QStringLiteral("1.234,5 m²")), u"1.234,5 m²");
}

TEST(QtText, NamesStayAsTheyAre) {
  for (const char* name :
       {"Büro 3", "Empfang, 2. Stock", "طابعة المكتب 350T", "מדפסת 3", "打印机", "プリンター",
        "Máy in tầng 2", "e\u0301t\u00e9", "📠 Front desk", "\u00a0"}) {
    EXPECT_EQ(legible(QString::fromUtf8(name)).toStdString(), name);
  }
}

TEST(QtText, CharactersThatDoNotShowAreReplaced) {
  EXPECT_EQ(legible(QStringLiteral("a\nb\rc\td\u0000e\u001Bf\u007Fg")),
            QStringLiteral("a\uFFFDb\uFFFDc\uFFFDd\uFFFDe\uFFFDf\uFFFDg"));
  EXPECT_EQ(legible(QString(QChar(0x85)) + QChar(0x9B)), QStringLiteral("\uFFFD\uFFFD"));
  EXPECT_EQ(legible(QStringLiteral("a\u2028b\u2029c")), QStringLiteral("a\uFFFDb\uFFFDc"));
  EXPECT_EQ(legible(QStringLiteral("a\u200Bb\u200Cc\u200Dd\uFEFFe\u00ADf\u2060g")),
            QStringLiteral("a\uFFFDb\uFFFDc\uFFFDd\uFFFDe\uFFFDf\uFFFDg"));
  EXPECT_EQ(legible(QStringLiteral("\U000E0041\U000E007F")), QStringLiteral("\uFFFD\uFFFD"));
}

TEST(QtText, EachControlOfTheDirectionIsReplaced) {
  for (const char16_t control :
       {u'\u061C', u'\u200E', u'\u200F', u'\u202A', u'\u202B', u'\u202C', u'\u202D', u'\u202E',
        u'\u2066', u'\u2067', u'\u2068', u'\u2069'}) {
    EXPECT_EQ(legible(QString("Evil") + QChar(control) + "txt.exe 350T"),
              QStringLiteral("Evil\uFFFDtxt.exe 350T"))
        << std::hex << static_cast<int>(control);
  }
}

TEST(QtText, CodePointsWithoutAMeaningAreReplaced) {
  EXPECT_EQ(legible(QStringLiteral("a\uE000b\U000F0000c")), QStringLiteral("a\uFFFDb\uFFFDc"));
  EXPECT_EQ(legible(QStringLiteral("a\u0378b\U0010FFFFc")), QStringLiteral("a\uFFFDb\uFFFDc"));
  EXPECT_EQ(legible(QString(QChar(0xD83D)) + "x" + QChar(0xDCE0)), QStringLiteral("\uFFFDx\uFFFD"));
}

TEST(QtText, OnlySoManyMarksStandOnALetter) {
  EXPECT_EQ(legible("a" + QStringLiteral("\u0301").repeated(4) + "b"),
            QStringLiteral("a\u0301\u0301\u0301\u0301b"));
  EXPECT_EQ(legible("a" + QStringLiteral("\u0301").repeated(6) + "b\u0301"),
            QStringLiteral("a\u0301\u0301\u0301\u0301\uFFFD\uFFFDb\u0301"));
  EXPECT_EQ(legible("a" + QStringLiteral("\u20DD").repeated(5)),
            QStringLiteral("a\u20DD\u20DD\u20DD\u20DD\uFFFD"));
}

TEST(QtText, NameAndAddressAreIsolated) {
  EXPECT_EQ(isolated(QStringLiteral("Office (10.0.0.9)")),
            QStringLiteral("\u2068Office\u2069 (\u206810.0.0.9\u2069)"));
  EXPECT_EQ(isolated(QStringLiteral("طابعة (10.0.0.9)")),
            QStringLiteral("\u2068طابعة\u2069 (\u206810.0.0.9\u2069)"));
  EXPECT_EQ(isolated(QStringLiteral(" ()")), QStringLiteral("\u2068\u2069 (\u2068\u2069)"));
}

TEST(QtText, AddressIsWhatTheLastParenthesesHold) {
  EXPECT_EQ(isolated(QStringLiteral("Office (10.0.0.1) (10.0.0.9)")),
            QStringLiteral("\u2068Office (10.0.0.1)\u2069 (\u206810.0.0.9\u2069)"));
}

TEST(QtText, OtherTextsAreNotIsolated) {
  for (const char* text : {"", "Update?", "Office (3rd floor", "Office(3)", "(3) Office", ")"}) {
    EXPECT_EQ(isolated(text), text);
  }
}

bool isLong(const QString& word) { return word.size() > 20; }

TEST(QtText, OnlyLongWordsAreMadeBreakable) {
  EXPECT_EQ(breakable("KX350T in the office", isLong), "KX350T in the office");
  const QString word(21, u'x');
  EXPECT_EQ(breakable("a " + word + " b", isLong).remove(QChar(0x200B)), "a " + word + " b");
  EXPECT_EQ(breakable(word, isLong).count(QChar(0x200B)), 21);
}

// A line must not begin with the full stop of the one before.
TEST(QtText, SentencesWithoutBlanksEndTheirLinesWhereTheirScriptLetsThem) {
  const QString question =
      QStringLiteral("選択したネットワークプリンターを更新しますか？更新中は誰も印刷できません。");
  EXPECT_EQ(breakable(question, isLong), question);
}

TEST(QtText, CharactersAreNotTornApart) {
  const QString family = QStringLiteral("e\u0301").repeated(15);
  EXPECT_EQ(breakable(family, isLong).count(QChar(0x200B)), 15);
}

}  // namespace
