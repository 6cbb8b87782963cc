// Owns a file descriptor; -1 is none.
#pragma once

#include <unistd.h>

#include <utility>

namespace virtualprinter {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : mDescriptor(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : mDescriptor(std::exchange(other.mDescriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(mDescriptor, other.mDescriptor);
    return *this;
  }
  ~FileDescriptor() { reset(); }

  int get() const { return mDescriptor; }
  explicit operator bool() const { return mDescriptor >= 0; }

  void reset() {
    if (mDescriptor >= 0) close(mDescriptor);
    mDescriptor = -1;
  }

 private:
  int mDescriptor = -1;
};

}  // namespace virtualprinter
