#include "platform/qt/SheetDialog.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kWidthInCharacters = 62;

}  // namespace

SheetDialog::SheetDialog(QWidget* parent) : QDialog(parent) {}

void SheetDialog::showOver(QWidget& over) {
  Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
  if (codeFrom(property("cancelCommand").toString()) != 0) flags |= Qt::WindowCloseButtonHint;
  if (parentWidget() != &over || windowFlags() != flags) setParent(&over, flags);
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_Moved, false);  // centred on the parent each time
  fitToContents();
  for (QPushButton* button : findChildren<QPushButton*>()) {
    if (button->isDefault() && button->window() == this) button->setFocus();
  }
  show();
}

void SheetDialog::reject() {
  const FourCharCode command = codeFrom(property("cancelCommand").toString());
  if (command != 0 && mCancelled) mCancelled(command);
}

void SheetDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

// A key that is still held down from before must not answer the sheet.
void SheetDialog::keyPressEvent(QKeyEvent* event) {
  if (!event->isAutoRepeat()) QDialog::keyPressEvent(event);
}

void SheetDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange) fitToContents();
}

void SheetDialog::fitToContents() {
  if (layout() == nullptr) return;
  layout()->activate();
  const int wanted = std::min(kWidthInCharacters * fontMetrics().averageCharWidth(),
                              screen()->availableSize().width());
  const int width = std::max(wanted, layout()->totalMinimumSize().width());
  const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                   : layout()->totalSizeHint().height();
  setFixedSize(width, height);
}

}  // namespace platform
