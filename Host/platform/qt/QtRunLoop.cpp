#include "platform/qt/QtRunLoop.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "platform/qt/QtEventLoop.h"

namespace platform {
namespace {

using Callback = std::function<void()>;

// Runs a callback that may drop its own owner: what it has captured stays alive until it returns.
auto guarded(QtEventLoop& loop, Callback callback) {
  return [&loop, shared = std::make_shared<const Callback>(std::move(callback))] {
    const auto kept = shared;
    if (!loop.isEnding()) loop.guard(*kept);
  };
}

class QtWatch final : public RunLoop::Watch {
 public:
  QtWatch(QtEventLoop& loop, QObject& parent, int descriptor, QSocketNotifier::Type type,
          Callback ready)
      : mNotifier(new QSocketNotifier(descriptor, type, &parent)) {
    QObject::connect(mNotifier, &QSocketNotifier::activated, mNotifier,
                     guarded(loop, std::move(ready)));
  }

  // The notifier may be in the middle of its signal: it is silenced now and deleted by the loop.
  ~QtWatch() override {
    if (mNotifier == nullptr) return;
    mNotifier->setEnabled(false);
    mNotifier->disconnect();
    mNotifier->deleteLater();
  }

  void setEnabled(bool enabled) override {
    if (mNotifier != nullptr) mNotifier->setEnabled(enabled);
  }

 private:
  QPointer<QSocketNotifier> mNotifier;
};

class QtLoopTimer final : public RunLoop::Timer {
 public:
  QtLoopTimer(QtEventLoop& loop, QObject& parent, std::chrono::milliseconds delay, bool repeating,
              Callback fired)
      : mTimer(new QTimer(&parent)) {
    using Count = std::chrono::milliseconds::rep;
    const auto bounded = std::clamp<Count>(delay.count(), 0, std::numeric_limits<int>::max());
    mTimer->setTimerType(Qt::PreciseTimer);  // the coarse one may fire too early
    mTimer->setSingleShot(!repeating);
    QObject::connect(mTimer, &QTimer::timeout, mTimer, guarded(loop, std::move(fired)));
    mTimer->start(static_cast<int>(bounded));
  }

  ~QtLoopTimer() override {
    if (mTimer == nullptr) return;
    mTimer->stop();
    mTimer->disconnect();
    mTimer->deleteLater();
  }

 private:
  QPointer<QTimer> mTimer;
};

class QtRunLoop final : public RunLoop {
 public:
  explicit QtRunLoop(QtEventLoop& loop) : mLoop(loop) {}

  std::unique_ptr<Watch> watch(int descriptor, Interest interest, Callback ready) override {
    const auto type =
        interest == Interest::Readable ? QSocketNotifier::Read : QSocketNotifier::Write;
    return std::make_unique<QtWatch>(mLoop, mContext, descriptor, type, std::move(ready));
  }

  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    Callback fired) override {
    return std::make_unique<QtLoopTimer>(mLoop, mContext, delay, repeating, std::move(fired));
  }

  void callLater(Callback callback) override {
    QMetaObject::invokeMethod(&mContext, guarded(mLoop, std::move(callback)), Qt::QueuedConnection);
  }

 private:
  QtEventLoop& mLoop;
  QObject mContext;  // owns the notifiers and timers; put-off calls end with it
};

}  // namespace

std::unique_ptr<RunLoop> makeQtRunLoop(QtEventLoop& loop) {
  return std::make_unique<QtRunLoop>(loop);
}

}  // namespace platform
