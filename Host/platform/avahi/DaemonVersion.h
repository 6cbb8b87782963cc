// Asks the host's Avahi daemon for its version, for a report to whoever helps.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Diagnostics.h"
#include "platform/RunLoop.h"

namespace platform {

// Of the Avahi library that the program was built with, and of the one that reaches the bus.
std::string avahiVersion();
std::string busLibraryVersion();

// Null when there is no system bus. A daemon that is stopped does not answer.
std::unique_ptr<Diagnostics::Question> askDaemonVersion(RunLoop& runLoop,
                                                        Diagnostics::Answer answer);

}  // namespace platform
