// How soon a window answers: it is asked again and again whether it would take what is dragged over
// it (the XDND protocol), which a window answers from its own loop. A window manager's ping is
// answered to the window manager alone. For the display that DISPLAY names.
#pragma once

#include "Screen.h"

namespace bench {

class WindowPing {
 public:
  // `window` is the X server's number of it.
  explicit WindowPing(unsigned long window);
  ~WindowPing();
  WindowPing(const WindowPing&) = delete;
  WindowPing& operator=(const WindowPing&) = delete;

  // Takes in an answer and asks again soon; to be called every few milliseconds.
  void turn();

  // A question that is not answered yet counts with the time that it has waited.
  Clock::duration slowest() const;

 private:
  void send(const char* type, long second, long third);

  _XDisplay* mDisplay;
  unsigned long mWindow;
  unsigned long mSource;  // whence things are dragged: a window that nobody sees
  bool mWaiting = false;
  Clock::time_point mAsked;
  Clock::duration mSlowest{};
};

}  // namespace bench
