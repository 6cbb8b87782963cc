#include "PollRunLoop.h"

#include <poll.h>

#include <algorithm>
#include <utility>

using std::chrono::milliseconds;

// Handle and loop share a state, so that a callback may destroy its own handle.
struct PollRunLoop::WatchState {
  int descriptor;
  Interest interest;
  std::function<void()> ready;
  bool enabled = true;
};

struct PollRunLoop::TimerState {
  Clock::time_point due;
  milliseconds period;
  bool repeating;
  std::function<void()> fired;
  bool active = true;
};

class PollRunLoop::WatchHandle : public Watch {
 public:
  explicit WatchHandle(std::shared_ptr<WatchState> state) : mState(std::move(state)) {}
  ~WatchHandle() override { mState->enabled = false; }
  void setEnabled(bool enabled) override { mState->enabled = enabled; }

 private:
  std::shared_ptr<WatchState> mState;
};

class PollRunLoop::TimerHandle : public Timer {
 public:
  explicit TimerHandle(std::shared_ptr<TimerState> state) : mState(std::move(state)) {}
  ~TimerHandle() override { mState->active = false; }

 private:
  std::shared_ptr<TimerState> mState;
};

PollRunLoop::PollRunLoop() = default;
PollRunLoop::~PollRunLoop() = default;

std::unique_ptr<PollRunLoop::Watch> PollRunLoop::watch(int descriptor, Interest interest,
                                                       std::function<void()> ready) {
  auto state = std::make_shared<WatchState>(WatchState{descriptor, interest, std::move(ready)});
  std::erase_if(mWatches, [](const auto& known) { return known.expired(); });
  mWatches.push_back(state);
  return std::make_unique<WatchHandle>(std::move(state));
}

std::unique_ptr<PollRunLoop::Timer> PollRunLoop::startTimer(milliseconds delay, bool repeating,
                                                            std::function<void()> fired) {
  auto state = std::make_shared<TimerState>(
      TimerState{Clock::now() + delay, delay, repeating, std::move(fired)});
  std::erase_if(mTimers, [](const auto& known) { return known.expired(); });
  mTimers.push_back(state);
  return std::make_unique<TimerHandle>(std::move(state));
}

void PollRunLoop::callLater(std::function<void()> callback) {
  mLater.push_back(std::move(callback));
}

bool PollRunLoop::runUntil(const std::function<bool()>& done, milliseconds atMost) {
  const auto deadline = Clock::now() + atMost;
  while (!done()) {
    if (Clock::now() >= deadline) return false;
    turn(deadline);
  }
  return true;
}

void PollRunLoop::runFor(milliseconds time) {
  runUntil([] { return false; }, time);
}

std::size_t PollRunLoop::timers() const {
  const auto isActive = [](const std::weak_ptr<TimerState>& timer) {
    const auto state = timer.lock();
    return state != nullptr && state->active;
  };
  return static_cast<std::size_t>(std::count_if(mTimers.begin(), mTimers.end(), isActive));
}

void PollRunLoop::turn(Clock::time_point until) {
  pollDescriptors(mLater.empty() ? nextDue(until) : Clock::now());
  fireTimers();
  runLater();
}

void PollRunLoop::pollDescriptors(Clock::time_point until) {
  std::vector<std::shared_ptr<WatchState>> watches;
  std::vector<pollfd> descriptors;
  for (const auto& watch : mWatches) {
    const auto state = watch.lock();
    if (state == nullptr || !state->enabled) continue;
    const int events = state->interest == Interest::Readable ? POLLIN : POLLOUT;
    watches.push_back(state);
    descriptors.push_back({state->descriptor, static_cast<short>(events), 0});
  }
  const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
  const auto wait = static_cast<int>(std::max<milliseconds::rep>(0, left.count()));
  if (::poll(descriptors.data(), descriptors.size(), wait) <= 0) return;
  for (std::size_t i = 0; i < watches.size(); ++i) {
    if (descriptors[i].revents != 0 && watches[i]->enabled) watches[i]->ready();
  }
}

void PollRunLoop::fireTimers() {
  const auto timers = mTimers;
  const auto now = Clock::now();
  for (const auto& timer : timers) {
    const auto state = timer.lock();
    if (state == nullptr || !state->active || state->due > now) continue;
    state->active = state->repeating;
    state->due = now + state->period;
    state->fired();
  }
}

void PollRunLoop::runLater() {
  for (auto left = mLater.size(); left > 0; --left) {
    const std::function<void()> callback = std::move(mLater.front());
    mLater.pop_front();
    callback();
  }
}

PollRunLoop::Clock::time_point PollRunLoop::nextDue(Clock::time_point until) const {
  auto next = until;
  for (const auto& timer : mTimers) {
    const auto state = timer.lock();
    if (state != nullptr && state->active) next = std::min(next, state->due);
  }
  return next;
}
