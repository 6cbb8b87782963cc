// The program's windows in one language, on a screen in memory, in each state that a user gets to
// see: opened, filled and closed one after the other, without the program behind them. Tests look
// at what is open.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "FakeBundle.h"
#include "FakeRunLoop.h"
#include "FakeSystemLog.h"
#include "Languages.h"
#include "platform/Diagnostics.h"
#include "platform/DownloadObserver.h"
#include "platform/LogHistory.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/QtApplication.h"

class Tour {
 public:
  enum class Size {
    Normal,       // on 1024 x 768
    DoubleScale,  // on 2048 x 1536, everything in double size
  };

  explicit Tour(const Language& language, Size size = Size::Normal);
  ~Tour();

  // Comes with the name of each state, while it lasts.
  using Visitor = std::function<void(const std::string& state)>;
  void visit(const Visitor& visitor);

  // The windows and menus that are open, the undermost first.
  static std::vector<QWidget*> openWindows();

 private:
  platform::Toolkit& toolkit() { return mApplication->toolkit(); }
  platform::DownloadObserver& download() { return mObservers; }
  platform::ListControl& list();
  QWidget& window(const char* name);
  platform::WindowRef create(const char* name);
  void fillList();
  void setText(platform::WindowRef window, platform::FourCharCode control, const QString& text);
  void visitSheet(const char* name, const std::string& state, platform::WindowRef parent);
  void visitDetails();
  void visitMenus();
  void visitPhases();
  void visitSilence();
  void visitFailures(platform::WindowRef progress);
  void visitAdvice();
  void visitHelp();
  void see(const std::string& state);

  FakeSystemLog mHost;
  FakeRunLoop mLoop;
  platform::LogHistory mHistory{mHost, [] { return platform::LogHistory::Time(); }};
  platform::Diagnostics mDiagnostics{
      mLoop, "1.0.0", {{"Qt", "6.4.2"}, {"libusb", "1.0.26"}, {"Avahi", "0.8"}}, {"", "", ""}};
  platform::DownloadObservers mObservers;
  platform::PlatformScope mScope{
      {.diagnostics = &mDiagnostics, .downloadObserver = &mObservers, .logHistory = &mHistory}};
  FakeBundle mBundle;
  QTemporaryDir mFolder;
  std::unique_ptr<platform::QtApplication> mApplication;
  platform::NibRef mNib = platform::NibRef::None;
  platform::WindowRef mMain = platform::WindowRef::None;
  Visitor mVisitor;
};
