#include "PollRunLoop.h"

#include <algorithm>

using std::chrono::milliseconds;

namespace {

// How long a loop sleeps that hears of nothing: what it is run for may have come without a word.
constexpr milliseconds kLookAgain{20};

}  // namespace

bool PollRunLoop::runUntil(const std::function<bool()>& done, milliseconds atMost) {
  const Time deadline = time() + atMost;
  while (!done()) {
    if (time() >= deadline) return false;
    turn(std::min(deadline, time() + kLookAgain));
  }
  return true;
}

void PollRunLoop::runFor(milliseconds time) {
  runUntil([] { return false; }, time);
}

PollRunLoop::Time PollRunLoop::time() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

void PollRunLoop::turn(Time until) {
  const Time left = std::min(until, nextDue()) - time();
  const Time wait = putOff() > 0 ? Time(0) : std::max(left, Time(0));
  pollDescriptors(std::chrono::ceil<milliseconds>(wait));
  runLater();
  const Time now = time();
  while (nextDue() <= now) fireNext();
}
