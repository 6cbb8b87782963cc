#include "platform/qt/QtText.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTextBoundaryFinder>

namespace platform {

namespace {

// Languages need no more on one letter.
constexpr int kMostMarks = 4;

constexpr QChar kFirstStrongIsolate(0x2068);
constexpr QChar kPopDirectionalIsolate(0x2069);
constexpr QChar kZeroWidthSpace(0x200B);

bool isMark(char32_t character) {
  const QChar::Category category = QChar::category(character);
  return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

bool isUnseen(char32_t character) {
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

QStringList divided(const QString& text, QTextBoundaryFinder::BoundaryType type) {
  QStringList parts;
  QTextBoundaryFinder boundaries(type, text);
  qsizetype begin = 0;
  for (qsizetype end = boundaries.toNextBoundary(); end > 0; end = boundaries.toNextBoundary()) {
    parts.append(text.mid(begin, end - begin));
    begin = end;
  }
  return parts;
}

}  // namespace

QString isolate(const QString& value) {
  return kFirstStrongIsolate + value + kPopDirectionalIsolate;
}

QString withoutMarks(const QString& line) {
  QString read = line;
  for (const QChar mark : {kFirstStrongIsolate, kPopDirectionalIsolate, kZeroWidthSpace}) {
    read.remove(mark);
  }
  return read;
}

QString withLatinDigits(const QString& number) {
  constexpr QChar kArabicDecimalSeparator(0x066B);
  QString latin;
  for (const QChar character : number) {
    latin += character.isDigit() ? QChar(u'0' + character.digitValue()) : character;
  }
  return latin.replace(kArabicDecimalSeparator, u'.');
}

QString printerInSentence(const QString& name, const QString& address) {
  //: in place of a printer's name in a sentence: "%1 was updated to version ..."
  const QString nameless = QCoreApplication::translate("QtText", "A printer without a name");
  const QString shown = isolate(name.trimmed().isEmpty() ? nameless : name);
  return address.isEmpty() ? shown : shown + " (" + isolate(address) + u')';
}

QString legible(const QString& string) {
  QString shown;
  int marks = 0;
  for (const char32_t character : string.toUcs4()) {
    marks = isMark(character) ? marks + 1 : 0;
    const bool remains = !isUnseen(character) && marks <= kMostMarks;
    shown += QChar::fromUcs4(remains ? character : char32_t{QChar::ReplacementCharacter});
  }
  return shown;
}

QString isolated(const QString& line) {
  constexpr QLatin1String kOpening(" (");
  const qsizetype opening = line.lastIndexOf(kOpening);
  if (opening < 0 || !line.endsWith(u')')) return line;
  const qsizetype address = opening + kOpening.size();
  return isolate(line.left(opening)) + kOpening +
         isolate(line.mid(address, line.size() - 1 - address)) + u')';
}

QString breakable(const QString& line, const std::function<bool(const QString& word)>& isTooLong) {
  QString shown;
  for (const QString& word : divided(line, QTextBoundaryFinder::Line)) {
    if (isTooLong(word.trimmed())) {
      shown += divided(word, QTextBoundaryFinder::Grapheme).join(kZeroWidthSpace) + kZeroWidthSpace;
    } else {
      shown += word;
    }
  }
  return shown;
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
