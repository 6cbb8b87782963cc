#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace {

std::string_view environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

bool isCapableTerminal(int descriptor) {
  const std::string_view kind = environment("TERM");
  return isatty(descriptor) == 1 && !kind.empty() && kind != "dumb";
}

TerminalSize sizeOfTerminal(int descriptor) {
  TerminalSize size;
  winsize known{};
  if (ioctl(descriptor, TIOCGWINSZ, &known) != 0) return size;
  if (known.ws_row > 0) size.rows = known.ws_row;
  if (known.ws_col > 0) size.columns = known.ws_col;
  return size;
}

// A terminal that is not the one of this session knows nothing of its jobs.
bool isInForeground(int descriptor) {
  const pid_t foreground = tcgetpgrp(descriptor);
  return foreground < 0 || foreground == getpgrp();
}

Paint::Paint(int descriptor)
    : mIsOn(isCapableTerminal(descriptor) && environment("NO_COLOR").empty()) {}

std::string Paint::in(const char* color, const std::string& text) const {
  return mIsOn ? std::string("\x1B[") + color + "m" + text + "\x1B[0m" : text;
}
