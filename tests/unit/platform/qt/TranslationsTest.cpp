#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTranslator>
#include <QXmlStreamReader>
#include <set>

namespace {

struct SourceText {
  QString context;
  QString text;
};

// What a user reads in the windows.
std::vector<SourceText> sourceTexts() {
  std::vector<SourceText> texts;
  const QDir directory(INTERFACE_FILES);
  for (const QString& name : directory.entryList({"*.ui"})) {
    QFile file(directory.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    QString context;
    while (!reader.atEnd()) {
      if (reader.readNext() != QXmlStreamReader::StartElement) continue;
      if (reader.name() == u"class") {
        context = reader.readElementText();
      } else if (reader.name() == u"string" && reader.attributes().value("notr") != u"true") {
        texts.push_back({context, reader.readElementText()});
      }
    }
    EXPECT_FALSE(reader.hasError()) << name.toStdString();
  }
  return texts;
}

TEST(Translations, GermanHasEveryTextOfTheWindows) {
  QTranslator german;
  ASSERT_TRUE(german.load(QStringLiteral(RESOURCES_DIR "/translations/fwupdate_de.qm")));
  const std::vector<SourceText> texts = sourceTexts();
  EXPECT_GT(texts.size(), 20u);
  for (const auto& [context, text] : texts) {
    EXPECT_FALSE(
        german.translate(context.toUtf8().constData(), text.toUtf8().constData()).isEmpty())
        << context.toStdString() << ": " << text.toStdString();
  }
}

TEST(Translations, MnemonicsDifferWithinAWindow) {
  QTranslator german;
  ASSERT_TRUE(german.load(QStringLiteral(RESOURCES_DIR "/translations/fwupdate_de.qm")));
  std::set<std::pair<QString, QChar>> english;
  std::set<std::pair<QString, QChar>> translated;
  const auto mnemonic = [](const QString& text) {
    const qsizetype mark = text.indexOf(u'&');
    return mark < 0 ? QChar() : text.at(mark + 1).toLower();
  };
  for (const auto& [context, text] : sourceTexts()) {
    if (mnemonic(text).isNull()) continue;
    const QString inGerman =
        german.translate(context.toUtf8().constData(), text.toUtf8().constData());
    EXPECT_TRUE(english.emplace(context, mnemonic(text)).second) << text.toStdString();
    EXPECT_FALSE(mnemonic(inGerman).isNull()) << text.toStdString();
    EXPECT_TRUE(translated.emplace(context, mnemonic(inGerman)).second) << text.toStdString();
  }
}

}  // namespace
