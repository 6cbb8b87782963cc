// The names and descriptions of the host's errno values, in English whatever the user's language,
// and of the program's own result codes.
#pragma once

#include <memory>

#include "platform/Status.h"

namespace platform {

std::unique_ptr<StatusTable> makePosixStatusTable();

}  // namespace platform
