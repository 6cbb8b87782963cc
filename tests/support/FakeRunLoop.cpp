#include "FakeRunLoop.h"

#include <algorithm>

using std::chrono::milliseconds;

void FakeRunLoop::runAllLater() {
  while (runLater()) {
  }
}

void FakeRunLoop::advance(milliseconds time) {
  const Time until = mNow + time;
  while (nextDue() <= until) {
    mNow = std::max(mNow, nextDue());
    fireNext();
  }
  mNow = until;
}

bool FakeRunLoop::runUntil(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    const bool ran = runLater(done);
    if (ran && done()) break;
    pollDescriptors(milliseconds(ran ? 0 : 10), done);
  }
  return true;
}
