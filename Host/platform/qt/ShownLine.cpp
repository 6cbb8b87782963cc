#include "platform/qt/ShownLine.h"

#include <QFontMetrics>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kLongWord = 20;  // in average characters

}  // namespace

void showLine(QLabel& label, const QString& line) {
  label.setTextFormat(Qt::PlainText);
  const QString shown = legible(line);
  const QFontMetrics font = label.fontMetrics();
  label.setText(breakable(isolated(shown), [&font](const QString& word) {
    return font.horizontalAdvance(word) > kLongWord * font.averageCharWidth();
  }));
  label.setAccessibleName(shown);
}

}  // namespace platform
