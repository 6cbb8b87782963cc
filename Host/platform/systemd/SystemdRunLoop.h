// The run loop of a program without windows.
#pragma once

#include <memory>

#include "platform/RunLoop.h"

namespace platform {

class SystemdEventLoop;

// `loop` must outlive the run loop, and that what is started on it. watch() and startTimer() throw
// std::system_error when the host has no descriptors left.
std::unique_ptr<RunLoop> makeSystemdRunLoop(SystemdEventLoop& loop);

}  // namespace platform
