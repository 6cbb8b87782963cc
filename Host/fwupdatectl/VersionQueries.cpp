#include "VersionQueries.h"

#include <system_error>
#include <utility>

VersionQueries::VersionQueries(
    platform::RunLoop& runLoop, std::vector<Target> printers, std::chrono::milliseconds patience,
    std::function<void(std::size_t, const VersionQuery::Answer&)> answered)
    : mRunLoop(runLoop),
      mPrinters(std::move(printers)),
      mPatience(patience),
      mAnswered(std::move(answered)) {}

void VersionQueries::start(std::function<void()> done) {
  mDone = std::move(done);
  mRunLoop.callLater([this] { startSome(); });
}

void VersionQueries::startSome() {
  while (mStarted < mPrinters.size() && mRunning.size() < kAtATime) startNext();
  if (mRunning.empty()) mDone();
}

void VersionQueries::startNext() {
  const std::size_t place = mStarted++;
  try {
    mRunning[place] = std::make_unique<VersionQuery>(
        mRunLoop, mPrinters[place], mPatience, [this, place](const VersionQuery::Answer& answer) {
          const auto ended = mRunning.extract(place);
          mAnswered(place, answer);
          startSome();
        });
  } catch (const std::system_error& error) {
    mRunning.erase(place);
    VersionQuery::Answer none;
    none.cause = error.what();
    mAnswered(place, none);
  }
}
