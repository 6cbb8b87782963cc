#include "platform/qt/LiveLabel.h"

#include <QAccessibleWidget>
#include <algorithm>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

class AccessibleLiveLabel final : public QAccessibleWidget {
 public:
  explicit AccessibleLiveLabel(LiveLabel& label)
      : QAccessibleWidget(&label, QAccessible::AlertMessage), mLabel(label) {}

  QString text(QAccessible::Text which) const override {
    if (which != QAccessible::Name || !mLabel.accessibleName().isEmpty()) {
      return QAccessibleWidget::text(which);
    }
    return withoutMarks(mLabel.text());
  }

 private:
  const LiveLabel& mLabel;
};

QAccessibleInterface* accessibleLiveLabel(const QString&, QObject* object) {
  auto* const label = dynamic_cast<LiveLabel*>(object);
  return label == nullptr ? nullptr : new AccessibleLiveLabel(*label);
}

}  // namespace

LiveLabel::LiveLabel(QWidget* parent) : QLabel(parent) {
  QAccessible::installFactory(accessibleLiveLabel);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  QSizePolicy policy = sizePolicy();
  policy.setHeightForWidth(true);  // also while there is no text
  setSizePolicy(policy);
}

void LiveLabel::say(const QString& text) {
  if (text == this->text()) return;
  setText(text);
  if (text.isEmpty()) return;
  QAccessibleEvent said(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&said);
}

void LiveLabel::keepRoomFor(const QStringList& texts) {
  mExpected = texts;
  updateGeometry();
}

int LiveLabel::heightForWidth(int width) const {
  int height = heightOf(text(), width);
  for (const QString& each : mExpected) height = std::max(height, heightOf(each, width));
  return height;
}

QSize LiveLabel::sizeHint() const {
  const int width = QLabel::sizeHint().width();
  return {width, heightForWidth(width)};
}

int LiveLabel::heightOf(const QString& text, int width) const {
  const QRect room(0, 0, width, QWIDGETSIZE_MAX);
  const int flags = Qt::TextWordWrap | static_cast<int>(alignment());
  return fontMetrics().boundingRect(room, flags, text).height();
}

}  // namespace platform
