// Owns a file descriptor and closes it. -1 is none.
#pragma once

#include <utility>

namespace platform {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : mDescriptor(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : mDescriptor(std::exchange(other.mDescriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor();

  int get() const { return mDescriptor; }
  explicit operator bool() const { return mDescriptor >= 0; }

 private:
  int mDescriptor = -1;
};

}  // namespace platform
