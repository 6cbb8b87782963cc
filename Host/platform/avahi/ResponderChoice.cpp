#include "platform/avahi/ResponderChoice.h"

#include <chrono>

#include "platform/avahi/InProcessResponder.h"

namespace platform::avahi {
namespace {

// How long a daemon that has ended may take to return before the stack in this process takes over.
constexpr std::chrono::milliseconds kDaemonReturn{3000};

// How often a system bus that has gone is looked for.
constexpr std::chrono::milliseconds kBusReturn{5000};

}  // namespace

ResponderChoice::ResponderChoice(RunLoop& runLoop, Listener& listener)
    : mRunLoop(runLoop), mPoll(runLoop), mListener(listener), mDeferred(runLoop) {}

ResponderChoice::~ResponderChoice() = default;

Responder* ResponderChoice::start() {
  connect();
  if (mDaemon != nullptr && mDaemon->state() == DaemonResponder::State::Ready) {
    mCurrent = mDaemon.get();
  } else {
    mInProcess = startInProcessResponder(mPoll);
    mCurrent = mInProcess.get();
  }
  return mCurrent;
}

void ResponderChoice::refused() {
  if (mCurrent == nullptr) return;
  if (mCurrent == mDaemon.get()) {
    if (mDaemon->state() == DaemonResponder::State::Ready) useInProcess();
  } else {
    switchTo(nullptr);
    mInProcess.reset();
    mListener.noResponder();
  }
}

void ResponderChoice::connect() {
  mDaemon = connectToDaemon(mPoll, [this] { mDeferred.post([this] { daemonChanged(); }); });
}

void ResponderChoice::connectSoon() {
  mReconnectTimer = mRunLoop.startTimer(kBusReturn, false, [this] {
    mReconnectTimer.reset();
    connect();
    if (mDaemon == nullptr) return connectSoon();
    daemonChanged();
  });
}

void ResponderChoice::daemonChanged() {
  if (mDaemon == nullptr) return;
  switch (mDaemon->state()) {
    case DaemonResponder::State::Ready:
      return useDaemon();
    case DaemonResponder::State::Lost:
      return daemonLost();
    case DaemonResponder::State::Waiting:
      return;
  }
}

void ResponderChoice::daemonLost() {
  if (mCurrent == mDaemon.get()) switchTo(nullptr);
  connect();
  if (mDaemon == nullptr) connectSoon();
  if (mCurrent == nullptr) {
    mReturnTimer = mRunLoop.startTimer(kDaemonReturn, false, [this] { useInProcess(); });
  }
  if (mDaemon != nullptr && mDaemon->state() == DaemonResponder::State::Ready) useDaemon();
}

void ResponderChoice::useDaemon() {
  mReturnTimer.reset();
  if (mCurrent == mDaemon.get()) return;
  switchTo(mDaemon.get());
  mInProcess.reset();
}

void ResponderChoice::useInProcess() {
  mReturnTimer.reset();
  mInProcess = startInProcessResponder(mPoll);
  switchTo(mInProcess.get());
  if (mInProcess == nullptr) mListener.noResponder();
}

void ResponderChoice::switchTo(Responder* responder) {
  mCurrent = responder;
  mListener.responderChanged(responder);
}

}  // namespace platform::avahi
