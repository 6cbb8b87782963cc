// A printer on a bench: its time is turned by hand, its connection and its surroundings record what
// they are asked, its journal is a list of lines without their times.
#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Conversation.h"
#include "HostBytes.h"
#include "Printer.h"

class HandTurnedClock : public virtualprinter::Scheduler {
 public:
  std::unique_ptr<Timer> after(std::chrono::microseconds delay,
                               std::function<void()> fired) override;

  // Fires what becomes due, in the order of the times.
  void advance(std::chrono::microseconds time);

  std::size_t pending() const { return mEntries.size(); }

 private:
  struct Entry {
    std::chrono::microseconds due;
    unsigned long number;
    std::function<void()> fired;
  };
  class Handle;

  std::vector<Entry> mEntries;
  std::chrono::microseconds mNow{0};
  unsigned long mLastNumber = 0;
};

// "send 00ac…", "stop reading", "close", "reset", "perform unplug@uel".
class RecordingConnection : public virtualprinter::Connection {
 public:
  void send(std::span<const std::uint8_t> bytes) override;
  void stopReading() override { calls.push_back("stop reading"); }
  void close() override { calls.push_back("close"); }
  void reset() override { calls.push_back("reset"); }
  void perform(const virtualprinter::Fault& fault) override;

  std::vector<std::string> take() { return std::exchange(calls, {}); }

  std::vector<std::string> calls;
};

// Notes arrivals and departures in the journal, between its other lines.
class RecordingAttachment : public virtualprinter::Attachment {
 public:
  RecordingAttachment(std::string name, std::vector<std::string>& lines)
      : mName(std::move(name)), mLines(lines) {}
  void arrive() override { mLines.push_back(mName + " arrives"); }
  void leave() override { mLines.push_back(mName + " leaves"); }

 private:
  std::string mName;
  std::vector<std::string>& mLines;
};

class PrinterBench : public testing::Test {
 protected:
  PrinterBench();
  ~PrinterBench() override;

  // To be called, if at all, before the first conversation.
  void fault(const std::string& text) { mFaults.add(text); }

  virtualprinter::Printer& printer();

  // A new connection, and a conversation that has begun.
  virtualprinter::Conversation& connect(bool repeats = false);

  // All at once, or byte by byte.
  void hostSends(const Bytes& bytes);
  void hostSendsSlowly(const Bytes& bytes);

  // Everything up to the closing UEL; burning has begun then.
  void hostUpdates();

  std::vector<std::string> takeCalls() { return mConnection.take(); }
  std::vector<std::string> takeJournal() { return std::exchange(mLines, {}); }
  void advance(std::chrono::milliseconds time) { mClock.advance(time); }

  virtualprinter::PrinterSettings mSettings;
  virtualprinter::FaultPlan mFaults;
  HandTurnedClock mClock;
  virtualprinter::Journal mJournal;
  std::vector<std::string> mLines;
  RecordingConnection mConnection;
  std::unique_ptr<virtualprinter::Printer> mPrinter;
  std::unique_ptr<virtualprinter::Conversation> mConversation;
};

// The replies of the bench's printer as hexadecimal text: the response to the device-ID request,
// the device ID "MFG:V;MDL:K;FWVER:1;" with its length, the reply to a good burn.
inline const std::string kIdResponseHex = "00ac0006000100160000000000000000";
inline const std::string kDeviceIdHex = "00164d46473a563b4d444c3a4b3b46575645523a313b";
inline const std::string kBurnReplyHex = "00ac000f000100000000000000000000";
