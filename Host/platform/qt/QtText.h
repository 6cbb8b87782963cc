// Between the program's texts and Qt's.
#pragma once

#include <QString>
#include <QStringDecoder>
#include <functional>
#include <string_view>

#include "platform/FourCharCode.h"
#include "platform/Text.h"

namespace platform {

// Empty for a null text. A byte-order mark is a character like any other.
inline QString toQString(const Text& text) {
  const std::string_view bytes = text.utf8();
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  return decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

inline Text toText(const QString& string) {
  const QByteArray bytes = string.toUtf8();
  return Text::fromUtf8({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

// For texts that a device sends: on one line, and each character stands where it was sent. What
// does not show, or changes how the rest is read (control and format characters, line ends, code
// points without a meaning, more combining marks than a language needs), becomes U+FFFD.
QString legible(const QString& string);

// For "NAME (ADDRESS)", as the program writes a printer: isolates the two from each other, so that
// a name in a script from right to left keeps its own order and leaves the address alone. The
// address is what the parentheses at the end hold. Other texts stay as they are.
QString isolated(const QString& line);

// A printer in a sentence, from legible texts: "NAME (ADDRESS)", or its name alone where there is
// no address. Isolated from each other and from the rest of the sentence.
QString printerInSentence(const QString& name, const QString& address);

// A value in a sentence, which may be written in the other direction.
QString isolate(const QString& value);

// The same text for whoever does not look at it: without the marks for its layout.
QString withoutMarks(const QString& line);

// An amount or a time with the digits that printers, addresses and versions have everywhere: one
// text does not mix two kinds of them.
QString withLatinDigits(const QString& number);

// Lets the words be broken that are too long for a line, by marks that do not show. A word goes to
// where its script lets a line end: in Japanese or Chinese that is after most characters.
QString breakable(const QString& line, const std::function<bool(const QString& word)>& isTooLong);

// The code that an interface file writes as up to four characters, the blanks at its end optional.
// 0 for an empty or longer text.
FourCharCode codeFrom(const QString& characters);

QString charactersOf(FourCharCode code);

}  // namespace platform
