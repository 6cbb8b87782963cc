#include "platform/qt/SheetDialog.h"

#include <QCloseEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

#include "platform/qt/Em.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/QtText.h"
#include "platform/qt/ShownLine.h"

namespace platform {
namespace {

constexpr int kWidthInEms = 35;

}  // namespace

SheetDialog::SheetDialog(QWidget* parent) : QDialog(parent) {}

// Not modal in the sense of Qt, which would close what the sheet blocks to Quit as well.
void SheetDialog::showOver(QWidget& over) {
  Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
  if (closeCommand() != 0) flags |= Qt::WindowCloseButtonHint;
  if (parentWidget() != &over || windowFlags() != flags) setParent(&over, flags);
  setAttribute(Qt::WA_Moved, false);  // centred on the parent each time
  auto* const list = over.findChild<ListControl*>();
  if (list != nullptr) nameRow(*list);
  fitToContents();
  if (list != nullptr && list->selectedItem() != 0) {
    list->scrollToSelected(QAbstractItemView::EnsureVisible);
    if (!placeClearOf(list->selectedPlace(), over)) {
      list->scrollToSelected(QAbstractItemView::PositionAtTop);
      placeClearOf(list->selectedPlace(), over);
    }
  }
  for (QPushButton* button : findChildren<QPushButton*>()) {
    if (button->isDefault() && button->window() == this) button->setFocus();
  }
  show();
}

void SheetDialog::nameRow(const ListControl& list) {
  for (QLabel* label : findChildren<QLabel*>()) {
    const QStringList columns = label->property("selectedColumns").toString().split(u' ');
    if (columns.size() != 2) continue;
    const QString name = list.selectedText(codeFrom(columns[0]));
    const QString detail = list.selectedText(codeFrom(columns[1]));
    showLine(*label, detail.isEmpty() ? name : name + " (" + detail + u')');
    label->setVisible(!name.isEmpty());
  }
}

// Centred, or below the row, or above it. Where there is no room it covers the row, and false comes
// back. The frame, which the sheet does not have yet, is taken to be like that of `over`.
bool SheetDialog::placeClearOf(const QRect& row, const QWidget& over) {
  const QRect room = over.screen()->availableGeometry();
  const int gap = fontMetrics().height() / 2;
  QRect place(QPoint(), size() + over.frameGeometry().size() - over.geometry().size());
  place.moveCenter(over.frameGeometry().center());
  place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() - place.width() + 1)));
  if (place.intersects(row)) {
    place.moveTop(row.bottom() + 1 + gap);
    if (place.bottom() > room.bottom()) place.moveBottom(row.top() - 1 - gap);
  }
  place.moveBottom(std::min(place.bottom(), room.bottom()));
  place.moveTop(std::max(place.top(), room.top()));
  setGeometry(
      {place.topLeft() + over.geometry().topLeft() - over.frameGeometry().topLeft(), size()});
  return !place.intersects(row);
}

void SheetDialog::reject() { issue(codeFrom(property("cancelCommand").toString())); }

void SheetDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  issue(closeCommand());
}

bool SheetDialog::isAnsweredByClosing() const { return !property("closeCommand").isValid(); }

FourCharCode SheetDialog::closeCommand() const {
  const FourCharCode own = codeFrom(property("closeCommand").toString());
  return own != 0 ? own : codeFrom(property("cancelCommand").toString());
}

void SheetDialog::issue(FourCharCode command) {
  if (command != 0 && mCommanded) mCommanded(command);
}

void SheetDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange) fitToContents();
}

bool SheetDialog::event(QEvent* event) {
  const bool answer = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest && isVisible()) {
    fitToContents();
    keepOnScreen();
  }
  return answer;
}

// Where programs place their own windows: on Wayland they do not.
void SheetDialog::keepOnScreen() {
  const QRect room = screen()->availableGeometry();
  const QRect frame = frameGeometry();
  const int left = std::max(room.left(), std::min(frame.left(), room.right() - frame.width() + 1));
  const int top = std::max(room.top(), std::min(frame.top(), room.bottom() - frame.height() + 1));
  if (frame.topLeft() != QPoint(left, top)) move(left, top);
}

void SheetDialog::fitToContents() {
  if (layout() == nullptr) return;
  layout()->activate();
  const int wanted = std::min(kWidthInEms * emOf(*this), screen()->availableSize().width());
  const int width = std::max(wanted, layout()->totalMinimumSize().width());
  const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                   : layout()->totalSizeHint().height();
  const int frame = frameGeometry().height() - geometry().height();
  const int room = screen()->availableSize().height() - frame;
  setFixedSize(width, std::max(std::min(height, room), layout()->totalMinimumSize().height()));
}

}  // namespace platform
