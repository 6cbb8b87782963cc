#include "PrinterLock.h"

#include <ostream>
#include <stdexcept>
#include <utility>

#include "Log.h"
#include "platform/Platform.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPause{100};

// Who asks a printer that does not answer gives up after ten seconds. Another question need not
// wait for that: who asks it learns more from the name of the program in its way.
constexpr milliseconds kLongestBeforeUpdate{15000};
constexpr milliseconds kLongestBeforeQuestion{5000};

std::string inUseBy(const std::string& holder) {
  return "The printer is in use by " + holder + ".";
}

}  // namespace

PrinterLock::PrinterLock(const platform::Data& address, platform::DeviceUse use)
    : mLeft(use == platform::DeviceUse::Update ? kLongestBeforeUpdate : kLongestBeforeQuestion) {
  platform::DeviceLocks* const locks = platform::current().deviceLocks;
  if (locks == nullptr) return;
  mLock = locks->lock(address, use, mHolder);
  if (!mHolder.empty()) throw std::runtime_error(inUseBy(mHolder));
}

bool PrinterLock::isGranted() { return mLock == nullptr || mLock->isGranted(mHolder); }

void PrinterLock::await(std::function<void(bool)> over) {
  Log<5>() << "Waiting for " << mHolder << ", which asks the printer something." << std::flush;
  mOver = std::move(over);
  mTimer = platform::current().runLoop->startTimer(kPause, true, [this] { askAgain(); });
}

void PrinterLock::askAgain() {
  const bool isMine = isGranted();
  mLeft -= kPause;
  if (!isMine && mLeft > milliseconds(0)) return;
  mTimer.reset();
  if (!isMine) Log<3>() << inUseBy(mHolder) << std::flush;
  const auto over = std::exchange(mOver, nullptr);  // outlives this object
  over(isMine);
}
