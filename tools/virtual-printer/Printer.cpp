#include "Printer.h"

#include <utility>

namespace virtualprinter {
namespace {

// The text with its FWVER field changed to `version`, or with such a field added.
std::string withVersion(const std::string& deviceId, const std::string& version) {
  const std::string key = "FWVER:";
  const std::size_t begin = deviceId.find(key);
  if (begin == std::string::npos) return deviceId + key + version + ";";
  const std::size_t value = begin + key.size();
  const std::size_t end = deviceId.find(';', value);
  const std::string rest = end == std::string::npos ? ";" : deviceId.substr(end);
  return deviceId.substr(0, value) + version + rest;
}

double seconds(std::chrono::microseconds time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

Printer::Printer(PrinterSettings settings, FaultPlan faults, Scheduler& scheduler, Journal& journal)
    : mSettings(std::move(settings)),
      mFaults(std::move(faults)),
      mScheduler(scheduler),
      mJournal(journal) {}

void Printer::start() {
  for (Attachment* attachment : mAttachments) attachment->arrive();
  mJournal.write("ready", {{"device_id", deviceId(faultsOf(mConversationsBegun + 1))}});
}

void Printer::stop() {
  mRestartTimer.reset();
  mBurnTimer.reset();
  for (auto it = mAttachments.rbegin(); it != mAttachments.rend(); ++it) (*it)->leave();
}

std::string Printer::deviceId(const FaultPlan& faults) const {
  if (mSettings.deviceId) return *mSettings.deviceId;
  std::string text = "MFG:" + mSettings.manufacturer + ";CMD:PJL,ACL;";
  if (!faults.find(FaultKind::NoMdl)) text += "MDL:" + mSettings.model + ";";
  text += "CLS:PRINTER;";
  text += faults.find(FaultKind::BadUtf8)
              ? "DES:\xff\xfe;"
              : "DES:" + mSettings.manufacturer + " " + mSettings.model + ";";
  text += "SN:" + mSettings.serial + ";";
  if (mSettings.lic && !faults.find(FaultKind::NoLic)) text += "LIC:" + *mSettings.lic + ";";
  if (mSettings.fwver && !faults.find(FaultKind::NoFwver)) {
    text += "FWVER:" + *mSettings.fwver + ";";
  }
  return text;
}

unsigned Printer::beginConversation() {
  mConversing = true;
  return ++mConversationsBegun;
}

const FaultPlan& Printer::faultsOf(unsigned conversation) const {
  const auto& limit = mSettings.faultyConversations;
  return limit && conversation > *limit ? mNoFaults : mFaults;
}

void Printer::countViolation() {
  ++mTally.violations;
  changed();
}

void Printer::burn(ImageBuffer image, const BurnRequest& request, const FaultPlan& faults,
                   BurnDone done) {
  const std::uint16_t checksum = imageChecksum(image.bytes());
  const PlatformId id = readPlatformId(image.bytes());
  std::string reason;
  std::chrono::microseconds time{0};
  if (checksum != request.checksum) {
    mBurnStatus = kStatusChecksumWrong;
    reason = "the checksum of the image is " + std::to_string(checksum) +
             ", the burn header says " + std::to_string(request.checksum);
  } else if (!id.problem.empty()) {
    mBurnStatus = kStatusPlatformIdWrong;
    reason = id.problem;
  } else if (const Fault* fault = faults.find(FaultKind::FailBurn)) {
    mBurnStatus = static_cast<std::uint16_t>(fault->number);
    reason = "fault " + fault->text;
    time = mSettings.burnTime;
  } else {
    mBurnStatus = kStatusBurned;
    time = mSettings.burnTime;
  }
  mJournal.write("burning", {{"seconds", seconds(time)}});
  mBurnDone = std::move(done);
  mBurnTimer = mScheduler.after(time, [this] { finishBurn(); });
  mBurnEntry = {{"ok", reason.empty()},
                {"status", mBurnStatus},
                {"reason", reason},
                {"bytes", image.bytes().size()},
                {"sha256", sha256(image.bytes())},
                {"checksum", checksum},
                {"announced_checksum", request.checksum},
                {"platform_id", id.fields},
                {"version", id.version}};
}

void Printer::finishBurn() {
  mBurnTimer.reset();
  if (mBurnEntry["ok"].get<bool>()) {
    mBurnedVersion = mBurnEntry["version"].get<std::string>();
    ++mTally.burned;
  } else {
    ++mTally.burnsFailed;
  }
  mJournal.write("burn", mBurnEntry);
  const BurnDone done = std::exchange(mBurnDone, nullptr);
  if (done) done(mBurnStatus);
  changed();
  restartIfBurned();
}

void Printer::endConversation() {
  mConversing = false;
  ++mTally.conversations;
  changed();
  restartIfBurned();
}

void Printer::restartIfBurned() {
  if (!mBurnedVersion || mConversing || mRestartTimer) return;
  // Not from inside a conversation, which the attachments are about to destroy.
  mRestartTimer = mScheduler.after(std::chrono::microseconds(0), [this] { restart(); });
}

void Printer::restart() {
  for (auto it = mAttachments.rbegin(); it != mAttachments.rend(); ++it) (*it)->leave();
  mJournal.write("restart", {{"seconds", seconds(mSettings.returnTime)}});
  mRestartTimer = mScheduler.after(mSettings.returnTime, [this] { comeBack(); });
}

void Printer::comeBack() {
  mRestartTimer.reset();
  const std::string version = *std::exchange(mBurnedVersion, std::nullopt);
  if (!faultsOf(mConversationsBegun).find(FaultKind::ForgetBurn)) takeVersion(version);
  start();
  ++mTally.returns;
  changed();
}

void Printer::takeVersion(const std::string& version) {
  mSettings.fwver = version;
  if (mSettings.deviceId) mSettings.deviceId = withVersion(*mSettings.deviceId, version);
}

void Printer::changed() {
  if (mObserver) mObserver(mTally);
}

}  // namespace virtualprinter
