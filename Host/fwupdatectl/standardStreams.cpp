#include "standardStreams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <iostream>

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
