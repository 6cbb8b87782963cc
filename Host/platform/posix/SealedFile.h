// A file's bytes in a sealed memory file: one process fills it, and as many as get its descriptor
// have the bytes in the same memory, where nobody can change them or cut them off. Behind the bytes
// it says which file they are of, and of when: one that was replaced or written since is another.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/posix/FileDescriptor.h"

namespace platform {

class SealedFile {
 public:
  using Time = std::chrono::system_clock::time_point;

  // None where the file cannot be read whole, and where it was written shortly before `now`, since
  // whoever writes to it may go on without a difference in its times.
  static std::optional<SealedFile> read(const std::filesystem::path& file, Time now);

  // The one that another process has passed on; none where the descriptor is not of such a one.
  static std::optional<SealedFile> fromDescriptor(FileDescriptor descriptor);

  bool isOf(const struct stat& file) const { return mSource == Source(file); }
  int descriptor() const { return mMemory.get(); }

 private:
  // Has no padding: it stands in the memory file as it is.
  struct Source {
    Source() = default;
    explicit Source(const struct stat& file);
    bool operator==(const Source&) const = default;

    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t written = 0;  // in nanoseconds, as is the next
    std::int64_t changed = 0;
  };

  SealedFile(FileDescriptor memory, const Source& source);

  FileDescriptor mMemory;
  Source mSource;
};

}  // namespace platform
