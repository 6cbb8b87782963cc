// Ends a worker whose parent is gone, as when that was killed: nobody would see what it does, or
// could end it, while it keeps others from its printer. A printer that is getting its firmware is
// let have it first, and is given the time that it may take to write it to its memory.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "platform/DownloadObserver.h"
#include "platform/RunLoop.h"

class ParentWatch final : public platform::DownloadObserver {
 public:
  // The parent reads from the pipe `output`; what is no pipe has no parent that could be watched.
  // `end` is called from the loop, once. `runLoop` must outlive the object.
  ParentWatch(platform::RunLoop& runLoop, int output, std::function<void()> end);

  void downloadBegan(const platform::Text&, const platform::Text&) noexcept override {}
  void phaseBegan(platform::DownloadPhase phase, std::chrono::milliseconds bound) noexcept override;
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}
  void downloadEnded(platform::DownloadOutcome) noexcept override {}

 private:
  using Clock = std::chrono::steady_clock;

  void parentIsGone();
  void endWhereItMay();

  platform::RunLoop& mRunLoop;
  std::function<void()> mEnd;
  bool mIsSending = false;
  Clock::time_point mBurned;  // when the printer has written its memory at the latest
  std::unique_ptr<platform::RunLoop::Watch> mWatch;
  std::unique_ptr<platform::RunLoop::Timer> mTimer;
};
