#include "platform/qt/SheetDialog.h"

#include <QCloseEvent>
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

// Not modal in the sense of Qt, which would close what the sheet blocks to Quit as well.
void SheetDialog::showOver(QWidget& over) {
  Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
  if (closeCommand() != 0) flags |= Qt::WindowCloseButtonHint;
  if (parentWidget() != &over || windowFlags() != flags) setParent(&over, flags);
  setAttribute(Qt::WA_Moved, false);  // centred on the parent each time
  fitToContents();
  for (QPushButton* button : findChildren<QPushButton*>()) {
    if (button->isDefault() && button->window() == this) button->setFocus();
  }
  show();
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
