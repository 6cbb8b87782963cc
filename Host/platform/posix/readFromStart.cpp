#include "platform/posix/readFromStart.h"

#include <unistd.h>

#include <cerrno>

#include "platform/posix/FileDescriptor.h"

namespace platform {

// The host may take a read in parts: it moves 2 GiB at most at a time.
WholeRead readFromStart(const FileDescriptor& descriptor, std::span<char> destination) {
  WholeRead result{WholeRead::Step::Read, noErr};
  while (result.actual < destination.size()) {
    const std::span<char> rest = destination.subspan(result.actual);
    const ssize_t count =
        ::pread(descriptor.get(), rest.data(), rest.size(), static_cast<off_t>(result.actual));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) result.status = errno;
    if (count <= 0) break;
    result.actual += static_cast<std::size_t>(count);
  }
  return result;
}

}  // namespace platform
