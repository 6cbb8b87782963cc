#include "standardStreams.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iostream>
#include <utility>

namespace {

bool hasReader() {
  pollfd output{STDOUT_FILENO, 0, 0};
  static_cast<void>(poll(&output, 1, 0));
  return (output.revents & (POLLERR | POLLHUP)) == 0;
}

}  // namespace

// The lowest number that is free is given first.
void completeStandardStreams() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (fcntl(number, F_GETFD) < 0) static_cast<void>(open("/dev/null", O_RDWR));
  }
}

bool isOutputWritten() {
  std::cout.flush();
  return std::cout || !hasReader();
}

// The writing end of a pipe is ready to be read when nothing written can be read any more, and
// never before.
std::unique_ptr<platform::RunLoop::Watch> watchReader(platform::RunLoop& runLoop,
                                                      std::function<void()> gone) {
  struct stat output {};
  if (fstat(STDOUT_FILENO, &output) != 0 || !S_ISFIFO(output.st_mode)) return nullptr;
  return runLoop.watch(STDOUT_FILENO, platform::RunLoop::Interest::Readable, std::move(gone));
}
