#include "RecordingObserver.h"

using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;

namespace {

std::string shown(const Text& text) { return text ? std::string(text.utf8()) : "<null>"; }

std::string nameOf(DownloadPhase phase) {
  switch (phase) {
    case DownloadPhase::Connecting:
      return "Connecting";
    case DownloadPhase::AskingForVersion:
      return "AskingForVersion";
    case DownloadPhase::ChoosingFirmware:
      return "ChoosingFirmware";
    case DownloadPhase::SendingFirmware:
      return "SendingFirmware";
    case DownloadPhase::BurningFirmware:
      return "BurningFirmware";
  }
  return "unknown phase";
}

std::string nameOf(DownloadOutcome outcome) {
  switch (outcome) {
    case DownloadOutcome::Succeeded:
      return "Succeeded";
    case DownloadOutcome::UpToDate:
      return "UpToDate";
    case DownloadOutcome::Failed:
      return "Failed";
  }
  return "unknown outcome";
}

}  // namespace

void RecordingObserver::downloadBegan(const Text& printer, const Text& info) noexcept {
  mRecord("began " + shown(printer) + " (" + shown(info) + ")");
}

void RecordingObserver::phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept {
  const std::string within = " within " + std::to_string(bound.count());
  mRecord(nameOf(phase) + (bound.count() == 0 ? "" : within));
}

void RecordingObserver::versionsKnown(unsigned int printer, unsigned int firmware) noexcept {
  mRecord("versions " + std::to_string(printer) + " " + std::to_string(firmware));
}

void RecordingObserver::bytesHandedOver(std::size_t count, std::size_t total) noexcept {
  mRecord("handed over " + std::to_string(count) + " of " + std::to_string(total));
}

void RecordingObserver::errorLogged(const std::string& entry) noexcept {
  mRecord("error " + entry);
}

void RecordingObserver::downloadEnded(DownloadOutcome outcome) noexcept {
  mRecord("ended " + nameOf(outcome));
}
