// Devices choose the names that windows show: nothing unseen remains in them, the rest stands where
// it was, and the marks that isolate and break them change nothing else.
#include <QList>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "platform/qt/QtText.h"
#include "require.h"

namespace {

// Not asked of Qt, whose tables legible() asks: what must never reach a window in any version of
// Unicode.
bool mustGo(char32_t c) {
  const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
  return c < 0x20 || within(0x7F, 0x9F) || c == 0xAD || c == 0x61C || c == 0x180E ||
         within(0x200B, 0x200F) || within(0x2028, 0x202E) || within(0x2060, 0x206F) ||
         within(0xD800, 0xF8FF) || within(0xFDD0, 0xFDEF) || c == 0xFEFF ||
         within(0xFFF0, 0xFFFB) || (c & 0xFFFE) == 0xFFFE || within(0xE0000, 0xE007F) ||
         c >= 0xF0000;
}

// Letters, digits, punctuation and ideographs of the scripts that most names are in.
bool mustStay(char32_t c) {
  const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
  return within(0x20, 0x7E) || (within(0xA0, 0x2FF) && c != 0xAD) || within(0x410, 0x44F) ||
         within(0x5D0, 0x5EA) || within(0x620, 0x64A) || within(0x3041, 0x3096) ||
         within(0x4E00, 0x9FA5) || within(0x1F600, 0x1F64F);
}

bool isMark(char32_t c) { return (c >= 0x300 && c <= 0x36F) || (c >= 0x20D0 && c <= 0x20F0); }

QString without(QString string, std::initializer_list<char16_t> marks) {
  for (const char16_t mark : marks) string.remove(QChar(mark));
  return string;
}

void checkLegible(const QString& string, const QString& line) {
  const auto before = string.toUcs4();
  const auto after = line.toUcs4();
  require(after.size() == before.size());
  int marks = 0;
  for (qsizetype i = 0; i < after.size(); ++i) {
    require(after[i] == before[i] || after[i] == 0xFFFD);
    require(!mustGo(after[i]));
    require(!mustStay(before[i]) || after[i] == before[i]);
    marks = isMark(after[i]) ? marks + 1 : 0;
    require(marks <= 4);
  }
}

// Balanced, one after the other, and nothing else is there that was not.
void checkIsolated(const QString& line, const QString& isolated) {
  require(without(isolated, {0x2068, 0x2069}) == line);
  int depth = 0;
  for (const QChar character : isolated) {
    if (character == QChar(0x2068)) require(++depth == 1);
    if (character == QChar(0x2069)) require(--depth == 0);
  }
  require(depth == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto* const bytes = reinterpret_cast<const char*>(data);
  const platform::Text text = platform::Text::fromUtf8({bytes, size});
  if (text.isNull()) return 0;
  const QString string = platform::toQString(text);
  require(platform::toText(string).utf8() == text.utf8());

  const QString line = platform::legible(string);
  checkLegible(string, line);
  require(platform::legible(line) == line);

  const QString isolated = platform::isolated(line);
  checkIsolated(line, isolated);
  checkIsolated(line + " (10.0.0.9)", platform::isolated(line + " (10.0.0.9)"));
  require(platform::isolated(line + " (10.0.0.9)").endsWith(u" (\u206810.0.0.9\u2069)"));

  const auto isLong = [](const QString& word) { return word.size() > 20; };
  require(without(platform::breakable(isolated, isLong), {0x200B}) == isolated);
  return 0;
}
