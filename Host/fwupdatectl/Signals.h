// SIGINT, SIGTERM and SIGHUP as calls from the loop, for as long as it lives. One that the program
// was started with ignored (nohup) stays ignored. To be made before what starts threads, as access
// to USB does: a thread that was there before takes a signal for itself, and the program ends.
#pragma once

#include <signal.h>

#include <functional>
#include <memory>

#include "platform/RunLoop.h"

class Signals {
 public:
  // Throws std::system_error when the host has no descriptors left.
  Signals(platform::RunLoop& runLoop, std::function<void()> arrived);
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

 private:
  void take();

  std::function<void()> mArrived;
  sigset_t mPrevious{};
  int mDescriptor = -1;
  std::unique_ptr<platform::RunLoop::Watch> mWatch;
};
