#include "platform/qt/ShownLine.h"

#include "platform/qt/Em.h"
#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kLongWord = 10;  // in ems

}  // namespace

bool isLongWord(const QString& word, const QLabel& label) {
  return label.fontMetrics().horizontalAdvance(word) > kLongWord * emOf(label);
}

void showLine(QLabel& label, const QString& line) {
  label.setTextFormat(Qt::PlainText);
  const QString shown = legible(line);
  label.setText(breakable(isolated(shown),
                          [&label](const QString& word) { return isLongWord(word, label); }));
  label.setAccessibleName(shown);
}

}  // namespace platform
