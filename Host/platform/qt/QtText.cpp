#include "platform/qt/QtText.h"

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
