// Asks printers for their versions, some of them at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "Target.h"
#include "VersionQuery.h"
#include "platform/RunLoop.h"

class VersionQueries {
 public:
  static constexpr std::size_t kAtATime = 8;

  // `answered` gets the place of a printer among `printers`, and its answer. `runLoop` must outlive
  // it.
  VersionQueries(
      platform::RunLoop& runLoop, std::vector<Target> printers, std::chrono::milliseconds patience,
      std::function<void(std::size_t place, const VersionQuery::Answer& answer)> answered);

  // `done` is called from the loop when all have answered, or none will any more.
  void start(std::function<void()> done);

 private:
  void startSome();
  void startNext();

  platform::RunLoop& mRunLoop;
  const std::vector<Target> mPrinters;
  const std::chrono::milliseconds mPatience;
  std::function<void(std::size_t, const VersionQuery::Answer&)> mAnswered;
  std::function<void()> mDone;
  std::size_t mStarted = 0;
  std::map<std::size_t, std::unique_ptr<VersionQuery>> mRunning;  // by their places
};
