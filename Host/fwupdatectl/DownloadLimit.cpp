#include "DownloadLimit.h"

#include <utility>

#include "inSeconds.h"

namespace {

constexpr const char* kOnceMore =
    "Check that the printer is switched on, connected and not printing, then try again.";

}  // namespace

DownloadLimit::DownloadLimit(platform::RunLoop& runLoop, std::chrono::milliseconds limit,
                             std::function<void()> over)
    : mRunLoop(runLoop), mLimit(limit), mOver(std::move(over)) {
  wait(limit);
}

void DownloadLimit::told(const nlohmann::ordered_json& event) {
  if (event.value("event", "") != "phase") return;
  mPhase = event.value("phase", "");
  if (mPhase == "burning-firmware") {
    mBurned = Clock::now() + std::chrono::milliseconds(event.value("bound_ms", 0U));
  }
}

platform::FailureCause DownloadLimit::cause() const {
  if (mPhase == "burning-firmware") {
    return {nullptr,
            "The printer did not confirm the firmware in the time that it may take to write it.",
            platform::causeOfFailure({}, true).nextStep,
            {}};
  }
  if (mPhase == "sending-firmware") {
    return {nullptr, "The printer did not take all of the firmware within %1.",
            "Switch the printer off and on, then try again.", inSeconds(mLimit)};
  }
  // Not even that begins while another program asks the printer something.
  if (mPhase.empty() || mPhase == "connecting") {
    return {nullptr, "The printer could not be reached within %1.", kOnceMore, inSeconds(mLimit)};
  }
  return {nullptr, "The printer did not answer within %1.", kOnceMore, inSeconds(mLimit)};
}

void DownloadLimit::wait(std::chrono::milliseconds time) {
  mTimer = mRunLoop.startTimer(time, false, [this] { timeIsOver(); });
}

void DownloadLimit::timeIsOver() {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(mBurned - Clock::now());
  if (mPhase == "burning-firmware" && left > std::chrono::milliseconds(0)) {
    wait(left);
    return;
  }
  mTimer.reset();
  mOver();
}
