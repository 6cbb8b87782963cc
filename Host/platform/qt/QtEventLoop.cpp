#include "platform/qt/QtEventLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include "platform/Assertion.h"

namespace platform {

void QtEventLoop::run() {
  if (!mQuit) {
    mRunning = true;
    QCoreApplication::exec();
    mRunning = false;
  }
  mQuit = false;
  if (const auto exception = std::exchange(mException, nullptr)) std::rethrow_exception(exception);
}

void QtEventLoop::quit() {
  mQuit = true;
  if (mRunning) QCoreApplication::exit();
}

void QtEventLoop::endWith(std::exception_ptr exception) noexcept {
  if (mException == nullptr) mException = std::move(exception);
  quit();
}

void QtEventLoop::call(Callback callback) {
  if (mWaiting) {
    callLater(std::move(callback));
  } else {
    guard(callback);
  }
}

void QtEventLoop::callLater(Callback callback) {
  mPutOff.push_back(std::move(callback));
  askForTurn();
}

void QtEventLoop::askForTurn() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }

bool QtEventLoop::event(QEvent* received) {
  if (received->type() != QEvent::User) return QObject::event(received);
  if (mWaiting) {
    ++mMissedTurns;
    return true;
  }
  const Callback next = std::move(mPutOff.front());
  mPutOff.pop_front();
  if (!mQuit) guard(next);
  return true;
}

// Qt takes up the keys and clicks that it has kept when something wakes it.
bool QtEventLoop::waitUntilReady(int descriptor, QSocketNotifier::Type type,
                                 std::chrono::steady_clock::time_point deadline) {
  using std::chrono::milliseconds;
  assertAt(!mWaiting, "!mWaiting", "waitUntilReady", "Host/platform/qt/QtEventLoop.cpp", __LINE__);
  const auto left = [&] {
    return std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
  };
  bool isReady = false;
  QSocketNotifier notifier(descriptor, type);
  connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
    isReady = true;
    notifier.setEnabled(false);
  });
  QTimer end;
  end.setTimerType(Qt::PreciseTimer);
  end.setSingleShot(true);
  connect(&end, &QTimer::timeout, &end, [&] {
    if (left().count() > 0) end.start(left());
  });
  end.start(left());
  mWaiting = true;
  while (!isReady && left().count() > 0) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::WaitForMoreEvents);
  }
  mWaiting = false;
  for (; mMissedTurns > 0; --mMissedTurns) askForTurn();
  QAbstractEventDispatcher::instance()->wakeUp();
  return isReady;
}

}  // namespace platform
