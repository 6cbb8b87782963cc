// The Help menu. Its actions are no commands of the program, which is not told of them: an action
// with the dynamic property "opens" shows the window of that interface file, one with "copies" puts
// the diagnostic report on the clipboard, and the window's notice says so. Each window is loaded
// when it is asked for, and is there once. Used by the toolkit.
#pragma once

#include <QAction>
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>

#include "platform/qt/HelpWindow.h"

namespace platform {

class Help {
 public:
  // `nib` is the directory of the interface files; the resources are the one above it. `copied` is
  // called when the report is on the clipboard.
  Help(QMainWindow& window, QString nib, std::function<void()> copied);

  static bool has(const QAction& action);
  void perform(const QAction& action);

 private:
  void open(const QString& name);
  void copyDiagnostics();

  const QPointer<QMainWindow> mWindow;
  const QString mNib;
  const std::function<void()> mCopied;
  std::map<QString, QPointer<HelpWindow>> mOpen;
};

}  // namespace platform
