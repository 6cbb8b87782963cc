// Signals as calls from the loop, for as long as it lives: those that end a program (SIGINT,
// SIGTERM and SIGHUP), or others. One that the program was started with ignored (nohup) stays
// ignored. A thread that was there before and does not block them takes a signal for itself.
#pragma once

#include <signal.h>

#include <functional>
#include <initializer_list>
#include <memory>

#include "platform/RunLoop.h"

class Signals {
 public:
  // Throws std::system_error when the host has no descriptors left.
  Signals(platform::RunLoop& runLoop, std::function<void()> arrived);
  Signals(platform::RunLoop& runLoop, std::initializer_list<int> numbers,
          std::function<void(int)> arrived);
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

 private:
  void take();

  std::function<void(int)> mArrived;
  sigset_t mPrevious{};
  int mDescriptor = -1;
  std::unique_ptr<platform::RunLoop::Watch> mWatch;
};
