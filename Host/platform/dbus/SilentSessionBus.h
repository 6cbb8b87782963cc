// A session's bus that does not answer, because it is stopped or hangs. Libraries that serve a
// desktop wait for it without an end when they are made.
#pragma once

#include <chrono>

namespace platform {

// Whether the bus is there and has not answered within `patience`. From then on the environment
// says that there is no bus, so that nobody waits for it. To be called before there are threads.
bool leaveSilentSessionBus(std::chrono::milliseconds patience);

}  // namespace platform
