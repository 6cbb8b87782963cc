// The run loop on Qt's event loop. main() owns it; the loop of the application drives it.
#pragma once

#include <memory>

#include "platform/RunLoop.h"

namespace platform {

class QtEventLoop;

// `loop` must outlive the run loop. Watches and timers may outlive it, but are dead then.
std::unique_ptr<RunLoop> makeQtRunLoop(QtEventLoop& loop);

}  // namespace platform
