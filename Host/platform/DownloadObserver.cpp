#include "platform/DownloadObserver.h"

#include "platform/Platform.h"

namespace platform {

void DownloadObservers::downloadBegan(const Text& printer, const Text& info) noexcept {
  for (DownloadObserver* each : mObservers) each->downloadBegan(printer, info);
}

void DownloadObservers::phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept {
  for (DownloadObserver* each : mObservers) each->phaseBegan(phase, bound);
}

void DownloadObservers::versionsKnown(unsigned int printer, unsigned int firmware) noexcept {
  for (DownloadObserver* each : mObservers) each->versionsKnown(printer, firmware);
}

void DownloadObservers::bytesHandedOver(std::size_t count, std::size_t total) noexcept {
  for (DownloadObserver* each : mObservers) each->bytesHandedOver(count, total);
}

void DownloadObservers::errorLogged(const std::string& entry) noexcept {
  for (DownloadObserver* each : mObservers) each->errorLogged(entry);
}

void DownloadObservers::downloadEnded(DownloadOutcome outcome) noexcept {
  for (DownloadObserver* each : mObservers) each->downloadEnded(outcome);
}

DownloadObserver& downloadObserver() noexcept {
  static DownloadObservers nobody;
  DownloadObserver* const installed = current().downloadObserver;
  return installed != nullptr ? *installed : nobody;
}

}  // namespace platform
