#include "SearchTime.h"

#include <algorithm>
#include <utility>

#include "endOfSearch.h"

using std::chrono::milliseconds;

namespace {

// Which of several of one name is meant is asked once both have answered.
constexpr milliseconds kSecondLook{1000};

}  // namespace

SearchTime::SearchTime(platform::RunLoop& runLoop, milliseconds wait, std::function<void()> over)
    : mRunLoop(runLoop), mWait(wait), mOver(std::move(over)) {
  endIn(wait);
}

void SearchTime::extend() {
  const auto passed =
      std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - mBegin);
  endIn(std::max(endOfSearch(mWait, passed) - passed, milliseconds(0)));
}

void SearchTime::setComplete(bool isComplete) {
  if (!isComplete) {
    mSecondLook.reset();
  } else if (mSecondLook == nullptr) {
    mSecondLook = mRunLoop.startTimer(kSecondLook, false, mOver);
  }
}

void SearchTime::endIn(milliseconds time) { mEnd = mRunLoop.startTimer(time, false, mOver); }
