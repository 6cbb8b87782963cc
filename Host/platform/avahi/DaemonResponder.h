// The host's avahi-daemon, reached over the system bus. It need not run yet: the connection waits
// for it. A connection that has lost its daemon never recovers; a new one has to be made.
#pragma once

#include <functional>
#include <memory>

#include "platform/avahi/AvahiPollAdapter.h"
#include "platform/avahi/Responder.h"

namespace platform::avahi {

class DaemonResponder : public Responder {
 public:
  enum class State { Waiting, Ready, Lost };

  virtual State state() const = 0;
};

// Null when there is no system bus. `stateChanged` is called from Avahi's callbacks, not from
// inside this call.
std::unique_ptr<DaemonResponder> connectToDaemon(const AvahiPollAdapter& poll,
                                                 std::function<void()> stateChanged);

}  // namespace platform::avahi
