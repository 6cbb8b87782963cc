// Locks of printers, as names of sockets that belong to nobody's file system ("abstract" ones). The
// kernel lets one process at a time have a name, takes it back however that process ends, and tells
// everybody else which process it is. All users of the computer share the names, without a
// directory that they all could write to, and nothing is left behind. Who takes another's name on
// purpose can keep updates out, and is named for it, but cannot pass for anybody else.
//
// A printer has two names. Whoever talks to it has the second one; who updates it has taken the
// first one before, and keeps it. So a second name without the first is a question's.
#pragma once

#include <memory>

#include "platform/DeviceLocks.h"

namespace platform {

std::unique_ptr<DeviceLocks> makePosixDeviceLocks();

}  // namespace platform
