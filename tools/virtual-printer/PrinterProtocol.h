// Reads what a host sends and checks every byte of it against the protocol: status off, device-ID
// request, burn header, image, closing UEL, in this order and nothing else. Knows neither sockets
// nor time nor replies; a conversation feeds it and acts on the events. docs/wire-protocol.md has
// the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "FirmwareImage.h"

namespace virtualprinter {

enum class Message { StatusOff, IdRequest, BurnHeader, Image, Uel };

std::string_view messageName(Message message);

struct BurnRequest {
  std::uint16_t checksum = 0;
  std::uint32_t length = 0;
};

// The first half of the message is in, and checked.
struct HalfReceived {
  Message message;
};

// The first byte of an image of at least three is in, or all of it but its last byte.
struct ImageBegun {};
struct ImageNearlyIn {};

// The message is in, and correct. `bytes` are its bytes, but for the image.
struct Received {
  Message message;
  std::vector<std::uint8_t> bytes;
};

// The host sent something wrong. Nothing is read after that.
struct Violation {
  std::string message;         // the message that was expected, "nothing" after the last one
  std::size_t offset;          // of the byte in that message
  std::uint64_t streamOffset;  // of the byte in the stream
  std::vector<std::uint8_t> expected;  // what may stand there; empty when that is not one byte
  std::uint8_t got;
  std::string text;  // all of that in a sentence
};

using ProtocolEvent = std::variant<HalfReceived, ImageBegun, ImageNearlyIn, Received, Violation>;

class PrinterProtocol {
 public:
  struct Limits {
    std::size_t flashSize;  // the longest image
    bool repeats = false;   // after a device ID or a burn the host may start again with status off:
                            // true on USB, where a stream has no end of its own
  };

  explicit PrinterProtocol(const Limits& limits);

  // Takes bytes from the front of `bytes` up to the next event, or all of them. To be called until
  // `bytes` is empty.
  std::optional<ProtocolEvent> feed(std::span<const std::uint8_t>& bytes);

  // While the image arrives: where its next bytes may be stored without a copy. Otherwise empty.
  // The space may end before the image does.
  std::span<std::uint8_t> imageSpace();

  // `count` bytes have been stored at the front of imageSpace().
  std::optional<ProtocolEvent> imageReceived(std::size_t count);

  // Of the burn header that was received last.
  const BurnRequest& burnRequest() const { return mBurnRequest; }

  // The image, once it is in. Leaves an empty one.
  ImageBuffer takeImage();

  std::uint64_t bytesReceived() const { return mStreamOffset; }

  // Where the stream stands: "before status-off", "in image at 1000 of 4096", "after uel".
  std::string position() const;

 private:
  struct Form;

  enum class State { AtStart, Silenced, Identified, Image, Closing, Done, Broken };

  std::vector<const Form*> expectedForms() const;
  std::optional<ProtocolEvent> takeControlByte(std::uint8_t byte);
  std::optional<ProtocolEvent> finishMessage();
  std::optional<ProtocolEvent> readBurnHeader();
  Violation violation(std::uint8_t got);
  static const Form& statusOff();
  static const Form& idRequest();
  static const Form& burnHeader();
  static const Form& uel();

  Limits mLimits;
  State mState = State::AtStart;
  std::uint64_t mStreamOffset = 0;
  std::vector<std::uint8_t> mMessage;    // the control message that is arriving
  std::vector<const Form*> mCandidates;  // what it may still become
  std::string mLastMessage;              // for position()
  BurnRequest mBurnRequest;
  ImageBuffer mImage;
  std::size_t mImageReceived = 0;
};

}  // namespace virtualprinter
