#include "platform/qt/Notice.h"

#include <QAccessibleWidget>
#include <QStackedWidget>

#include "platform/qt/ListControl.h"
#include "platform/qt/QtText.h"

namespace platform {
namespace {

QAccessibleInterface* accessibleNotice(const QString&, QObject* object) {
  auto* const notice = dynamic_cast<Notice*>(object);
  return notice == nullptr ? nullptr : new QAccessibleWidget(notice, QAccessible::AlertMessage);
}

}  // namespace

Notice::Notice(QWidget* parent) : QLabel(parent) { QAccessible::installFactory(accessibleNotice); }

void Notice::watch(ListControl& list) {
  mList = &list;
  connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this, &Notice::leave);
}

void Notice::noteCommand(FourCharCode command) {
  const bool concerned = codeFrom(property("selectionMissingFor").toString()) == command;
  if (!concerned || mList == nullptr || mList->selectedItem() != 0) return;
  appear();
  mList->setFocus();
}

void Notice::noteCopied() {
  if (property("saysCopied").toBool()) appear();
}

void Notice::appear() {
  setAccessibleName(text());
  leave();
  if (auto* const pages = qobject_cast<QStackedWidget*>(parentWidget())) {
    pages->setCurrentWidget(this);
  }
}

void Notice::leave() {
  if (auto* const pages = qobject_cast<QStackedWidget*>(parentWidget())) pages->setCurrentIndex(0);
}

}  // namespace platform
