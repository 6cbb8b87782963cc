// What is known of the current download, or of the last one when none runs: what observers are
// told, kept for windows that show it. The Qt application owns it; it outlives every window.
#pragma once

#include <QObject>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/DownloadObserver.h"
#include "platform/Text.h"

namespace platform {

class DownloadState final : public QObject, public DownloadObserver {
  Q_OBJECT

 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  explicit DownloadState(Clock now = std::chrono::steady_clock::now) : mNow(std::move(now)) {}

  struct Versions {
    unsigned int printer = 0;
    unsigned int firmware = 0;
  };

  // From began() to ended().
  bool isRunning() const { return mRunning; }

  // Either may be null.
  const Text& printer() const { return mPrinter; }
  const Text& info() const { return mInfo; }

  // None before the first phase. The bound is the longest that it lasts; 0 when it has no such end.
  std::optional<DownloadPhase> phase() const { return mPhase; }
  std::chrono::milliseconds bound() const { return mBound; }

  // None until both are known.
  std::optional<Versions> versions() const { return mVersions; }

  // Of the firmware. The total is 0 until its first byte is to be sent.
  std::size_t bytesHandedOver() const { return mBytes; }
  std::size_t bytesInAll() const { return mBytesInAll; }

  // How long ago the download was heard of last: its beginning, a phase, versions or bytes.
  std::chrono::milliseconds silence() const;

  // Entries of the log, oldest first.
  const std::vector<std::string>& errors() const { return mErrors; }

  // None while it runs.
  std::optional<DownloadOutcome> outcome() const { return mOutcome; }

  void downloadBegan(const Text& printer, const Text& info) noexcept override;
  void phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept override;
  void versionsKnown(unsigned int printer, unsigned int firmware) noexcept override;
  void bytesHandedOver(std::size_t count, std::size_t total) noexcept override;
  void errorLogged(const std::string& entry) noexcept override;
  void downloadEnded(DownloadOutcome outcome) noexcept override;

 signals:
  // The state is already what they tell. Whoever hears them throws nothing, issues no command and
  // runs no loop: they come from between the steps of a download, or from inside a send.
  void began();  // everything of the download before is forgotten
  void phaseChanged();
  void versionsChanged();
  void bytesChanged();
  void errorAdded();
  void ended();

 private:
  void heardOf() { mHeardOf = mNow(); }

  Clock mNow;
  std::chrono::steady_clock::time_point mHeardOf;
  bool mRunning = false;
  Text mPrinter;
  Text mInfo;
  std::optional<DownloadPhase> mPhase;
  std::chrono::milliseconds mBound{0};
  std::optional<Versions> mVersions;
  std::size_t mBytes = 0;
  std::size_t mBytesInAll = 0;
  std::vector<std::string> mErrors;
  std::optional<DownloadOutcome> mOutcome;
};

}  // namespace platform
