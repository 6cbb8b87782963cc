// An observer of downloads that says in words what it is told: "began Office (10.0.0.5)",
// "Connecting", "BurningFirmware within 3000", "versions 100 200", "handed over 0 of 28",
// "error Unable to write data", "ended Failed".
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/DownloadObserver.h"

class RecordingObserver final : public platform::DownloadObserver {
 public:
  explicit RecordingObserver(std::function<void(const std::string& call)> record)
      : mRecord(std::move(record)) {}

  void downloadBegan(const platform::Text& printer, const platform::Text& info) noexcept override;
  void phaseBegan(platform::DownloadPhase phase, std::chrono::milliseconds bound) noexcept override;
  void versionsKnown(unsigned int printer, unsigned int firmware) noexcept override;
  void bytesHandedOver(std::size_t count, std::size_t total) noexcept override;
  void errorLogged(const std::string& entry) noexcept override;
  void downloadEnded(platform::DownloadOutcome outcome) noexcept override;

 private:
  std::function<void(const std::string& call)> mRecord;
};
