// What the run loops of the tests have in common: watches of real descriptors, timers and put-off
// calls. Who derives from it has the clock, and says when each of them gets its turn. Must outlive
// what is started on it.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/RunLoop.h"

class TestRunLoop : public platform::RunLoop {
 public:
  ~TestRunLoop() override;

  std::unique_ptr<Watch> watch(int descriptor, Interest interest,
                               std::function<void()> ready) override;
  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    std::function<void()> fired) override;
  void callLater(std::function<void()> callback) override;
  bool waitUntilReady(int descriptor, Interest interest,
                      std::chrono::steady_clock::time_point deadline) override;

  // Asked after each call; true leaves what else there is for another time.
  using Enough = std::function<bool()>;

  // Runs the calls put off so far, but not those that they put off. False when there were none.
  bool runLater(const Enough& enough = {});

  // Calls back, once each, the enabled watches whose descriptors are ready, after waiting for one
  // to become so for at most the given time. False when none did.
  bool pollDescriptors(std::chrono::milliseconds atMost = std::chrono::milliseconds(0),
                       const Enough& enough = {});

  // Calls back the enabled watches of a descriptor as if it were ready.
  void makeReady(int descriptor, Interest interest);

  std::size_t enabledWatches() const;
  std::size_t timers() const;  // that are still to fire
  std::size_t putOff() const { return mLater.size(); }

 protected:
  // Since any moment that stays the same.
  using Time = std::chrono::nanoseconds;

  TestRunLoop();

  virtual Time time() const = 0;

  // Of the timer that is due first; the end of all time when there is none.
  Time nextDue() const;

  // Fires that timer. A repeating one is then due again, counted from now.
  void fireNext();

 private:
  struct WatchState;
  struct TimerState;
  class WatchHandle;
  class TimerHandle;

  std::vector<std::shared_ptr<WatchState>> enabledWatchStates() const;
  std::vector<std::shared_ptr<TimerState>> activeTimerStates() const;
  std::shared_ptr<TimerState> nextTimer() const;

  std::vector<std::weak_ptr<WatchState>> mWatches;
  std::vector<std::weak_ptr<TimerState>> mTimers;
  std::deque<std::function<void()>> mLater;
};
