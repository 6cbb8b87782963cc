#include "TerminalProcess.h"

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr std::chrono::seconds kPatience{20};

winsize sizeOf(int rows, int columns) {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(columns);
  return size;
}

}  // namespace

TerminalProcess::TerminalProcess(const std::string& command, int rows, int columns)
    : mScreen(rows, columns) {
  const winsize size = sizeOf(rows, columns);
  mProcess = forkpty(&mTerminal, nullptr, nullptr, &size);
  if (mProcess < 0) throw std::runtime_error("no terminal left");
  if (mProcess == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("TERM", "xterm", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
}

TerminalProcess::~TerminalProcess() {
  if (mProcess > 0) {
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
  }
  close(mTerminal);
}

// False at the end of the output. A terminal that nobody has open any more is an error to its
// reader.
bool TerminalProcess::readSome(int milliseconds) {
  pollfd descriptor{mTerminal, POLLIN, 0};
  if (poll(&descriptor, 1, milliseconds) <= 0) return true;
  std::array<char, 4096> buffer;
  const ssize_t count = read(mTerminal, buffer.data(), buffer.size());
  if (count <= 0) return false;
  const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
  mBytes += bytes;
  mScreen.write(bytes);
  return true;
}

bool TerminalProcess::waitUntil(const std::function<bool(const TerminalScreen&)>& isSo) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!isSo(mScreen)) {
    if (std::chrono::steady_clock::now() > end || !readSome(100)) return isSo(mScreen);
  }
  return true;
}

bool TerminalProcess::waitFor(const std::string& text) {
  return waitUntil([&](const TerminalScreen& screen) {
    return std::ranges::any_of(screen.allRows(), [&](const std::string& row) {
      return row.find(text) != std::string::npos;
    });
  });
}

int TerminalProcess::waitForEnd() {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (readSome(100)) {
    if (std::chrono::steady_clock::now() > end) throw std::runtime_error("it does not end");
  }
  int status = 0;
  waitpid(mProcess, &status, 0);
  mProcess = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void TerminalProcess::type(std::string_view keys) const {
  if (write(mTerminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::runtime_error("nobody reads the keys");
  }
}

bool TerminalProcess::echoes() const {
  termios mode{};
  return tcgetattr(mTerminal, &mode) == 0 && (mode.c_lflag & ECHO) != 0;
}

void TerminalProcess::resize(int rows, int columns) {
  const winsize size = sizeOf(rows, columns);
  mScreen.resize(rows, columns);
  ioctl(mTerminal, TIOCSWINSZ, &size);
}

void TerminalProcess::signal(int number) const { kill(mProcess, number); }
