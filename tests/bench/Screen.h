// A program's window as the X server has it: when it is there, and what is painted in it. For the
// display that DISPLAY names.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <vector>

struct _XDisplay;

namespace bench {

using Clock = std::chrono::steady_clock;

class Screen {
 public:
  using Picture = std::vector<std::uint8_t>;

  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  // Returns when a window of `process` has become the active one, which takes the keyboard; it is
  // the one that picture() tells of. Throws std::runtime_error when that takes too long.
  void waitForActiveWindow(pid_t process);

  // The X server's number of that window.
  unsigned long window() const { return mWindow; }

  Picture picture() const;

  // When the window was painted for the last time before it stayed the same for half a second.
  Clock::time_point lastPainted() const;

 private:
  unsigned long activeWindowOf(pid_t process) const;
  unsigned long numberProperty(unsigned long window, const char* name) const;

  _XDisplay* mDisplay;
  unsigned long mWindow = 0;
};

double milliseconds(Clock::duration time);

}  // namespace bench
