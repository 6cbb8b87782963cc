#include "FakeRunLoop.h"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <utility>

using std::chrono::milliseconds;

// Handle and loop share a state, so that a call back may destroy its own handle.
struct FakeRunLoop::WatchState {
  int descriptor;
  Interest interest;
  std::function<void()> ready;
  bool enabled = true;

  void callBack() {
    const std::function<void()> callback = ready;
    if (enabled) callback();
  }
};

struct FakeRunLoop::TimerState {
  milliseconds due;
  milliseconds period;
  bool repeating;
  std::function<void()> fired;
  bool active = true;
};

class FakeRunLoop::WatchHandle : public Watch {
 public:
  explicit WatchHandle(std::shared_ptr<WatchState> state) : mState(std::move(state)) {}
  ~WatchHandle() override { mState->enabled = false; }
  void setEnabled(bool enabled) override { mState->enabled = enabled; }

 private:
  std::shared_ptr<WatchState> mState;
};

class FakeRunLoop::TimerHandle : public Timer {
 public:
  explicit TimerHandle(std::shared_ptr<TimerState> state) : mState(std::move(state)) {}
  ~TimerHandle() override { mState->active = false; }

 private:
  std::shared_ptr<TimerState> mState;
};

FakeRunLoop::FakeRunLoop() = default;
FakeRunLoop::~FakeRunLoop() = default;

std::unique_ptr<FakeRunLoop::Watch> FakeRunLoop::watch(int descriptor, Interest interest,
                                                       std::function<void()> ready) {
  auto state = std::make_shared<WatchState>(WatchState{descriptor, interest, std::move(ready)});
  std::erase_if(mWatches, [](const auto& known) { return known.expired(); });
  mWatches.push_back(state);
  return std::make_unique<WatchHandle>(std::move(state));
}

std::unique_ptr<FakeRunLoop::Timer> FakeRunLoop::startTimer(milliseconds delay, bool repeating,
                                                            std::function<void()> fired) {
  auto state =
      std::make_shared<TimerState>(TimerState{mNow + delay, delay, repeating, std::move(fired)});
  std::erase_if(mTimers, [](const auto& known) { return known.expired(); });
  mTimers.push_back(state);
  return std::make_unique<TimerHandle>(std::move(state));
}

void FakeRunLoop::callLater(std::function<void()> callback) {
  mLater.push_back(std::move(callback));
}

bool FakeRunLoop::runLater() {
  const std::size_t count = mLater.size();
  for (std::size_t i = 0; i < count; ++i) {
    const std::function<void()> callback = std::move(mLater.front());
    mLater.pop_front();
    callback();
  }
  return count != 0;
}

void FakeRunLoop::runAllLater() {
  while (runLater()) {
  }
}

void FakeRunLoop::advance(milliseconds time) {
  const milliseconds until = mNow + time;
  while (const std::shared_ptr<TimerState> timer = nextDue(until)) {
    mNow = std::max(mNow, timer->due);
    timer->active = timer->repeating;
    timer->due += std::max(timer->period, milliseconds(1));
    timer->fired();
  }
  mNow = until;
}

bool FakeRunLoop::pollDescriptors(milliseconds atMost) {
  const std::vector<std::shared_ptr<WatchState>> watches = enabledWatchStates();
  std::vector<pollfd> descriptors;
  for (const auto& watch : watches) {
    const int events = watch->interest == Interest::Readable ? POLLIN : POLLOUT;
    descriptors.push_back({watch->descriptor, static_cast<short>(events), 0});
  }
  if (::poll(descriptors.data(), descriptors.size(), static_cast<int>(atMost.count())) <= 0) {
    return false;
  }
  for (std::size_t i = 0; i < watches.size(); ++i) {
    if (descriptors[i].revents != 0) watches[i]->callBack();
  }
  return true;
}

bool FakeRunLoop::runUntil(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    const bool ran = runLater();
    pollDescriptors(milliseconds(ran ? 0 : 10));
  }
  return true;
}

void FakeRunLoop::makeReady(int descriptor, Interest interest) {
  for (const auto& watch : enabledWatchStates()) {
    if (watch->descriptor == descriptor && watch->interest == interest) watch->callBack();
  }
}

std::size_t FakeRunLoop::enabledWatches() const { return enabledWatchStates().size(); }

std::size_t FakeRunLoop::timers() const {
  const auto isActive = [](const std::weak_ptr<TimerState>& timer) {
    const auto state = timer.lock();
    return state != nullptr && state->active;
  };
  return static_cast<std::size_t>(std::count_if(mTimers.begin(), mTimers.end(), isActive));
}

std::vector<std::shared_ptr<FakeRunLoop::WatchState>> FakeRunLoop::enabledWatchStates() const {
  std::vector<std::shared_ptr<WatchState>> enabled;
  for (const auto& watch : mWatches) {
    const auto state = watch.lock();
    if (state != nullptr && state->enabled) enabled.push_back(state);
  }
  return enabled;
}

std::shared_ptr<FakeRunLoop::TimerState> FakeRunLoop::nextDue(milliseconds until) const {
  std::shared_ptr<TimerState> next;
  for (const auto& timer : mTimers) {
    const auto state = timer.lock();
    if (state == nullptr || !state->active || state->due > until) continue;
    if (next == nullptr || state->due < next->due) next = state;
  }
  return next;
}
