// Files of the host's file system.
#pragma once

#include <memory>

#include "platform/Files.h"

namespace platform {

std::unique_ptr<Files> makePosixFiles();

}  // namespace platform
