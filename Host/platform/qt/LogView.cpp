#include "platform/qt/LogView.h"

#include <QFontDatabase>
#include <QStringList>

#include "platform/LogHistory.h"
#include "platform/Platform.h"
#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kLines = 10;
constexpr int kFewestLines = 3;

}  // namespace

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void LogView::watch(const DownloadState&) {
  const LogHistory* const history = current().logHistory;
  if (history == nullptr) return;
  QStringList lines;
  for (const LogHistory::Entry& entry : history->entriesOfDownload()) {
    lines += legible(QString::fromStdString(lineOfToday(entry)));
  }
  setPlainText(lines.join(u'\n'));
  moveCursor(QTextCursor::End);
}

QSize LogView::sizeHint() const { return sizeOfLines(kLines); }

QSize LogView::minimumSizeHint() const { return sizeOfLines(kFewestLines); }

QSize LogView::sizeOfLines(int count) const {
  const int margins = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
  return {0, count * fontMetrics().lineSpacing() + margins};
}

}  // namespace platform
