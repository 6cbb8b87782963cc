#include "TranslationFile.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QXmlStreamReader>

namespace {

// With the reader inside of it.
void readTranslation(QXmlStreamReader& reader, Message& message) {
  message.state = reader.attributes().value("type").toString();
  if (!message.hasPluralForms) {
    message.forms.append(reader.readElementText());
    return;
  }
  while (reader.readNextStartElement()) message.forms.append(reader.readElementText());
}

Message readMessage(QXmlStreamReader& reader, const QString& context) {
  Message message;
  message.context = context;
  message.hasPluralForms = reader.attributes().value("numerus") == u"yes";
  while (reader.readNextStartElement()) {
    if (reader.name() == u"source") {
      message.source = reader.readElementText();
    } else if (reader.name() == u"extracomment" || reader.name() == u"translatorcomment") {
      message.comment += reader.readElementText();
    } else if (reader.name() == u"translation") {
      readTranslation(reader, message);
    } else {
      reader.skipCurrentElement();
    }
  }
  return message;
}

}  // namespace

std::vector<Message> readTranslations(const QString& path) {
  std::vector<Message> messages;
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  QXmlStreamReader reader(&file);
  QString context;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    if (reader.name() == u"name") context = reader.readElementText();
    if (reader.name() == u"message") messages.push_back(readMessage(reader, context));
  }
  EXPECT_FALSE(reader.hasError()) << path.toStdString();
  return messages;
}

std::string describe(const Message& message) {
  return (message.context + ": \"" + message.source + "\" is \"" + message.forms.join("\", \"") +
          "\"")
      .toStdString();
}
