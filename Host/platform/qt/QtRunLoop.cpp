#include "platform/qt/QtRunLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <limits>
#include <memory>
#include <utility>

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

 private:
  std::shared_ptr<const Callback> mCallback;
};

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

class QtLoopTimer final : public RunLoop::Timer {
 public:
  QtLoopTimer(QtEventLoop& loop, QObject& parent, std::chrono::milliseconds delay, bool repeating,
              Callback fired)
      : mFired(std::move(fired)), mTimer(new QTimer(&parent)) {
    using Count = std::chrono::milliseconds::rep;
    const auto bounded = std::clamp<Count>(delay.count(), 0, std::numeric_limits<int>::max());
    mTimer->setTimerType(Qt::PreciseTimer);  // the coarse one may fire too early
    mTimer->setSingleShot(!repeating);
    QObject::connect(mTimer, &QTimer::timeout, mTimer, mFired.caller(loop));
    mTimer->start(static_cast<int>(bounded));
  }

  ~QtLoopTimer() override {
    if (mTimer == nullptr) return;
    mTimer->stop();
    mTimer->disconnect();
    mTimer->deleteLater();
  }

 private:
  Owned mFired;
  QPointer<QTimer> mTimer;
};

// Put-off calls, each waiting for an event of Qt's queue.
class PutOff final : public QObject {
 public:
  explicit PutOff(QtEventLoop& loop) : mLoop(loop) {}

  void add(Callback callback) {
    mCallbacks.push_back(std::move(callback));
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  bool event(QEvent* received) override {
    if (received->type() != QEvent::User) return QObject::event(received);
    const Callback next = std::move(mCallbacks.front());
    mCallbacks.pop_front();
    if (!mLoop.isEnding()) mLoop.guard(next);
    return true;
  }

 private:
  QtEventLoop& mLoop;
  std::deque<Callback> mCallbacks;
};

class QtRunLoop final : public RunLoop {
 public:
  explicit QtRunLoop(QtEventLoop& loop) : mLoop(loop), mPutOff(loop) {}

  std::unique_ptr<Watch> watch(int descriptor, Interest interest, Callback ready) override {
    const auto type =
        interest == Interest::Readable ? QSocketNotifier::Read : QSocketNotifier::Write;
    return std::make_unique<QtWatch>(mLoop, mContext, descriptor, type, std::move(ready));
  }

  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    Callback fired) override {
    return std::make_unique<QtLoopTimer>(mLoop, mContext, delay, repeating, std::move(fired));
  }

  void callLater(Callback callback) override { mPutOff.add(std::move(callback)); }

 private:
  QtEventLoop& mLoop;
  QObject mContext;  // owns the notifiers and timers
  PutOff mPutOff;
};

}  // namespace

std::unique_ptr<RunLoop> makeQtRunLoop(QtEventLoop& loop) {
  return std::make_unique<QtRunLoop>(loop);
}

}  // namespace platform
