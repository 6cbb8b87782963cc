// The conversation with one host over the printer interface of the gadget: from the moment the host
// configures the interface until it does so anew, or is gone. Made and destroyed by the gadget,
// which feeds it and pulls the plug for it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Connection.h"
#include "Conversation.h"
#include "Scheduler.h"
#include "UsbPipes.h"

namespace virtualprinter {

class UsbConnection : private Connection {
 public:
  // Pulls the plug after the first time, and puts it back after the second, if any. Not from inside
  // the call.
  using PullPlug = std::function<void(std::chrono::milliseconds after,
                                      std::optional<std::chrono::milliseconds> back)>;

  UsbConnection(Printer& printer, UsbPipes& pipes, PullPlug pullPlug);
  ~UsbConnection() override;

  void begin() { mConversation.begin(); }

  // How much to read behind `asked` bytes, so that every step of the conversation is seen when it
  // is reached.
  std::size_t wantedBytes(std::size_t asked);
  void received(std::span<const std::uint8_t> bytes);
  void allSent();

  // Nothing has been said yet: whoever comes may take up this conversation.
  bool isFresh() const { return !mHeard && !mLost && !mConversation.ended(); }

  // The host has gone. What was begun still comes to its end.
  void lost(const std::string& reason);
  void abandon() { mConversation.abandon(); }

 private:
  void send(std::span<const std::uint8_t> bytes) override;
  void stopReading() override;
  void close() override;
  void reset() override;
  void perform(const Fault& fault) override;

  void stall();
  void stallAfter(std::chrono::milliseconds delay);

  Printer& mPrinter;
  UsbPipes& mPipes;
  PullPlug mPullPlug;
  Conversation mConversation;
  bool mHeard = false;
  bool mLost = false;
  bool mPlugPulled = false;
  bool mStallPending = false;
  std::unique_ptr<Scheduler::Timer> mStallTimer;
  std::vector<std::vector<std::uint8_t>> mHeldBack;  // to be said behind the stall
};

}  // namespace virtualprinter
