// The host's syslog.
#pragma once

#include <memory>

#include "platform/SystemLog.h"

namespace platform {

std::unique_ptr<SystemLog> makePosixSystemLog();

}  // namespace platform
