// How long the printers that an update is for are looked for: until they are there and a moment
// longer, since another one of the same name may answer a little later, and at the latest until the
// time is over. A printer that has just restarted may be known from before, go, and come back: it
// is looked for on.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/RunLoop.h"

class SearchTime {
 public:
  // `over` comes from the loop, which must outlive this.
  SearchTime(platform::RunLoop& runLoop, std::chrono::milliseconds wait,
             std::function<void()> over);

  // Who looks for all printers goes on past an arrival: see endOfSearch.h.
  void extend();

  // Whether all that are asked for are there now.
  void setComplete(bool isComplete);

 private:
  void endIn(std::chrono::milliseconds time);

  platform::RunLoop& mRunLoop;
  const std::chrono::milliseconds mWait;
  const std::function<void()> mOver;
  const std::chrono::steady_clock::time_point mBegin = std::chrono::steady_clock::now();
  std::unique_ptr<platform::RunLoop::Timer> mEnd;
  std::unique_ptr<platform::RunLoop::Timer> mSecondLook;
};
