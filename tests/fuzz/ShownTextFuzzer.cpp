// Devices choose the names that windows show: they stay on one line, and marks that let them be
// broken change nothing else.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/qt/QtText.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool breaksLine(QChar character) {
  return character.unicode() < 0x20 ||
         (character.unicode() >= 0x7F && character.unicode() < 0xA0) ||
         character.unicode() == 0x2028 || character.unicode() == 0x2029;
}

QString withoutMarks(QString string) { return string.remove(QChar(0x200B)); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto* const bytes = reinterpret_cast<const char*>(data);
  const platform::Text text = platform::Text::fromUtf8({bytes, size});
  if (text.isNull()) return 0;
  const QString string = platform::toQString(text);
  require(platform::toText(string).utf8() == text.utf8());

  const QString line = platform::onOneLine(string);
  require(line.size() == string.size());
  for (qsizetype i = 0; i < line.size(); ++i) {
    require(line[i] == (breaksLine(string[i]) ? QChar(u' ') : string[i]));
  }
  require(withoutMarks(platform::breakable(line)) == withoutMarks(line));
  return 0;
}
