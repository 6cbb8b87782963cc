#include "PrinterProtocol.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Journal.h"

namespace virtualprinter {
namespace {

constexpr std::string_view kUel = "\x1b%-12345X";
constexpr std::string_view kStatusOff = "\x1b%-12345X@PJL USTATUSOFF\n\x1b%-12345X";
constexpr std::string_view kEnterAcl = "@PJL ENTER LANGUAGE=ACL\r\n";

std::vector<std::uint8_t> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

void append(std::vector<std::uint8_t>& bytes, std::initializer_list<std::uint8_t> more) {
  bytes.insert(bytes.end(), more);
}

// UEL, enter ACL, prefix and command: what every ACL request begins with, 38 bytes.
std::vector<std::uint8_t> aclRequest(std::uint8_t command) {
  std::vector<std::uint8_t> bytes = bytesOf(kUel);
  const std::vector<std::uint8_t> enter = bytesOf(kEnterAcl);
  bytes.insert(bytes.end(), enter.begin(), enter.end());
  append(bytes, {0x00, 0xac, 0x00, command});
  return bytes;
}

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

std::string hexByte(std::uint8_t byte) {
  return "0x" + Journal::hex(std::span<const std::uint8_t>(&byte, 1));
}

}  // namespace

// A control message: its bytes, and the offsets at which any byte may stand.
struct PrinterProtocol::Form {
  Message message;
  std::vector<std::uint8_t> bytes;
  std::vector<std::size_t> open;

