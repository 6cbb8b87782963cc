// The device itself: its identity, its flash, its presence. One conversation at a time talks to it.
// It owns the plan of faults and the settings; the attachments are its surroundings' and outlive
// it or the run.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Attachment.h"
#include "FaultPlan.h"
#include "FirmwareImage.h"
#include "Journal.h"
#include "PrinterProtocol.h"
#include "Scheduler.h"

namespace virtualprinter {

struct PrinterSettings {
  std::string name = "Veltra KX350T";
  std::string manufacturer = "Veltra";
  std::string model = "KX350T";
  std::optional<std::string> lic = "QT725013";    // no LIC field when unset
  std::optional<std::string> fwver = "00000100";  // no FWVER field until the first burn when unset
  std::string serial = "VP000001";
  std::optional<std::string> deviceId;  // replaces the whole text; a burn changes its FWVER
  std::size_t flashSize = std::size_t{64} << 20;
  std::chrono::microseconds burnTime = std::chrono::seconds(2);
  std::chrono::microseconds returnTime = std::chrono::seconds(3);
  std::chrono::microseconds hangUpTime = std::chrono::seconds(1);
  std::optional<unsigned> faultyConversations;  // no faults after so many
};

// The statuses of a burn reply. The protocol fixes 1; the others are this printer's own.
inline constexpr std::uint16_t kStatusBurned = 1;
inline constexpr std::uint16_t kStatusFlashFailed = 2;
inline constexpr std::uint16_t kStatusChecksumWrong = 3;
inline constexpr std::uint16_t kStatusPlatformIdWrong = 4;

// What a run amounts to, for the exit code.
struct Tally {
  unsigned conversations = 0;  // that have ended
  unsigned violations = 0;
  unsigned burned = 0;
  unsigned burnsFailed = 0;
  unsigned returns = 0;  // from a restart
};

class Printer {
 public:
  using BurnDone = std::function<void(std::uint16_t status)>;

  Printer(PrinterSettings settings, FaultPlan faults, Scheduler& scheduler, Journal& journal);

  // Attachments arrive in the order in which they were added and leave in the reverse order.
  void addAttachment(Attachment& attachment) { mAttachments.push_back(&attachment); }
  void start();
  void stop();

  // Called after every change of the tally.
  void setObserver(std::function<void(const Tally&)> observer) { mObserver = std::move(observer); }

  const PrinterSettings& settings() const { return mSettings; }
  const Tally& tally() const { return mTally; }
  Scheduler& scheduler() { return mScheduler; }
  Journal& journal() { return mJournal; }

  // The faults of the whole run, for the media.
  const FaultPlan& faults() const { return mFaults; }

  // The text of the device ID as it is now, without its two-byte length.
  std::string deviceId(const FaultPlan& faults) const;

  // For conversations. ------------------------------------------------------------------------

  // The number of the conversation, from 1, and the faults that it has to suffer.
  unsigned beginConversation();
  const FaultPlan& faultsOf(unsigned conversation) const;

  // Checks the image, burns it and calls `done`; never from inside this call.
  void burn(ImageBuffer image, const BurnRequest& request, const FaultPlan& faults, BurnDone done);
  void abandonBurn() { mBurnTimer.reset(); }

  // There is new firmware in flash: the printer restarts when the conversation has ended.
  bool wantsRestart() const { return mBurnedVersion.has_value(); }

  void countViolation();

  // The printer restarts now if it has new firmware.
  void endConversation();

 private:
  void finishBurn();
  void restartIfBurned();
  void restart();
  void comeBack();
  void takeVersion(const std::string& version);
  void changed();

  PrinterSettings mSettings;
  FaultPlan mFaults;
  FaultPlan mNoFaults;
  Scheduler& mScheduler;
  Journal& mJournal;
  std::function<void(const Tally&)> mObserver;
  std::vector<Attachment*> mAttachments;
  Tally mTally;
  unsigned mConversationsBegun = 0;
  bool mConversing = false;
  std::optional<std::string> mBurnedVersion;  // in flash, and current after the restart
  BurnDone mBurnDone;
  Journal::Fields mBurnEntry;  // what the journal will say when the burn has ended
  std::uint16_t mBurnStatus = 0;
  std::unique_ptr<Scheduler::Timer> mBurnTimer;
  std::unique_ptr<Scheduler::Timer> mRestartTimer;
};

}  // namespace virtualprinter
