// Runs a command where it finds a system log whose entries are kept:
//
//   with-system-log FILE COMMAND [ARGUMENT...]
//
// Every entry is written to FILE as "<PRIORITY>IDENTITY: TEXT" and a line end. Ends with the status
// of the command, or with 77 where the user may have no name spaces. The command's /dev holds
// nothing but the log.
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "SystemLogSocket.h"

namespace {

constexpr int kCannotRun = 77;
constexpr int kCommandCannotRun = 127;
constexpr int kEndedBySignal = 128;

int statusOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: with-system-log FILE COMMAND [ARGUMENT...]\n", stderr);
    return EXIT_FAILURE;
  }
  std::ofstream file(argv[1]);
  const platform::FileDescriptor daemon = takeLogDaemonsPlace();
  if (!daemon) return kCannotRun;

  std::array<int, 2> ends;  // of a pipe that the command holds open while it runs
  if (::pipe(ends.data()) != 0) return kCannotRun;
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(ends[0]);
    ::execvp(argv[2], argv + 2);
    ::_exit(kCommandCannotRun);
  }
  ::close(ends[1]);
  std::array<pollfd, 2> waiting{{{daemon.get(), POLLIN, 0}, {ends[0], POLLIN, 0}}};
  do {
    ::poll(waiting.data(), waiting.size(), -1);
    while (const auto entry = receiveLogEntry(daemon)) file << *entry << '\n';
  } while (waiting[1].revents == 0);
  return statusOf(child);
}
