#include "platform/qt/DownloadState.h"

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
  emit began();
}

void DownloadState::phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept {
  mPhase = phase;
  mBound = bound;
  emit phaseChanged();
}

void DownloadState::versionsKnown(unsigned int printer, unsigned int firmware) noexcept {
  mVersions = Versions{printer, firmware};
  emit versionsChanged();
}

void DownloadState::bytesHandedOver(std::size_t count, std::size_t total) noexcept {
  mBytes = count;
  mBytesInAll = total;
  emit bytesChanged();
}

void DownloadState::errorLogged(const std::string& entry) noexcept {
  mErrors.push_back(entry);
  emit errorAdded();
}

void DownloadState::downloadEnded(DownloadOutcome outcome) noexcept {
  mRunning = false;
  mOutcome = outcome;
  emit ended();
}

}  // namespace platform
