#include "platform/qt/LiveTime.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr auto kCountEvery = 50ms;
constexpr auto kMostAtOnce = 200ms;

// For five seconds: longer than anybody waits for something that was pressed.
constexpr int kCounts = 100;

}  // namespace

LiveTime::LiveTime(std::function<Time()> now)
    : mNow(std::move(now)), mLastCount(mNow()), mLiveTime(mLastCount) {}

LiveTime::Time LiveTime::now() {
  count();
  mCountsLeft = kCounts;
  if (!mTimer.isActive()) mTimer.start(static_cast<int>(kCountEvery.count()), this);
  return mLiveTime;
}

void LiveTime::timerEvent(QTimerEvent* /*event*/) {
  count();
  if (--mCountsLeft == 0) mTimer.stop();
}

void LiveTime::count() {
  const Time now = mNow();
  mLiveTime += std::min<Time::duration>(now - mLastCount, kMostAtOnce);
  mLastCount = now;
}

}  // namespace platform
