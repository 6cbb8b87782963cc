#include "inSeconds.h"

#include <array>
#include <cstdio>

std::string inSeconds(std::chrono::milliseconds time) {
  std::array<char, 32> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), "%g s", std::chrono::duration<double>(time).count()));
  return text.data();
}
