// What a translation has to have, whatever its language.
#include <gmock/gmock.h>

#include <QDir>
#include <QRegularExpression>

#include "Languages.h"
#include "Places.h"
#include "TranslationFile.h"

using testing::Gt;
using testing::SizeIs;

namespace {

QString translation(const std::string& name) {
  return QString::fromStdString(projectFile("resources/translations/" + name + ".ts"));
}

class Translations : public testing::TestWithParam<Language> {
 protected:
  Translations()
      : mMessages(readTranslations(translation(std::string("fwupdate_") + GetParam().name))) {}

  const std::vector<Message>& messages() const { return mMessages; }

 private:
  std::vector<Message> mMessages;
};

// A number may be written in the digits of the language (%Ln).
QStringList placeholdersIn(const QString& text) {
  static const QRegularExpression kPlaceholder("%L?([0-9]+|n)");
  QStringList found;
  for (auto each = kPlaceholder.globalMatch(text); each.hasNext();) {
    found.append('%' + each.next().captured(1));
  }
  found.sort();
  return found;
}

// What a text ends with, in the signs that English has for it.
QChar endOf(const QString& text) {
  static const QString kOther = QStringLiteral("。：？！；؟");
  static const QString kEnglish = QStringLiteral(".:?!;?");
  const QChar last = text.isEmpty() ? QChar() : text.back();
  const qsizetype other = kOther.indexOf(last);
  if (other >= 0) return kEnglish.at(other);
  return QStringLiteral(".:?!;…").contains(last) ? last : QChar();
}

// Without the access key that some languages append in parentheses.
QString withoutAccessKey(QString text) {
  static const QRegularExpression kAppended("\\(&[A-Z]\\)");
  return text.remove(kAppended);
}

TEST_P(Translations, EveryTextIsTranslated) {
  if (GetParam().name != std::string("en")) {
    EXPECT_THAT(messages(), SizeIs(Gt(30u)));
  }
  for (const Message& message : messages()) {
    EXPECT_EQ(message.state, "") << describe(message);
    EXPECT_THAT(message.forms, SizeIs(message.hasPluralForms ? GetParam().pluralForms : 1))
        << describe(message);
    for (const QString& form : message.forms) EXPECT_NE(form.trimmed(), "") << describe(message);
  }
}

TEST_P(Translations, EveryTextHasACommentForItsTranslator) {
  for (const Message& message : messages()) EXPECT_NE(message.comment, "") << describe(message);
}

// Arabic has forms for none, one and two, whose nouns say the number by themselves.
TEST_P(Translations, WhatIsInsertedStays) {
  const int formsWithoutNumber = GetParam().pluralForms == 6 ? 3 : 0;
  for (const Message& message : messages()) {
    const QStringList expected = placeholdersIn(message.source);
    for (int form = 0; form < message.forms.size(); ++form) {
      QStringList found = placeholdersIn(message.forms[form]);
      if (message.hasPluralForms && form < formsWithoutNumber && !found.contains("%n")) {
        found.append("%n");
        found.sort();
      }
      EXPECT_EQ(found.join(' '), expected.join(' ')) << describe(message);
    }
  }
}

// What a key stands for is a question and a sentence.
TEST_P(Translations, TextsEndAsInEnglish) {
  for (const Message& message : messages()) {
    const QChar expected =
        message.context == u"Localizable" ? QChar(u'.') : endOf(withoutAccessKey(message.source));
    for (const QString& form : message.forms) {
      EXPECT_EQ(endOf(withoutAccessKey(form)), expected) << describe(message);
      EXPECT_EQ(form.trimmed(), form) << describe(message);
      EXPECT_EQ(form.count(u'\n'), message.source.count(u'\n')) << describe(message);
    }
  }
}

// Arabic has none: a letter with a line below it is torn from its neighbours.
TEST_P(Translations, ThereIsAnAccessKeyWhereEnglishHasOne) {
  const bool hasKeys = GetParam().name != std::string("ar");
  for (const Message& message : messages()) {
    for (const QString& form : message.forms) {
      EXPECT_EQ(form.count(u'&'), hasKeys ? message.source.count(u'&') : 0) << describe(message);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, Translations, testing::ValuesIn(kLanguages), inTestNames);

// Languages as desktops call them.
QStringList desktopLocales() {
  QStringList locales;
  for (const Language& language : kLanguages) {
    const QString name(language.name);
    if (name == u"en") continue;
    locales.append(name == u"pt" ? "pt_BR" : name == u"zh_Hans" ? "zh_CN" : name);
  }
  return locales;
}

QString packaged(const std::string& name) {
  QFile file(QString::fromStdString(projectFile("packaging/" + name)));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
  return QString::fromUtf8(file.readAll());
}

TEST(DesktopFiles, MenusHaveTheProgramInEveryLanguage) {
  const QString entry = packaged("fwupdate.desktop");
  for (const QString& locale : desktopLocales()) {
    for (const QString key : {"Name", "GenericName", "Comment", "Keywords"}) {
      const QRegularExpression line("^" + key + "\\[" + locale + "\\]=.+$",
                                    QRegularExpression::MultilineOption);
      EXPECT_TRUE(line.match(entry).hasMatch()) << key.toStdString() << locale.toStdString();
    }
  }
}

// Name, summary, two paragraphs, and the words below the picture.
TEST(DesktopFiles, SoftwareCentresDescribeItInEveryLanguage) {
  const QString description = packaged("fwupdate.metainfo.xml");
  for (const QString& locale : desktopLocales()) {
    EXPECT_EQ(description.count("xml:lang=\"" + locale + "\">"), 5) << locale.toStdString();
  }
}

TEST(TranslationFiles, EveryLanguageHasOne) {
  QStringList expected;
  for (const Language& language : kLanguages) {
    expected.append(QStringLiteral("fwupdate_") + language.name);
  }
  QStringList sources;
  for (const QFileInfo& file : QDir(QString::fromStdString(projectFile("resources/translations")))
                                   .entryInfoList({"fwupdate_*.ts"})) {
    sources.append(file.baseName());
  }
  QStringList compiled;
  for (const QFileInfo& file :
       QDir(QString::fromStdString(builtFile("share/fwupdate/translations")))
           .entryInfoList({"*.qm"})) {
    compiled.append(file.baseName());
  }
  EXPECT_EQ(sources.join(' '), expected.join(' '));
  EXPECT_EQ(compiled.join(' '), expected.join(' '));
}

// What the program looks up by a key that is no text.
TEST(TranslationFiles, EnglishHasTheTextsThatHaveKeys) {
  const auto german = readTranslations(translation("fwupdate_de"));
  const auto english = readTranslations(translation("Localizable_en"));
  static const QRegularExpression kKey("^[A-Z_]+$");
  QStringList keys;
  for (const Message& message : german) {
    if (kKey.match(message.source).hasMatch()) keys.append(message.source);
  }
  QStringList found;
  for (const Message& message : english) {
    EXPECT_EQ(message.context, "Localizable");
    EXPECT_EQ(message.state, "");
    found.append(message.source);
  }
  keys.sort();
  found.sort();
  EXPECT_EQ(found.join(' '), keys.join(' '));
}

// A firmware is not loaded: the printer is brought up to date.
TEST(TranslationFiles, GermanSaysAktualisieren) {
  static const QRegularExpression kLoad("(ge|herunter)?lade|\\blädt|\\blud",
                                        QRegularExpression::CaseInsensitiveOption);
  for (const Message& message : readTranslations(translation("fwupdate_de"))) {
    for (const QString& form : message.forms) {
      EXPECT_FALSE(kLoad.match(form).hasMatch()) << describe(message);
    }
  }
}

}  // namespace
