#include "UsbConnection.h"

#include <algorithm>
#include <utility>

#include "FaultPlan.h"
#include "Printer.h"

namespace virtualprinter {
namespace {

constexpr std::size_t kPacket = 512;
constexpr std::size_t kMaxRead = 65536;

// Long enough for the host to read what was said last.
constexpr std::chrono::milliseconds kFarewell{300};
constexpr std::chrono::milliseconds kPlugIsOut{200};

}  // namespace

UsbConnection::UsbConnection(Printer& printer, UsbPipes& pipes, PullPlug pullPlug)
    : mPrinter(printer),
      mPipes(pipes),
      mPullPlug(std::move(pullPlug)),
      mConversation(printer, *this, "usb", true) {}

UsbConnection::~UsbConnection() = default;

std::size_t UsbConnection::wantedBytes(std::size_t asked) {
  const std::size_t space = mConversation.imageSpace().size();
  const std::size_t whole = space > asked ? (space - asked) / kPacket * kPacket : 0;
  return std::clamp(whole, kPacket, kMaxRead);
}

void UsbConnection::received(std::span<const std::uint8_t> bytes) {
  mHeard = true;
  mConversation.received(bytes);
}

void UsbConnection::allSent() {
  if (std::exchange(mStallPending, false)) mPipes.stall();
}

void UsbConnection::lost(const std::string& reason) {
  if (std::exchange(mLost, true)) return;
  mConversation.lost(reason);
}

void UsbConnection::send(std::span<const std::uint8_t> bytes) {
  if (mLost || mPlugPulled) return;
  if (mStallTimer) {
    mHeldBack.emplace_back(bytes.begin(), bytes.end());
    return;
  }
  if (mPrinter.faults().find(FaultKind::ZeroPackets)) mPipes.send({});
  mPipes.send(bytes);
}

void UsbConnection::stopReading() { mPipes.stopReading(); }

void UsbConnection::close() {
  mPipes.stopReading();
  // A printer that restarts leaves by itself.
  if (!mLost && !mPrinter.wantsRestart()) mPullPlug(kFarewell, kPlugIsOut);
}

void UsbConnection::reset() {
  mPipes.stopReading();
  mPlugPulled = true;
  if (!mLost) mPullPlug({}, kPlugIsOut);
}

void UsbConnection::perform(const Fault& fault) {
  if (fault.kind == FaultKind::Unplug) {
    std::optional<std::chrono::milliseconds> back;
    if (fault.number > 0) back = std::chrono::milliseconds(fault.number);
    mPlugPulled = true;
    mPullPlug({}, back);
  }
  if (fault.kind == FaultKind::Stall) {
    if (fault.number > 0) {
      stallAfter(std::chrono::milliseconds(fault.number));
    } else {
      stall();
    }
  }
}

void UsbConnection::stall() {
  // A pipe with something to say cannot be halted.
  mStallPending = !mPipes.isIdle();
  if (!mStallPending) mPipes.stall();
}

void UsbConnection::stallAfter(std::chrono::milliseconds delay) {
  mStallTimer = mPrinter.scheduler().after(delay, [this] {
    mStallTimer.reset();
    stall();
    for (const std::vector<std::uint8_t>& bytes : std::exchange(mHeldBack, {})) send(bytes);
  });
}

}  // namespace virtualprinter
