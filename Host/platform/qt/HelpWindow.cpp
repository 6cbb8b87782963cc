#include "platform/qt/HelpWindow.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <QUrl>

#include "platform/Diagnostics.h"
#include "platform/qt/Em.h"

namespace platform {

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent) { setAttribute(Qt::WA_DeleteOnClose); }

void HelpWindow::setUp(const QString& resources, const Diagnostics* diagnostics) {
  for (QLabel* label : findChildren<QLabel*>()) {
    showFact(*label, diagnostics);
    if (label->property("foundNothing").toBool()) label->hide();
  }
  for (QPushButton* button : findChildren<QPushButton*>()) {
    if (button->property("closes").toBool()) {
      connect(button, &QPushButton::clicked, this, &QWidget::close);
    }
  }
  auto* const document = findChild<QTextBrowser*>();
  auto* const field = findChild<QLineEdit*>();
  if (document == nullptr) return;
  const QString file = resources + u'/' + document->property("shows").toString();
  if (QFileInfo(file).isFile()) document->setSource(QUrl::fromLocalFile(file));
  if (field != nullptr) {
    connect(field, &QLineEdit::textEdited, this, [=, this] { search(*field, *document, true); });
    connect(field, &QLineEdit::returnPressed, this,
            [=, this] { search(*field, *document, false); });
  }
  const QSize wanted(property("ems").toInt() * emOf(*this),
                     property("lines").toInt() * fontMetrics().lineSpacing());
  resize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
}

void HelpWindow::showFact(QLabel& label, const Diagnostics* diagnostics) {
  const QString fact = label.property("fact").toString();
  if (fact.isEmpty()) return;
  if (diagnostics == nullptr) return label.hide();
  QStringList texts;
  if (fact == u"version") texts.append(QString::fromStdString(diagnostics->programVersion()));
  if (fact == u"libraries") {
    for (const auto& [name, version] : diagnostics->libraries()) {
      texts.append(QString::fromStdString(name) + u' ' + QString::fromStdString(version));
    }
  }
  label.setText(label.text().arg(texts.join(u'\n')));
}

// What is typed on narrows the search down where it stands; Return goes on to the next place, and
// from the last to the first.
void HelpWindow::search(QLineEdit& field, QTextBrowser& document, bool anew) {
  const QString text = field.text();
  QTextCursor cursor = document.textCursor();
  if (anew) {
    cursor.setPosition(cursor.selectionStart());
    document.setTextCursor(cursor);
  }
  bool found = text.isEmpty() || document.find(text);
  if (!found) {
    document.moveCursor(QTextCursor::Start);
    found = document.find(text);
  }
  for (QLabel* label : findChildren<QLabel*>()) {
    if (label->property("foundNothing").toBool()) label->setVisible(!found);
  }
}

}  // namespace platform
