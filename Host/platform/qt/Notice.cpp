#include "platform/qt/Notice.h"

#include <QAccessibleWidget>

#include "platform/qt/ListControl.h"
#include "platform/qt/QtText.h"

namespace platform {
namespace {

QAccessibleInterface* accessibleNotice(const QString&, QObject* object) {
  auto* const notice = dynamic_cast<Notice*>(object);
  return notice == nullptr ? nullptr : new QAccessibleWidget(notice, QAccessible::AlertMessage);
}

}  // namespace

Notice::Notice(QWidget* parent) : QLabel(parent) {
  QAccessible::installFactory(accessibleNotice);
  hide();
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
}

void Notice::watch(ListControl& list) {
  mList = &list;
  connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this, &QWidget::hide);
}

void Notice::noteCommand(FourCharCode command) {
  const bool concerned = codeFrom(property("selectionMissingFor").toString()) == command;
  if (!concerned || mList == nullptr || mList->selectedItem() != 0) return;
  setAccessibleName(text());
  hide();
  show();
  mList->setFocus();
}

}  // namespace platform
