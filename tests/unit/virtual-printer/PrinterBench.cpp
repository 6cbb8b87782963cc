#include "PrinterBench.h"

#include <algorithm>

using namespace virtualprinter;

class HandTurnedClock::Handle : public Scheduler::Timer {
 public:
  Handle(HandTurnedClock& clock, unsigned long number) : mClock(clock), mNumber(number) {}
  ~Handle() override {
    std::erase_if(mClock.mEntries, [&](const Entry& entry) { return entry.number == mNumber; });
  }

 private:
  HandTurnedClock& mClock;
  unsigned long mNumber;
};

std::unique_ptr<Scheduler::Timer> HandTurnedClock::after(std::chrono::microseconds delay,
                                                         std::function<void()> fired) {
  mEntries.push_back({mNow + delay, ++mLastNumber, std::move(fired)});
  return std::make_unique<Handle>(*this, mLastNumber);
}

void HandTurnedClock::advance(std::chrono::microseconds time) {
  const auto end = mNow + time;
  for (;;) {
    const auto next =
        std::min_element(mEntries.begin(), mEntries.end(), [](const Entry& a, const Entry& b) {
          return std::tie(a.due, a.number) < std::tie(b.due, b.number);
        });
    if (next == mEntries.end() || next->due > end) break;
    mNow = next->due;
    const auto fired = std::move(next->fired);
    mEntries.erase(next);
    fired();
  }
  mNow = end;
}

void RecordingConnection::send(std::span<const std::uint8_t> bytes) {
  calls.push_back("send " + Journal::hex(bytes));
}

void RecordingConnection::perform(const Fault& fault) { calls.push_back("perform " + fault.text); }

PrinterBench::PrinterBench() {
  mSettings.deviceId = "MFG:V;MDL:K;FWVER:1;";
  mSettings.burnTime = std::chrono::milliseconds(500);
  mSettings.returnTime = std::chrono::milliseconds(3000);
  mSettings.hangUpTime = std::chrono::milliseconds(1000);
  mJournal.addSink([this](const Journal::Fields& entry) {
    mLines.push_back(Journal::toText(entry).substr(std::string("hh:mm:ss.mmm ").size()));
  });
}

PrinterBench::~PrinterBench() = default;

Printer& PrinterBench::printer() {
  if (!mPrinter) mPrinter = std::make_unique<Printer>(mSettings, mFaults, mClock, mJournal);
  return *mPrinter;
}

Conversation& PrinterBench::connect(bool repeats) {
  mConversation.reset();
  mConversation = std::make_unique<Conversation>(printer(), mConnection, "host", repeats);
  mConversation->begin();
  return *mConversation;
}

void PrinterBench::hostSends(const Bytes& bytes) { mConversation->received(bytes); }

void PrinterBench::hostSendsSlowly(const Bytes& bytes) {
  for (const std::uint8_t byte : bytes) mConversation->received(std::span(&byte, 1));
}

void PrinterBench::hostUpdates() {
  hostSends(kStatusOff);
  hostSends(kIdRequest);
  hostSends(kBurnHeader);
  hostSends(kImage);
  hostSends(kUel);
}
