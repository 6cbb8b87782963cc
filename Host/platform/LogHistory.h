// The log with a memory: passes everything on to the host's log, unchanged and first, and keeps the
// last entries, so that the program can show what it wrote. An observer of downloads itself, the
// first one, it knows which entries are of which download, and tells the others of the errors among
// them. Keeping an entry never fails a call: where there is no memory for it, it is just not kept.
// Owned by main().
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DownloadObserver.h"
#include "platform/SystemLog.h"

namespace platform {

class LogHistory final : public SystemLog, public DownloadObserver {
 public:
  using Time = std::chrono::system_clock::time_point;

  static constexpr int kError = 3;  // the priority of failures
  static constexpr std::size_t kMostEntries = 200;
  static constexpr std::size_t kLongestText = 1000;  // bytes

  struct Entry {
    int priority = 0;
    Time time;
    std::string text;           // foreign bytes are in it; a longer one is cut at a whole character
    unsigned int download = 0;  // which one it is of; 0 for none
  };

  // `host` must outlive the history.
  explicit LogHistory(SystemLog& host, std::function<Time()> now = std::chrono::system_clock::now);

  // Keeps, as an error, what the host said where the program's own texts do not tell, for example
  // "Connecting failed: ECONNREFUSED (Connection refused)". The host's log does not get it.
  void noteHostError(const char* operation, int error) noexcept;

  // The oldest first.
  const std::deque<Entry>& entries() const { return mEntries; }

  // Those of the running download or, when none runs, of the last one.
  std::vector<Entry> entriesOfDownload() const;

  void open(const char* identity, int options, int facility) override;
  void write(int priority, const char* text) override;
  void close() override;

  void downloadBegan(const Text& printer, const Text& info) noexcept override;
  void phaseBegan(DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}
  void downloadEnded(DownloadOutcome outcome) noexcept override;

 private:
  void keep(int priority, std::string_view text);
  void tell(const char* error);

  SystemLog& mHost;
  std::function<Time()> mNow;
  std::deque<Entry> mEntries;
  unsigned int mDownloads = 0;  // begun so far
  bool mInDownload = false;
  bool mIsTelling = false;
};

// "2026-11-22 14:03:07 error: Unable to write data", in local time.
std::string lineOf(const LogHistory::Entry& entry);

// The same without the date.
std::string lineOfToday(const LogHistory::Entry& entry);

}  // namespace platform
