#include "ParentWatch.h"

#include <sys/stat.h>

#include <ostream>
#include <utility>

#include "Log.h"

namespace {

constexpr std::chrono::seconds kPause{1};

bool isPipe(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

}  // namespace

ParentWatch::ParentWatch(platform::RunLoop& runLoop, int output, std::function<void()> end)
    : mRunLoop(runLoop), mEnd(std::move(end)) {
  if (!isPipe(output)) return;
  // Nothing can be read from this end: it is ready only once the other one is closed.
  mWatch = runLoop.watch(output, platform::RunLoop::Interest::Readable, [this] { parentIsGone(); });
}

void ParentWatch::phaseBegan(platform::DownloadPhase phase,
                             std::chrono::milliseconds bound) noexcept {
  mIsSending = phase == platform::DownloadPhase::SendingFirmware;
  if (phase == platform::DownloadPhase::BurningFirmware) mBurned = Clock::now() + bound;
}

void ParentWatch::parentIsGone() {
  mWatch.reset();
  Log<5>() << "Nobody watches this process any more." << std::flush;
  mTimer = mRunLoop.startTimer(kPause, true, [this] { endWhereItMay(); });
  endWhereItMay();
}

void ParentWatch::endWhereItMay() {
  if (mIsSending || Clock::now() < mBurned) return;
  mTimer.reset();
  mEnd();
}
