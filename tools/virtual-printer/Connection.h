// The printer's end of one byte stream, as a conversation sees it: a TCP connection, or the bulk
// pipes of a USB interface. Whoever implements it owns the conversation too, and tells it what
// arrives (Conversation.h). Nothing here calls back into the conversation from inside a call.
#pragma once

#include <cstdint>
#include <span>

namespace virtualprinter {

struct Fault;

class Connection {
 public:
  virtual ~Connection() = default;

  // Queues the bytes, in order. One call is one segment, or one transfer, of its own.
  virtual void send(std::span<const std::uint8_t> bytes) = 0;

  // Stops taking bytes from the host, for good. The connection stays open.
  virtual void stopReading() = 0;

  // The last calls that a conversation makes. close() lets go once the queue is empty, reset() at
  // once and as rudely as the medium can. With an empty queue the host can tell when they return:
  // the journal says so next.
  virtual void close() = 0;
  virtual void reset() = 0;

  // Executes a fault that only this medium has (shutdown on TCP; unplug, stall on USB).
  virtual void perform(const Fault& fault) = 0;
};

}  // namespace virtualprinter
