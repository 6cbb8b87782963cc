// What the printer says to one host over one connection: it checks what arrives, answers, burns,
// and strikes with the faults of the plan. The medium that owns the connection owns the
// conversation too, feeds it and destroys it when it has ended; see Connection.h.
//
// A medium constructs the connection and the conversation, calls begin(), then received() (or
// imageSpace() and imageReceived()) as bytes come in, hostFinished() when no more will come, lost()
// when the connection is broken, abandon() when the printer leaves. The conversation ends, at any
// time, with Connection::close() or reset(), or with abandon(); nothing more is asked of the
// connection then, and both can be destroyed, though not from inside that call.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Connection.h"
#include "FaultPlan.h"
#include "Printer.h"
#include "PrinterProtocol.h"

namespace virtualprinter {

class Conversation {
 public:
  // `peer` says in the journal who is at the other end. With `repeats`, the host may start again on
  // the same stream (USB).
  Conversation(Printer& printer, Connection& connection, std::string peer, bool repeats = false);
  ~Conversation();
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  void begin();

  void received(std::span<const std::uint8_t> bytes);

  // As in PrinterProtocol; a medium may use them to save the copy of the image.
  std::span<std::uint8_t> imageSpace();
  void imageReceived(std::size_t count);

  // What was begun still comes to its end: a burn, a reply.
  void hostFinished();
  void lost(const std::string& reason);

  // Drops what was begun.
  void abandon();

  bool ended() const { return mEnded; }

  // What it suffers; known once it has begun.
  const FaultPlan& faults() const { return *mFaults; }

 private:
  // One thing to do when everything before it is done: wait, then send bytes, then reach a step.
  struct Output {
    std::chrono::microseconds delay{0};
    std::vector<std::uint8_t> bytes;
    std::string message;
    std::optional<Step> step;
  };

  void handle(const ProtocolEvent& event);
  void handleMessage(const Received& received);
  void handleViolation(const Violation& violation);
  void reach(Step step);
  void strike(const Fault& fault);
  void perform(const Fault& fault);
  void answerIdRequest();
  void startBurn();
  void answerBurn(std::uint16_t status);
  std::vector<std::uint8_t> response(Step reply, std::uint16_t command, std::uint16_t status,
                                     std::size_t dataLength) const;
  std::vector<std::uint8_t> deviceIdBytes() const;
  void say(const std::string& message, Step middle, Step whole, const Fault* split,
           const std::vector<std::uint8_t>& bytes);
  void pump();
  void perform(const Output& output);
  void finishIfIdle();
  void hangUp();
  void end(const std::string& by);
  Journal::Fields entry() const;

  Printer& mPrinter;
  Connection& mConnection;
  std::string mPeer;
  unsigned mNumber = 0;
  const FaultPlan* mFaults = nullptr;
  PrinterProtocol mProtocol;
  std::deque<Output> mOutput;
  std::unique_ptr<Scheduler::Timer> mOutputTimer;
  std::unique_ptr<Scheduler::Timer> mHangUpTimer;
  std::uint64_t mBytesSent = 0;
  bool mPumping = false;
  bool mSilent = false;
  bool mDeaf = false;
  bool mBurning = false;
  bool mHostFinished = false;
  bool mEnded = false;
};

}  // namespace virtualprinter
