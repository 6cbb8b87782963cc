// Decides who tells of services: the host's daemon whenever it runs, else the stack in this
// process. Owns both. The browser listens, and drops its queries to the old responder inside
// responderChanged().
//
// When the program starts without a daemon, the stack in this process is there at once. When a
// running daemon ends, it is given a moment to return first: most daemons that end are being
// restarted, and one that tolerates no other stack could not start beside ours.
#pragma once

#include <memory>

#include "platform/RunLoop.h"
#include "platform/avahi/AvahiPollAdapter.h"
#include "platform/avahi/DaemonResponder.h"
#include "platform/avahi/DeferredCalls.h"
#include "platform/avahi/Responder.h"

namespace platform::avahi {

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

  // The listener is told only of what changes later. Null when there is none yet.
  Responder* start();

  // Whether a daemon may still come. Where there is no system bus, none will.
  bool canWait() const { return mDaemon != nullptr; }

  Responder* current() const { return mCurrent; }

  // The current responder does not answer questions: takes the other one, if it can.
  void refused();

 private:
  void connect();
  void connectSoon();
  void daemonChanged();
  void daemonLost();
  void useDaemon();
  void useInProcess();
  void switchTo(Responder* responder);

  RunLoop& mRunLoop;
  AvahiPollAdapter mPoll;
  Listener& mListener;
  std::unique_ptr<DaemonResponder> mDaemon;
  std::unique_ptr<Responder> mInProcess;
  Responder* mCurrent = nullptr;
  std::unique_ptr<RunLoop::Timer> mReconnectTimer;
  std::unique_ptr<RunLoop::Timer> mReturnTimer;
  DeferredCalls mDeferred;
};

}  // namespace platform::avahi
