#include "TestRunLoop.h"

#include <poll.h>

#include <algorithm>
#include <utility>

using std::chrono::milliseconds;

namespace {

short eventsFor(platform::RunLoop::Interest interest) {
  return interest == platform::RunLoop::Interest::Readable ? POLLIN : POLLOUT;
}

}  // namespace

// Handle and loop share a state, so that a callback may destroy its own handle.
struct TestRunLoop::WatchState {
  int descriptor;
  Interest interest;
  std::function<void()> ready;
  bool enabled = true;

  void callBack() const {
    if (enabled) ready();
  }
};

struct TestRunLoop::TimerState {
  Time due;
  milliseconds period;
  bool repeating;
  std::function<void()> fired;
  bool active = true;
};

class TestRunLoop::WatchHandle : public Watch {
 public:
  explicit WatchHandle(std::shared_ptr<WatchState> state) : mState(std::move(state)) {}
  ~WatchHandle() override { mState->enabled = false; }
  void setEnabled(bool enabled) override { mState->enabled = enabled; }

 private:
  std::shared_ptr<WatchState> mState;
};

class TestRunLoop::TimerHandle : public Timer {
 public:
  explicit TimerHandle(std::shared_ptr<TimerState> state) : mState(std::move(state)) {}
  ~TimerHandle() override { mState->active = false; }

 private:
  std::shared_ptr<TimerState> mState;
};

TestRunLoop::TestRunLoop() = default;
TestRunLoop::~TestRunLoop() = default;

std::unique_ptr<TestRunLoop::Watch> TestRunLoop::watch(int descriptor, Interest interest,
                                                       std::function<void()> ready) {
  auto state = std::make_shared<WatchState>(WatchState{descriptor, interest, std::move(ready)});
  std::erase_if(mWatches, [](const auto& known) { return known.expired(); });
  mWatches.push_back(state);
  return std::make_unique<WatchHandle>(std::move(state));
}

std::unique_ptr<TestRunLoop::Timer> TestRunLoop::startTimer(milliseconds delay, bool repeating,
                                                            std::function<void()> fired) {
  auto state =
      std::make_shared<TimerState>(TimerState{time() + delay, delay, repeating, std::move(fired)});
  std::erase_if(mTimers, [](const auto& known) { return known.expired(); });
  mTimers.push_back(state);
  return std::make_unique<TimerHandle>(std::move(state));
}

void TestRunLoop::callLater(std::function<void()> callback) {
  mLater.push_back(std::move(callback));
}

bool TestRunLoop::waitUntilReady(int descriptor, Interest interest,
                                 std::chrono::steady_clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd state{descriptor, eventsFor(interest), 0};
    if (::poll(&state, 1, static_cast<int>(left.count())) > 0) return true;
  }
}

bool TestRunLoop::runLater(const Enough& enough) {
  const std::size_t count = mLater.size();
  for (std::size_t i = 0; i < count; ++i) {
    const std::function<void()> callback = std::move(mLater.front());
    mLater.pop_front();
    callback();
    if (enough && enough()) break;
  }
  return count != 0;
}

bool TestRunLoop::pollDescriptors(milliseconds atMost, const Enough& enough) {
  const auto watches = enabledWatchStates();
  std::vector<pollfd> descriptors;
  for (const auto& watch : watches) {
    descriptors.push_back({watch->descriptor, eventsFor(watch->interest), 0});
  }
  if (::poll(descriptors.data(), descriptors.size(), static_cast<int>(atMost.count())) <= 0) {
    return false;
  }
  for (std::size_t i = 0; i < watches.size(); ++i) {
    if (descriptors[i].revents == 0) continue;
    watches[i]->callBack();
    if (enough && enough()) break;
  }
  return true;
}

void TestRunLoop::makeReady(int descriptor, Interest interest) {
  for (const auto& watch : enabledWatchStates()) {
    if (watch->descriptor == descriptor && watch->interest == interest) watch->callBack();
  }
}

std::size_t TestRunLoop::enabledWatches() const { return enabledWatchStates().size(); }

std::size_t TestRunLoop::timers() const { return activeTimerStates().size(); }

TestRunLoop::Time TestRunLoop::nextDue() const {
  const auto next = nextTimer();
  return next == nullptr ? Time::max() : next->due;
}

void TestRunLoop::fireNext() {
  const auto next = nextTimer();
  if (next == nullptr) return;
  next->active = next->repeating;
  next->due = time() + std::max(next->period, milliseconds(1));
  next->fired();
}

std::vector<std::shared_ptr<TestRunLoop::WatchState>> TestRunLoop::enabledWatchStates() const {
  std::vector<std::shared_ptr<WatchState>> enabled;
  for (const auto& watch : mWatches) {
    const auto state = watch.lock();
    if (state != nullptr && state->enabled) enabled.push_back(state);
  }
  return enabled;
}

std::vector<std::shared_ptr<TestRunLoop::TimerState>> TestRunLoop::activeTimerStates() const {
  std::vector<std::shared_ptr<TimerState>> active;
  for (const auto& timer : mTimers) {
    const auto state = timer.lock();
    if (state != nullptr && state->active) active.push_back(state);
  }
  return active;
}

std::shared_ptr<TestRunLoop::TimerState> TestRunLoop::nextTimer() const {
  const auto active = activeTimerStates();
  const auto next =
      std::ranges::min_element(active, {}, [](const auto& timer) { return timer->due; });
  return next == active.end() ? nullptr : *next;
}
