#include "platform/qt/CopyButton.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStringList>

namespace platform {
namespace {

// As it is read out: without the marks that lay a line out.
QString textOf(const QWidget& widget) {
  if (const auto* const edit = qobject_cast<const QPlainTextEdit*>(&widget)) {
    return edit->toPlainText();
  }
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  if (label == nullptr || label->isHidden()) return {};
  return label->accessibleName().isEmpty() ? label->text() : label->accessibleName();
}

}  // namespace

CopyButton::CopyButton(QWidget* parent) : Button(parent) {
  connect(this, &QAbstractButton::clicked, this, [this] { copy(); });
}

void CopyButton::copy() {
  QStringList texts;
  for (const QString& name : property("copies").toString().split(u' ')) {
    const auto* const widget = window()->findChild<QWidget*>(name);
    const QString text = widget == nullptr ? QString() : textOf(*widget);
    if (!text.isEmpty()) texts += text;
  }
  QGuiApplication::clipboard()->setText(texts.join(u'\n'));
  setText(property("copiedText").toString());
}

}  // namespace platform
