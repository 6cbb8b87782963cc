// Buses of a session that do not answer, because they are stopped or hang: its own one, and the one
// of assistive technology. Libraries that serve a desktop wait for both without an end when they
// are made.
#pragma once

#include <chrono>
#include <string>

namespace platform {

// What a bus is called that is there and has not answered within `patience`, or nothing. From then
// on the environment says that the session has no bus, so that nobody waits for one. To be called
// before there are threads.
std::string leaveSilentBuses(std::chrono::milliseconds patience);

}  // namespace platform
