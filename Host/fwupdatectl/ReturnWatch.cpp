#include "ReturnWatch.h"

#include <stdexcept>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kBetweenQuestions{1000};
constexpr std::chrono::milliseconds kPatience{10000};  // for the answer to one

}  // namespace

ReturnWatch::ReturnWatch(platform::RunLoop& runLoop, Target printer, unsigned int version,
                         Locate locate, std::chrono::milliseconds patience, Ended ended)
    : mRunLoop(runLoop),
      mPrinter(std::move(printer)),
      mVersion(version),
      mLocate(std::move(locate)),
      mEnded(std::move(ended)),
      mEnd(runLoop.startTimer(patience, false, [this] { end(); })) {
  askLater();
}

void ReturnWatch::askLater() {
  mNext = mRunLoop.startTimer(kBetweenQuestions, false, [this] { ask(); });
}

void ReturnWatch::ask() {
  try {
    mQuery = std::make_unique<VersionQuery>(
        mRunLoop, mLocate(mPrinter), kPatience,
        [this](const VersionQuery::Answer& answer) { answered(answer); });
  } catch (const std::runtime_error&) {
    askLater();  // it is this computer that cannot: nobody knows whether the printer is there
  }
}

void ReturnWatch::answered(const VersionQuery::Answer& answer) {
  mLastVersion = answer.version;
  if (answer.version && (*answer.version >= mVersion || mWasAway)) {
    end();
    return;
  }
  if (!answer.version && !answer.isInUse) mWasAway = true;
  askLater();
}

void ReturnWatch::end() {
  mEnd.reset();
  mNext.reset();
  const auto ended = std::exchange(mEnded, nullptr);
  const auto version = mLastVersion;
  ended(version);
}
