#include "HostCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <utility>

namespace {

HostCalls* sCalls = nullptr;

}  // namespace

HostCalls::HostCalls(std::function<void()> beforeNextOpen)
    : mBeforeNextOpen(std::move(beforeNextOpen)) {
  sCalls = this;
}

HostCalls::~HostCalls() { sCalls = nullptr; }

void HostCalls::noteOpen() {
  if (const auto change = std::exchange(mBeforeNextOpen, {})) change();
}

int open(const char* file, int oflag, ...) {
  if (sCalls != nullptr) sCalls->noteOpen();
  std::va_list rest;
  va_start(rest, oflag);
  const mode_t mode = (oflag & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  using Open = int (*)(const char*, int, ...);
  static const auto libraryOpen = reinterpret_cast<Open>(::dlsym(RTLD_NEXT, "open"));
  return libraryOpen(file, oflag, mode);
}

ssize_t pread(int fd, void* buf, std::size_t nbytes, off_t offset) {
  if (sCalls != nullptr) sCalls->noteRead({buf, nbytes, offset});
  using Read = ssize_t (*)(int, void*, std::size_t, off_t);
  static const auto libraryRead = reinterpret_cast<Read>(::dlsym(RTLD_NEXT, "pread"));
  return libraryRead(fd, buf, nbytes, offset);
}
