// A run loop on poll(2) and the real clock, for tests that deal with real daemons and sockets and
// need no toolkit. Must outlive what is started on it.
#pragma once

#include <chrono>
#include <functional>

#include "TestRunLoop.h"

class PollRunLoop : public TestRunLoop {
 public:
  // False when `done` does not hold in time.
  bool runUntil(const std::function<bool()>& done,
                std::chrono::milliseconds atMost = std::chrono::seconds(20));
  void runFor(std::chrono::milliseconds time);

 protected:
  Time time() const override;

 private:
  void turn(Time until);
};
