// Waits until a printer is back that has restarted with new firmware, and asks for its version. A
// printer may answer for a while before it restarts: its old version counts once it has been away,
// or when the time is over. It may come back with another address: whoever follows the printers'
// announcements says where it is now.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "Target.h"
#include "VersionQuery.h"
#include "platform/RunLoop.h"

class ReturnWatch {
 public:
  // May throw a std::runtime_error: the question is put off.
  using Locate = std::function<Target(const Target& printer)>;

  // None when the printer did not come back.
  using Ended = std::function<void(std::optional<unsigned int> version)>;

  // `ended` is called once, from the loop, at the latest after `patience`; the object may be
  // destroyed from there. `runLoop` must outlive it.
  ReturnWatch(platform::RunLoop& runLoop, Target printer, unsigned int version, Locate locate,
              std::chrono::milliseconds patience, Ended ended);

 private:
  void askLater();
  void ask();
  void answered(const VersionQuery::Answer& answer);
  void end();

  platform::RunLoop& mRunLoop;
  Target mPrinter;
  unsigned int mVersion;  // of the new firmware
  Locate mLocate;
  Ended mEnded;
  bool mWasAway = false;
  std::optional<unsigned int> mLastVersion;
  std::unique_ptr<VersionQuery> mQuery;
  std::unique_ptr<platform::RunLoop::Timer> mNext;
  std::unique_ptr<platform::RunLoop::Timer> mEnd;
};
