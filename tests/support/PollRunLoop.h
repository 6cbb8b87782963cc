// A run loop on poll(2) and the real clock, for tests that deal with real daemons and sockets and
// need no toolkit. Must outlive what is started on it.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/RunLoop.h"

class PollRunLoop : public platform::RunLoop {
 public:
  PollRunLoop();
  ~PollRunLoop() override;

  std::unique_ptr<Watch> watch(int descriptor, Interest interest,
                               std::function<void()> ready) override;
  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    std::function<void()> fired) override;
  void callLater(std::function<void()> callback) override;

  // False when `done` does not hold in time.
  bool runUntil(const std::function<bool()>& done,
                std::chrono::milliseconds atMost = std::chrono::seconds(20));
  void runFor(std::chrono::milliseconds time);

  // Timers that are still to fire.
  std::size_t timers() const;

 private:
  using Clock = std::chrono::steady_clock;
  struct WatchState;
  struct TimerState;
  class WatchHandle;
  class TimerHandle;

  void turn(Clock::time_point until);
  void pollDescriptors(Clock::time_point until);
  void fireTimers();
  void runLater();
  Clock::time_point nextDue(Clock::time_point until) const;

  std::vector<std::weak_ptr<WatchState>> mWatches;
  std::vector<std::weak_ptr<TimerState>> mTimers;
  std::deque<std::function<void()>> mLater;
};
