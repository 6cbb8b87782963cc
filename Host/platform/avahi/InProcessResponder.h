// A multicast DNS stack inside this process, for hosts without a daemon. It only listens and asks:
// it publishes nothing and leaves the host's name alone.
#pragma once

#include <memory>

#include "platform/avahi/AvahiPollAdapter.h"
#include "platform/avahi/Responder.h"

namespace platform {

// Null when it cannot start, for example because another stack keeps the port to itself.
std::unique_ptr<Responder> startInProcessResponder(const AvahiPollAdapter& poll);

}  // namespace platform
