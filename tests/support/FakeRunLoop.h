// A run loop that is turned by hand: a test says when put-off calls run, when the clock moves and
// when descriptors are looked at. Time stands still otherwise; descriptors are real ones, or are
// said to be ready. Must outlive what is started on it.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/RunLoop.h"

class FakeRunLoop : public platform::RunLoop {
 public:
  FakeRunLoop();
  ~FakeRunLoop() override;

  std::unique_ptr<Watch> watch(int descriptor, Interest interest,
                               std::function<void()> ready) override;
  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    std::function<void()> fired) override;
  void callLater(std::function<void()> callback) override;

  // Runs the calls put off so far, but not those that they put off. False when there were none.
  bool runLater();

  // Runs put-off calls until there are none.
  void runAllLater();

  // Turns the clock on. Timers fire in the order in which they are due.
  void advance(std::chrono::milliseconds time);

  // Calls back, once each, the enabled watches whose descriptors are ready, after waiting for one
  // to become so for at most the given time. False when none did.
  bool pollDescriptors(std::chrono::milliseconds atMost = std::chrono::milliseconds(0));

  // Runs put-off calls and ready watches until `done` holds; false when it does not hold within ten
  // seconds. The clock of the timers stands still.
  bool runUntil(const std::function<bool()>& done);

  // Calls back the enabled watches of a descriptor as if it were ready.
  void makeReady(int descriptor, Interest interest);

  std::chrono::milliseconds now() const { return mNow; }
  std::size_t enabledWatches() const;
  std::size_t timers() const;
  std::size_t putOff() const { return mLater.size(); }

 private:
  struct WatchState;
  struct TimerState;
  class WatchHandle;
  class TimerHandle;

  std::vector<std::shared_ptr<WatchState>> enabledWatchStates() const;
  std::shared_ptr<TimerState> nextDue(std::chrono::milliseconds until) const;

  std::vector<std::weak_ptr<WatchState>> mWatches;
  std::vector<std::weak_ptr<TimerState>> mTimers;
  std::deque<std::function<void()>> mLater;
  std::chrono::milliseconds mNow{0};
};
