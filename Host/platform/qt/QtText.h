// Between the program's texts and Qt's.
#pragma once

#include <QString>
#include <string_view>

#include "platform/FourCharCode.h"
#include "platform/Text.h"

namespace platform {

// Empty for a null text.
inline QString toQString(const Text& text) {
  const std::string_view bytes = text.utf8();
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

inline Text toText(const QString& string) {
  const QByteArray bytes = string.toUtf8();
  return Text::fromUtf8({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

// For names that a device sends: whatever would break the line or move the cursor becomes a blank.
QString onOneLine(QString string);

// Lets words that are too long for a line be broken, by marks that do not show.
QString breakable(const QString& string);

// The code that an interface file writes as up to four characters, the blanks at its end optional.
// 0 for an empty or longer text.
FourCharCode codeFrom(const QString& characters);

QString charactersOf(FourCharCode code);

}  // namespace platform
