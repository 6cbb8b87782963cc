#include "platform/qt/DisclosureButton.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QStyleOption>

namespace platform {
namespace {

class AccessibleDisclosureButton final : public QAccessibleWidget {
 public:
  explicit AccessibleDisclosureButton(DisclosureButton& button)
      : QAccessibleWidget(&button, QAccessible::Button), mButton(button) {}

  QString text(QAccessible::Text which) const override {
    if (which != QAccessible::Name) return QAccessibleWidget::text(which);
    return mButton.text().remove(u'&');
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = mButton.isExpanded();
    state.collapsed = !mButton.isExpanded();
    return state;
  }

  QStringList actionNames() const override {
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
  }

  void doAction(const QString& name) override {
    if (name == pressAction()) {
      mButton.click();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  DisclosureButton& mButton;
};

QAccessibleInterface* accessibleDisclosureButton(const QString&, QObject* object) {
  auto* const button = dynamic_cast<DisclosureButton*>(object);
  return button == nullptr ? nullptr : new AccessibleDisclosureButton(*button);
}

}  // namespace

DisclosureButton::DisclosureButton(QWidget* parent) : Button(parent) {
  QAccessible::installFactory(accessibleDisclosureButton);
  connect(this, &QAbstractButton::clicked, this, [this] { setExpanded(!mExpanded); });
  showState();
}

// Its window is complete when it is polished, before it is first shown.
bool DisclosureButton::event(QEvent* event) {
  if (event->type() == QEvent::Polish) setExpanded(mExpanded);
  return Button::event(event);
}

void DisclosureButton::changeEvent(QEvent* event) {
  Button::changeEvent(event);
  const bool isLook = event->type() == QEvent::StyleChange ||
                      event->type() == QEvent::PaletteChange ||
                      event->type() == QEvent::LayoutDirectionChange;
  if (isLook) showState();
}

void DisclosureButton::setExpanded(bool expanded) {
  mExpanded = expanded;
  for (const QString& name : property("discloses").toString().split(u' ')) {
    if (auto* const part = window()->findChild<QWidget*>(name)) part->setVisible(expanded);
  }
  showState();
  QAccessible::State changed;
  changed.expanded = true;
  QAccessibleStateChangeEvent told(this, changed);
  QAccessible::updateAccessibility(&told);
}

void DisclosureButton::showState() {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const auto closed = isMirrored ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight;
  QPixmap arrow(iconSize() * devicePixelRatio());
  arrow.setDevicePixelRatio(devicePixelRatio());
  arrow.fill(Qt::transparent);
  QStyleOption option;
  option.initFrom(this);
  option.rect = QRect(QPoint(), iconSize());
  QPainter painter(&arrow);
  style()->drawPrimitive(mExpanded ? QStyle::PE_IndicatorArrowDown : closed, &option, &painter,
                         this);
  setIcon(arrow);
}

}  // namespace platform
