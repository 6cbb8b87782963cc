#include "platform/qt/Help.h"

#include <QClipboard>
#include <QGuiApplication>
#include <memory>
#include <utility>

#include "platform/Diagnostics.h"
#include "platform/Platform.h"
#include "platform/qt/NibLoader.h"

namespace platform {

Help::Help(QMainWindow& window, QString nib, std::function<void()> copied)
    : mWindow(&window), mNib(std::move(nib)), mCopied(std::move(copied)) {}

bool Help::has(const QAction& action) {
  return action.property("opens").isValid() || action.property("copies").isValid();
}

void Help::perform(const QAction& action) {
  if (action.property("copies").isValid()) return copyDiagnostics();
  open(action.property("opens").toString());
}

void Help::open(const QString& name) {
  QPointer<HelpWindow>& known = mOpen[name];
  if (known == nullptr) {
    auto loaded = loadInterfaceFile(mNib + u'/' + name + ".ui", mNib + QStringLiteral("/../icons"));
    known = dynamic_cast<HelpWindow*>(loaded.get());
    if (known == nullptr) return;
    known->setParent(mWindow, Qt::Dialog);
    static_cast<void>(loaded.release());  // the parent's now
    known->setUp(mNib + QStringLiteral("/.."), current().diagnostics);
  }
  known->show();
  known->raise();
  known->activateWindow();
}

void Help::copyDiagnostics() {
  if (current().diagnostics == nullptr) return;
  current().diagnostics->report(current().logHistory, [this](const std::string& report) {
    if (mWindow == nullptr) return;
    QGuiApplication::clipboard()->setText(QString::fromStdString(report));
    mCopied();
  });
}

}  // namespace platform
