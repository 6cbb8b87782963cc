#include "ReturnWatch.h"

#include <system_error>
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
      mNext(runLoop.startTimer(kBetweenQuestions, false, [this] { ask(); })),
      mEnd(runLoop.startTimer(patience, false, [this] { end(); })) {}

void ReturnWatch::ask() {
  try {
    mQuery = std::make_unique<VersionQuery>(
        mRunLoop, mLocate(mPrinter), kPatience,
        [this](const VersionQuery::Answer& answer) { answered(answer); });
  } catch (const std::system_error&) {
    answered({});
  }
}

void ReturnWatch::answered(const VersionQuery::Answer& answer) {
  mLastVersion = answer.version;
  if (answer.version && (*answer.version >= mVersion || mWasAway)) {
    end();
    return;
  }
  if (!answer.version && !answer.isInUse) mWasAway = true;
  mNext = mRunLoop.startTimer(kBetweenQuestions, false, [this] { ask(); });
}

void ReturnWatch::end() {
  mEnd.reset();
  mNext.reset();
  const auto ended = std::exchange(mEnded, nullptr);
  const auto version = mLastVersion;
  ended(version);
}
