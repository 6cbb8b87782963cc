#include "platform/qt/DownloadState.h"

#include <new>

namespace platform {

void DownloadState::downloadBegan(const Text& printer, const Text& info) noexcept {
  mRunning = true;
  mPrinter = printer;
  mInfo = info;
  mPhase.reset();
  mBound = {};
  mVersions.reset();
  mBytes = mBytesInAll = 0;
  mErrors.clear();
  mOutcome.reset();
  heardOf();
  emit began();
}

void DownloadState::phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept {
  mPhase = phase;
  mBound = bound;
  heardOf();
  emit phaseChanged();
}

void DownloadState::versionsKnown(unsigned int printer, unsigned int firmware) noexcept {
  mVersions = Versions{printer, firmware};
  heardOf();
  emit versionsChanged();
}

void DownloadState::bytesHandedOver(std::size_t count, std::size_t total) noexcept {
  mBytes = count;
  mBytesInAll = total;
  heardOf();
  emit bytesChanged();
}

std::chrono::milliseconds DownloadState::silence() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(mNow() - mHeardOf);
}

void DownloadState::errorLogged(const std::string& entry) noexcept {
  try {
    mErrors.push_back(entry);
  } catch (const std::bad_alloc&) {
    return;  // the log has it
  }
  emit errorAdded();
}

void DownloadState::downloadEnded(DownloadOutcome outcome) noexcept {
  mRunning = false;
  mOutcome = outcome;
  emit ended();
}

}  // namespace platform
