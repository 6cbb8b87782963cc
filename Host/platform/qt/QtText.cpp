#include "platform/qt/QtText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

namespace platform {

QString onOneLine(QString string) {
  for (QChar& character : string) {
    switch (character.category()) {
      case QChar::Other_Control:
      case QChar::Separator_Line:
      case QChar::Separator_Paragraph:
        character = u' ';
        break;
      default:
        break;
    }
  }
  return string;
}

QString breakable(const QString& string) {
  constexpr qsizetype kLongWord = 20;
  constexpr QChar kZeroWidthSpace(0x200B);
  QStringList words = string.split(u' ');
  for (QString& word : words) {
    if (word.size() <= kLongWord) continue;
    QString marked;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, word);
    qsizetype begin = 0;
    for (qsizetype end = characters.toNextBoundary(); end > 0; end = characters.toNextBoundary()) {
      marked += word.mid(begin, end - begin) + kZeroWidthSpace;
      begin = end;
    }
    word = marked;
  }
  return words.join(u' ');
}

FourCharCode codeFrom(const QString& characters) {
  if (characters.isEmpty() || characters.size() > 4) return 0;
  FourCharCode code = 0;
  for (const char character : characters.leftJustified(4, u' ').toLatin1()) {
    code = code << 8 | static_cast<unsigned char>(character);
  }
  return code;
}

QString charactersOf(FourCharCode code) {
  QString characters;
  for (int shift = 24; shift >= 0; shift -= 8) {
    characters += QLatin1Char(static_cast<char>(code >> shift & 0xFF));
  }
  return characters;
}

}  // namespace platform
