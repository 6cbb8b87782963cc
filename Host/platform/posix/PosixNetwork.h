// TCP connections over the host's sockets.
#pragma once

#include <memory>

#include "platform/Network.h"
#include "platform/RunLoop.h"

namespace platform {

// `runLoop` must outlive the network and its sockets.
std::unique_ptr<Network> makePosixNetwork(RunLoop& runLoop);

}  // namespace platform
