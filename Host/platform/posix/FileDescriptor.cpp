#include "platform/posix/FileDescriptor.h"

#include <unistd.h>

namespace platform {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  std::swap(mDescriptor, other.mDescriptor);
  return *this;
}

FileDescriptor::~FileDescriptor() {
  if (mDescriptor >= 0) ::close(mDescriptor);
}

}  // namespace platform
