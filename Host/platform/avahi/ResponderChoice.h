// Decides who tells of services: the host's daemon whenever it runs, else the stack in this
// process. Owns both. The browser listens, and drops its queries to the old responder inside
// responderChanged().
//
// One rule holds at the start and later. The bus is connected to when the run loop is back, and
// looked for again and again while there is none. Where the bus says that no daemon runs, the stack
// in this process is there at once. A daemon that has ended is given a moment to return first: most
// daemons that end are being restarted, and one that tolerates no other stack could not start
// beside ours. A daemon or a bus that does not answer is given the same moment.
#pragma once

#include <memory>

#include "platform/DeferredCalls.h"
#include "platform/DiscoveryStatus.h"
#include "platform/RunLoop.h"
#include "platform/avahi/AvahiPollAdapter.h"
#include "platform/avahi/DaemonResponder.h"
#include "platform/avahi/Responder.h"

namespace platform {

class ResponderChoice {
 public:
  class Listener {
   public:
    virtual ~Listener() = default;
    // Null while there is none. The old responder is still valid during the call.
    virtual void responderChanged(Responder* responder) = 0;
    // The stack in this process cannot start, and no daemon runs, though one may come.
    virtual void noResponder() = 0;
  };

  ResponderChoice(RunLoop& runLoop, Listener& listener);
  ~ResponderChoice();
  ResponderChoice(const ResponderChoice&) = delete;
  ResponderChoice& operator=(const ResponderChoice&) = delete;

  // There is no responder yet; the listener is told of the first one, too.
  void start();

  Responder* current() const { return mCurrent; }
  DiscoveryStatus::Searcher searcher() const;

  // The current responder does not answer questions: takes the other one, if it can.
  void refused();

 private:
  void connect();
  void connectSoon();
  void waitForDaemon();
  void daemonChanged(DaemonResponder::State state);
  void daemonLost();
  void noDaemon();
  void useDaemon();
  void useInProcess();
  void nobody();
  void switchTo(Responder* responder);

  RunLoop& mRunLoop;
  AvahiPollAdapter mPoll;
  Listener& mListener;
  std::unique_ptr<DaemonResponder> mDaemon;
  std::unique_ptr<Responder> mInProcess;
  Responder* mCurrent = nullptr;
  bool mDaemonMayReturn = false;
  bool mToldOfNobody = false;
  std::unique_ptr<RunLoop::Timer> mReconnectTimer;
  std::unique_ptr<RunLoop::Timer> mReturnTimer;
  DeferredCalls mDeferred;
};

}  // namespace platform
