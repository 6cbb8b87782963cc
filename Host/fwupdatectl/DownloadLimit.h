// How long one download may take, as its parent watches it. A printer that is writing its memory is
// given the whole time that it may take for that, however little of the limit is left.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/FailureCause.h"
#include "platform/RunLoop.h"

class DownloadLimit {
 public:
  // `over` is called once, from the loop, which must outlive the object.
  DownloadLimit(platform::RunLoop& runLoop, std::chrono::milliseconds limit,
                std::function<void()> over);

  // What the download's process says, in the form of Worker.h.
  void told(const nlohmann::ordered_json& event);

  bool isOver() const { return mTimer == nullptr; }

  // Of a download that was ended for it.
  platform::FailureCause cause() const;

 private:
  using Clock = std::chrono::steady_clock;

  void wait(std::chrono::milliseconds time);
  void timeIsOver();

  platform::RunLoop& mRunLoop;
  std::chrono::milliseconds mLimit;
  std::function<void()> mOver;
  std::string mPhase;
  Clock::time_point mBurned;  // when the printer has written its memory at the latest
  std::unique_ptr<platform::RunLoop::Timer> mTimer;
};
