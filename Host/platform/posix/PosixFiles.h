// Files of the host's file system.
#pragma once

#include <memory>
#include <vector>

#include "platform/Files.h"
#include "platform/posix/SealedFile.h"

namespace platform {

// A file of which `sealed` has the bytes is opened, so that whatever forbids that is met; but its
// bytes are shown where they are.
std::unique_ptr<Files> makePosixFiles(std::vector<SealedFile> sealed = {});

}  // namespace platform
