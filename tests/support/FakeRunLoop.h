// A run loop that is turned by hand: a test says when put-off calls run, when the clock moves and
// when descriptors are looked at. Time stands still otherwise; descriptors are real ones, or are
// said to be ready. Must outlive what is started on it.
#pragma once

#include <chrono>
#include <functional>

#include "TestRunLoop.h"

class FakeRunLoop : public TestRunLoop {
 public:
  // Runs put-off calls until there are none.
  void runAllLater();

  // Turns the clock on. Timers fire in the order in which they are due.
  void advance(std::chrono::milliseconds time);

  // Runs put-off calls and ready watches until `done` holds, and none after that; false when it
  // does not hold within ten seconds. The clock of the timers stands still.
  bool runUntil(const std::function<bool()>& done);

 protected:
  Time time() const override { return mNow; }

 private:
  Time mNow{0};
};
