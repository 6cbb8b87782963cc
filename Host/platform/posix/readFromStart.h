// Fills memory from the start of an open file: in one read, where the host takes it at once, and
// short where the file ends before.
#pragma once

#include <span>

#include "platform/Files.h"

namespace platform {

class FileDescriptor;

WholeRead readFromStart(const FileDescriptor& descriptor, std::span<char> destination);

}  // namespace platform
