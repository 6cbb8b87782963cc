// Watches the program's downloads, of which there is one at a time: shows them, keeps the computer
// awake meanwhile, reports them. Called from the one thread, between the steps of a download, or
// while one sends. An observer changes nothing: it throws nothing, and issues no command, posts no
// event and runs no loop from inside a call.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/Text.h"

namespace platform {

enum class DownloadPhase {
  Connecting,
  AskingForVersion,
  ChoosingFirmware,
  SendingFirmware,
  BurningFirmware,
};

enum class DownloadOutcome { Succeeded, UpToDate, Failed };

class DownloadObserver {
 public:
  virtual ~DownloadObserver() = default;

  // `info` tells printers of the same name apart; it may be null.
  virtual void downloadBegan(const Text& printer, const Text& info) noexcept = 0;

  // `bound` is the longest that the program waits in this phase; 0 when it has no such end.
  virtual void phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept = 0;

  // What the printer runs, and what it is to get.
  virtual void versionsKnown(unsigned int printer, unsigned int firmware) noexcept = 0;

  // Of the firmware's `total` bytes, `count` have been taken by the host. From 0 to `total`, never
  // backwards.
  virtual void bytesHandedOver(std::size_t count, std::size_t total) noexcept = 0;

  // An entry of the log, at error level, that was written during the download.
  virtual void errorLogged(const std::string& entry) noexcept = 0;

  // Before the program acts on the outcome. Comes once for each downloadBegan().
  virtual void downloadEnded(DownloadOutcome outcome) noexcept = 0;
};

// Several observers as one: each is told, in the order in which they were added.
class DownloadObservers final : public DownloadObserver {
 public:
  // The observer stays the caller's and must outlive the last call.
  void add(DownloadObserver& observer) { mObservers.push_back(&observer); }

  void downloadBegan(const Text& printer, const Text& info) noexcept override;
  void phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept override;
  void versionsKnown(unsigned int printer, unsigned int firmware) noexcept override;
  void bytesHandedOver(std::size_t count, std::size_t total) noexcept override;
  void errorLogged(const std::string& entry) noexcept override;
  void downloadEnded(DownloadOutcome outcome) noexcept override;

 private:
  std::vector<DownloadObserver*> mObservers;
};

// The installed platform's observer; one that does nothing when it has none.
DownloadObserver& downloadObserver() noexcept;

}  // namespace platform
