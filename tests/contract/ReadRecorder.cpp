#include "ReadRecorder.h"

#include <dlfcn.h>
#include <unistd.h>

namespace {

ReadRecorder* sRecorder = nullptr;

}  // namespace

ReadRecorder::ReadRecorder() { sRecorder = this; }

ReadRecorder::~ReadRecorder() { sRecorder = nullptr; }

ssize_t pread(int descriptor, void* destination, std::size_t size, off_t offset) {
  if (sRecorder != nullptr) sRecorder->add({destination, size, offset});
  using Read = ssize_t (*)(int, void*, std::size_t, off_t);
  static const auto libraryRead = reinterpret_cast<Read>(::dlsym(RTLD_NEXT, "pread"));
  return libraryRead(descriptor, destination, size, offset);
}
