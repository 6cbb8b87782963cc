#include "platform/qt/QtEvents.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <memory>
#include <utility>

#include "platform/qt/QtEventLoop.h"
#include "platform/qt/TerminationSignals.h"

namespace platform {
namespace {

class QtEventsOnLoop final : public QtEvents, private QObject {
 public:
  explicit QtEventsOnLoop(QtEventLoop& loop)
      : mLoop(loop), mSignals([this] { mLoop.call([this] { quitInEveryState(); }); }) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  void runApplicationEventLoop() override;
  void quitApplicationEventLoop() override { mLoop.quit(); }

  void whenAskedToQuit(std::function<bool()> mayQuit) override { mMayQuit = std::move(mayQuit); }

 private:
  bool eventFilter(QObject* watched, QEvent* filtered) override;
  void callLater(std::function<void()> callback) override { mLoop.callLater(std::move(callback)); }
  void quitInEveryState();

  QtEventLoop& mLoop;
  std::function<bool()> mMayQuit;
  TerminationSignals mSignals;
};

void QtEventsOnLoop::runApplicationEventLoop() {
  beginRun();
  mLoop.run();
}

// Qt's own way of quitting asks each window to close, which sheets do not.
bool QtEventsOnLoop::eventFilter(QObject* watched, QEvent* filtered) {
  if (filtered->type() != QEvent::Quit) return QObject::eventFilter(watched, filtered);
  mLoop.call([this] {
    if (!mMayQuit || mMayQuit()) quitInEveryState();
  });
  return true;
}

void QtEventsOnLoop::quitInEveryState() {
  HICommand quit;
  quit.commandId = kQuitCommand;
  mLoop.guard([&] { processCommand(quit); });
  mLoop.quit();
}

}  // namespace

std::unique_ptr<QtEvents> makeQtEvents(QtEventLoop& loop) {
  return std::make_unique<QtEventsOnLoop>(loop);
}

}  // namespace platform
