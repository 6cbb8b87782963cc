#include "platform/qt/QtRunLoop.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "platform/qt/QtEventLoop.h"

namespace platform {
namespace {

using Callback = std::function<void()>;

// A callback may drop its own owner: what it has captured stays alive until it returns.
class Owned {
 public:
  explicit Owned(Callback callback)
      : mCallback(std::make_shared<const Callback>(std::move(callback))) {}

  auto caller(QtEventLoop& loop) const {
    return [&loop, weak = std::weak_ptr(mCallback)] {
      const auto callback = weak.lock();
      if (callback != nullptr && !loop.isEnding()) loop.guard(*callback);
    };
  }

  // A function of the owner's, which does nothing once the owner is gone.
  template <typename Function>
  Callback whileOwned(Function function) const {
    return [function = std::move(function), weak = std::weak_ptr(mCallback)] {
      if (!weak.expired()) function();
    };
  }

 private:
  std::shared_ptr<const Callback> mCallback;
};

QSocketNotifier::Type typeFor(RunLoop::Interest interest) {
  return interest == RunLoop::Interest::Readable ? QSocketNotifier::Read : QSocketNotifier::Write;
}

class QtWatch final : public RunLoop::Watch {
 public:
  QtWatch(QtEventLoop& loop, QObject& parent, int descriptor, QSocketNotifier::Type type,
          Callback ready)
      : mReady(std::move(ready)), mNotifier(new QSocketNotifier(descriptor, type, &parent)) {
    QObject::connect(mNotifier, &QSocketNotifier::activated, mNotifier, mReady.caller(loop));
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
  Owned mReady;
  QPointer<QSocketNotifier> mNotifier;
};

// Keeps the watches silent while it lives. A descriptor that is ready then still is so afterwards.
class Silence {
 public:
  explicit Silence(const QObject& watches) {
    for (QSocketNotifier* notifier : watches.findChildren<QSocketNotifier*>()) {
      if (!notifier->isEnabled()) continue;
      notifier->setEnabled(false);
      mSilenced.emplace_back(notifier);
    }
  }
  ~Silence() {
    for (QSocketNotifier* notifier : mSilenced) notifier->setEnabled(true);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::vector<QSocketNotifier*> mSilenced;
};

class QtLoopTimer final : public RunLoop::Timer {
 public:
  QtLoopTimer(QtEventLoop& loop, QObject& parent, std::chrono::milliseconds delay, bool repeating,
              Callback fired)
      : mLoop(loop), mFired(std::move(fired)), mTimer(new QTimer(&parent)) {
    using Count = std::chrono::milliseconds::rep;
    const auto bounded = std::clamp<Count>(delay.count(), 0, std::numeric_limits<int>::max());
    mTimer->setTimerType(Qt::PreciseTimer);  // the coarse one may fire too early
    mTimer->setSingleShot(!repeating);
    const auto call = mFired.caller(loop);
    QObject::connect(mTimer, &QTimer::timeout, mTimer,
                     [this, call] { mLoop.isWaiting() ? putOff() : call(); });
    mTimer->start(static_cast<int>(bounded));
  }

  ~QtLoopTimer() override {
    if (mTimer == nullptr) return;
    mTimer->stop();
    mTimer->disconnect();
    mTimer->deleteLater();
  }

 private:
  // A timer that repeats counts anew when it has fired.
  void putOff() {
    mTimer->stop();
    mLoop.callLater(mFired.whileOwned([this, call = mFired.caller(mLoop)] {
      if (mTimer != nullptr && !mTimer->isSingleShot()) mTimer->start();
      call();
    }));
  }

  QtEventLoop& mLoop;
  Owned mFired;
  QPointer<QTimer> mTimer;
};

class QtRunLoop final : public RunLoop {
 public:
  explicit QtRunLoop(QtEventLoop& loop) : mLoop(loop) {}

  std::unique_ptr<Watch> watch(int descriptor, Interest interest, Callback ready) override {
    return std::make_unique<QtWatch>(mLoop, mContext, descriptor, typeFor(interest),
                                     std::move(ready));
  }

  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    Callback fired) override {
    return std::make_unique<QtLoopTimer>(mLoop, mContext, delay, repeating, std::move(fired));
  }

  void callLater(Callback callback) override { mLoop.callLater(std::move(callback)); }

  bool waitUntilReady(int descriptor, Interest interest,
                      std::chrono::steady_clock::time_point deadline) override {
    const Silence silence(mContext);
    return mLoop.waitUntilReady(descriptor, typeFor(interest), deadline);
  }

 private:
  QtEventLoop& mLoop;
  QObject mContext;  // owns the notifiers and timers
};

}  // namespace

std::unique_ptr<RunLoop> makeQtRunLoop(QtEventLoop& loop) {
  return std::make_unique<QtRunLoop>(loop);
}

}  // namespace platform
