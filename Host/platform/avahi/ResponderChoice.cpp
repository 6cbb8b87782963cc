#include "platform/avahi/ResponderChoice.h"

#include <chrono>
#include <utility>

#include "platform/avahi/InProcessResponder.h"

namespace platform {
namespace {

// How long a daemon that has ended may take to return before the stack in this process takes over.
constexpr std::chrono::milliseconds kDaemonReturn{3000};

// How often a system bus that is not there is looked for.
constexpr std::chrono::milliseconds kBusReturn{5000};

}  // namespace

ResponderChoice::ResponderChoice(RunLoop& runLoop, Listener& listener)
    : mRunLoop(runLoop), mPoll(runLoop), mListener(listener), mDeferred(runLoop) {}

ResponderChoice::~ResponderChoice() = default;

void ResponderChoice::start() {
  mDeferred.post([this] { connect(); });
}

void ResponderChoice::refused() {
  if (mCurrent == nullptr) return;
  if (mCurrent == mDaemon.get()) return useInProcess();
  switchTo(nullptr);
  mInProcess.reset();
  nobody();
}

DiscoveryStatus::Searcher ResponderChoice::searcher() const {
  if (mCurrent == nullptr) return DiscoveryStatus::Searcher::Nobody;
  return mCurrent == mDaemon.get() ? DiscoveryStatus::Searcher::Daemon
                                   : DiscoveryStatus::Searcher::Program;
}

void ResponderChoice::connect() {
  mDaemon = connectToDaemon(mRunLoop, [this](DaemonResponder::State state) {
    mDeferred.post([this, state] { daemonChanged(state); });
  });
  if (mDaemon != nullptr) return waitForDaemon();
  connectSoon();
  noDaemon();
}

void ResponderChoice::connectSoon() {
  mReconnectTimer = mRunLoop.startTimer(kBusReturn, false, [this] {
    mReconnectTimer.reset();
    connect();
  });
}

void ResponderChoice::waitForDaemon() {
  if (mCurrent != nullptr || mReturnTimer != nullptr) return;
  mReturnTimer = mRunLoop.startTimer(kDaemonReturn, false, [this] { useInProcess(); });
}

void ResponderChoice::daemonChanged(DaemonResponder::State state) {
  switch (state) {
    case DaemonResponder::State::Ready:
      return useDaemon();
    case DaemonResponder::State::Lost:
      return daemonLost();
    case DaemonResponder::State::Absent:
      return noDaemon();
    case DaemonResponder::State::Unknown:
      return;
  }
}

// A bus that has dropped us before it told of the daemon is left alone for a while.
void ResponderChoice::daemonLost() {
  const bool wasReady = mDaemonMayReturn;
  if (mCurrent != nullptr && mCurrent == mDaemon.get()) switchTo(nullptr);
  mDaemon.reset();
  if (wasReady) return connect();
  connectSoon();
  noDaemon();
}

void ResponderChoice::noDaemon() {
  if (mCurrent != nullptr) return;
  if (mDaemonMayReturn) return waitForDaemon();
  useInProcess();
}

void ResponderChoice::useDaemon() {
  mReturnTimer.reset();
  mDaemonMayReturn = true;
  switchTo(mDaemon.get());
  mInProcess.reset();
}

void ResponderChoice::useInProcess() {
  mReturnTimer.reset();
  mDaemonMayReturn = false;
  mInProcess = startInProcessResponder(mPoll);
  switchTo(mInProcess.get());
  if (mInProcess == nullptr) nobody();
}

void ResponderChoice::nobody() {
  if (!std::exchange(mToldOfNobody, true)) mListener.noResponder();
}

void ResponderChoice::switchTo(Responder* responder) {
  if (responder != nullptr) mToldOfNobody = false;
  mCurrent = responder;
  mListener.responderChanged(responder);
}

}  // namespace platform
