#include "platform/qt/ShownLine.h"

#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kLongWord = 20;  // in average characters

}  // namespace

bool isLongWord(const QString& word, const QFontMetrics& font) {
  return font.horizontalAdvance(word) > kLongWord * font.averageCharWidth();
}

void showLine(QLabel& label, const QString& line) {
  label.setTextFormat(Qt::PlainText);
  const QString shown = legible(line);
  label.setText(breakable(isolated(shown), [font = label.fontMetrics()](const QString& word) {
    return isLongWord(word, font);
  }));
  label.setAccessibleName(shown);
}

}  // namespace platform