  bool allows(std::size_t offset, std::uint8_t byte) const {
    return bytes[offset] == byte || std::find(open.begin(), open.end(), offset) != open.end();
  }
};

std::string_view messageName(Message message) {
  switch (message) {
    case Message::StatusOff:
      return "status-off";
    case Message::IdRequest:
      return "id-request";
    case Message::BurnHeader:
      return "burn-header";
    case Message::Image:
      return "image";
    case Message::Uel:
      return "uel";
  }
  return "";
}

const PrinterProtocol::Form& PrinterProtocol::statusOff() {
  static const Form form{Message::StatusOff, bytesOf(kStatusOff), {}};
  return form;
}

const PrinterProtocol::Form& PrinterProtocol::idRequest() {
  static const Form form = [] {
    std::vector<std::uint8_t> bytes = aclRequest(6);
    bytes.resize(50);
    const std::vector<std::uint8_t> closing = bytesOf(kUel);
    bytes.insert(bytes.end(), closing.begin(), closing.end());
    return Form{Message::IdRequest, bytes, {}};
  }();
  return form;
}

const PrinterProtocol::Form& PrinterProtocol::burnHeader() {
  static const Form form = [] {
    std::vector<std::uint8_t> bytes = aclRequest(15);
    append(bytes, {0x04, 0x00});  // 38: always 1024
    bytes.resize(50);             // 40: checksum, 42: zero, 46: length
    return Form{Message::BurnHeader, bytes, {40, 41, 46, 47, 48, 49}};
  }();
  return form;
}

const PrinterProtocol::Form& PrinterProtocol::uel() {
  static const Form form{Message::Uel, bytesOf(kUel), {}};
  return form;
}

PrinterProtocol::PrinterProtocol(const Limits& limits) : mLimits(limits) {}

std::vector<const PrinterProtocol::Form*> PrinterProtocol::expectedForms() const {
  switch (mState) {
    case State::AtStart:
      return {&statusOff()};
    case State::Silenced:
      return {&idRequest()};
    case State::Identified:
      if (mLimits.repeats) return {&burnHeader(), &statusOff()};
      return {&burnHeader()};
    case State::Closing:
      return {&uel()};
    case State::Done:
      if (mLimits.repeats) return {&statusOff()};
      return {};
    case State::Image:
    case State::Broken:
      return {};
  }
  return {};
}

std::optional<ProtocolEvent> PrinterProtocol::feed(std::span<const std::uint8_t>& bytes) {
  std::optional<ProtocolEvent> event;
  while (!bytes.empty() && !event) {
    if (mState == State::Broken) {
      mStreamOffset += bytes.size();
      bytes = {};
    } else if (mState == State::Image) {
      const std::span<std::uint8_t> space = imageSpace();
      const std::size_t count = std::min(space.size(), bytes.size());
      std::memcpy(space.data(), bytes.data(), count);
      bytes = bytes.subspan(count);
      event = imageReceived(count);
    } else {
      event = takeControlByte(bytes.front());
      bytes = bytes.subspan(1);
    }
  }
  return event;
}

std::optional<ProtocolEvent> PrinterProtocol::takeControlByte(std::uint8_t byte) {
  if (mMessage.empty()) mCandidates = expectedForms();
  std::vector<const Form*> remaining;
  for (const Form* form : mCandidates) {
    if (form->allows(mMessage.size(), byte)) remaining.push_back(form);
  }
  if (remaining.empty()) return violation(byte);
  mCandidates = remaining;
  mMessage.push_back(byte);
  ++mStreamOffset;
  if (mCandidates.size() > 1) return std::nullopt;
  const Form& form = *mCandidates.front();
  if (mMessage.size() == form.bytes.size()) return finishMessage();
  if (mMessage.size() == (form.bytes.size() + 1) / 2) return HalfReceived{form.message};
  return std::nullopt;
}

std::optional<ProtocolEvent> PrinterProtocol::finishMessage() {
  const Message message = mCandidates.front()->message;
  switch (message) {
    case Message::StatusOff:
      mState = State::Silenced;
      break;
    case Message::IdRequest:
      mState = State::Identified;
      break;
    case Message::BurnHeader:
      if (auto wrong = readBurnHeader()) return wrong;
      mState = State::Image;
      break;
    case Message::Uel:
      mState = State::Done;
      break;
    case Message::Image:  // is not a control message
      break;
  }
  mLastMessage = messageName(message);
  Received received{message, std::move(mMessage)};
  mMessage.clear();
  return received;
}

std::optional<ProtocolEvent> PrinterProtocol::readBurnHeader() {
  const std::span<const std::uint8_t> header = mMessage;
  mBurnRequest.checksum = static_cast<std::uint16_t>(bigEndian(header.subspan(40, 2)));
  mBurnRequest.length = bigEndian(header.subspan(46, 4));
  const std::size_t length = mBurnRequest.length;
  if (length == 0 || length > mLimits.flashSize) {
    mState = State::Broken;
    return Violation{"burn-header",
                     46,
                     mStreamOffset - 4,
                     {},
                     mMessage[46],
                     "burn-header, offset 46: the image length is " + std::to_string(length) +
                         ", expected 1 to " + std::to_string(mLimits.flashSize)};
  }
  mImage = ImageBuffer(length);
  mImageReceived = 0;
  return std::nullopt;
}

Violation PrinterProtocol::violation(std::uint8_t got) {
  Violation wrong;
  wrong.offset = mMessage.size();
  wrong.streamOffset = mStreamOffset;
  wrong.got = got;
  std::string expected;
  for (const Form* form : mCandidates) {
    const std::uint8_t byte = form->bytes[wrong.offset];
    if (!wrong.message.empty()) wrong.message += " or ";
    wrong.message += messageName(form->message);
    if (std::find(wrong.expected.begin(), wrong.expected.end(), byte) != wrong.expected.end()) {
      continue;
    }
    wrong.expected.push_back(byte);
    if (!expected.empty()) expected += " or ";
    expected += hexByte(byte);
  }
  if (mCandidates.empty()) {
    wrong.message = "nothing";
    expected = "no byte after the closing UEL";
  }
  wrong.text = wrong.message + ", offset " + std::to_string(wrong.offset) + " (byte " +
               std::to_string(wrong.streamOffset) + " of the stream): expected " + expected +
               ", got " + hexByte(got);
  mState = State::Broken;
  ++mStreamOffset;
  return wrong;
}

std::span<std::uint8_t> PrinterProtocol::imageSpace() {
  if (mState != State::Image) return {};
  const std::size_t size = mImage.bytes().size();
  std::size_t end = size;
  for (const std::size_t mark : {size - 1, (size + 1) / 2, std::size_t{1}}) {
    if (mImageReceived < mark) end = mark;
  }
  return mImage.bytes().subspan(mImageReceived, end - mImageReceived);
}

std::optional<ProtocolEvent> PrinterProtocol::imageReceived(std::size_t count) {
  mStreamOffset += count;
  mImageReceived += count;
  const std::size_t size = mImage.bytes().size();
  if (mImageReceived == size) {
    mState = State::Closing;
    mLastMessage = messageName(Message::Image);
    return Received{Message::Image, {}};
  }
  if (count == 0) return std::nullopt;
  if (mImageReceived == (size + 1) / 2) return HalfReceived{Message::Image};
  if (mImageReceived == 1) return ImageBegun{};
  if (mImageReceived == size - 1) return ImageNearlyIn{};
  return std::nullopt;
}

ImageBuffer PrinterProtocol::takeImage() { return std::exchange(mImage, ImageBuffer()); }

std::string PrinterProtocol::position() const {
  if (mState == State::Broken) return "after a violation";
  if (mState == State::Image) {
    return "in image at " + std::to_string(mImageReceived) + " of " +
           std::to_string(mImage.bytes().size());
  }
  if (!mMessage.empty()) {
    const Form& form = *mCandidates.front();
    return "in " + std::string(messageName(form.message)) + " at " +
           std::to_string(mMessage.size()) + " of " + std::to_string(form.bytes.size());
  }
  return mLastMessage.empty() ? "before status-off" : "after " + mLastMessage;
}

}  // namespace virtualprinter
