#include "Terminal.h"

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

Paint::Paint(int descriptor)
    : mIsOn(isCapableTerminal(descriptor) && environment("NO_COLOR").empty()) {}

std::string Paint::in(const char* color, const std::string& text) const {
  return mIsOn ? std::string("\x1B[") + color + "m" + text + "\x1B[0m" : text;
}
