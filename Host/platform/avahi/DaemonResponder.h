// The host's avahi-daemon, reached over the system bus. It need not run yet: the connection waits
// for it. A connection that has lost its daemon, or its bus, never recovers; a new one has to be
// made. Neither the bus nor the daemon is ever waited for.
#pragma once

#include <functional>
#include <memory>

#include "platform/RunLoop.h"
#include "platform/avahi/Responder.h"

namespace platform {

class DaemonResponder : public Responder {
 public:
  enum class State {
    Unknown,  // nobody has answered yet
    Absent,   // the bus is there, the daemon is not
    Ready,    // the daemon has answered
    Lost,     // it has gone, or the bus has
  };

  virtual State state() const = 0;
};

// Null when there is no system bus. `stateChanged` gets each new state, in order. It must not free
// the responder.
std::unique_ptr<DaemonResponder> connectToDaemon(
    RunLoop& runLoop, std::function<void(DaemonResponder::State)> stateChanged);

}  // namespace platform
