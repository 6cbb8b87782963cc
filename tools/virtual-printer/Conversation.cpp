#include "Conversation.h"

#include <algorithm>
#include <utility>

namespace virtualprinter {
namespace {

constexpr std::uint16_t kPrefix = 0x00ac;
constexpr std::uint16_t kIdCommand = 6;
constexpr std::uint16_t kBurnCommand = 15;
constexpr std::size_t kResponseSize = 16;
constexpr auto kPause = std::chrono::milliseconds(20);

void put16(std::span<std::uint8_t> at, std::size_t value) {
  at[0] = static_cast<std::uint8_t>(value >> 8);
  at[1] = static_cast<std::uint8_t>(value);
}

std::uint16_t numberOr(const Fault* fault, std::uint16_t otherwise) {
  return fault ? static_cast<std::uint16_t>(fault->number) : otherwise;
}

Step middleOf(Message message) {
  switch (message) {
    case Message::StatusOff:
      return Step::MidStatusOff;
    case Message::IdRequest:
      return Step::MidIdRequest;
    case Message::BurnHeader:
      return Step::MidBurnHeader;
    case Message::Image:
      return Step::MidImage;
    case Message::Uel:
      return Step::MidUel;
  }
  return Step::Connect;
}

Step endOf(Message message) {
  switch (message) {
    case Message::StatusOff:
      return Step::StatusOff;
    case Message::IdRequest:
      return Step::IdRequest;
    case Message::BurnHeader:
      return Step::BurnHeader;
    case Message::Image:
      return Step::Image;
    case Message::Uel:
      return Step::Uel;
  }
  return Step::Connect;
}

}  // namespace

Conversation::Conversation(Printer& printer, Connection& connection, std::string peer, bool repeats)
    : mPrinter(printer),
      mConnection(connection),
      mPeer(std::move(peer)),
      mProtocol({printer.settings().flashSize, repeats}) {}

Conversation::~Conversation() { abandon(); }

void Conversation::begin() {
  mNumber = mPrinter.beginConversation();
  mFaults = &mPrinter.faultsOf(mNumber);
  Journal::Fields fields = entry();
  fields["peer"] = mPeer;
  mPrinter.journal().write("connected", fields);
  reach(Step::Connect);
}

Journal::Fields Conversation::entry() const { return {{"connection", mNumber}}; }

void Conversation::received(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty() && !mDeaf && !mEnded) {
    if (const auto event = mProtocol.feed(bytes)) handle(*event);
  }
}

std::span<std::uint8_t> Conversation::imageSpace() {
  if (mDeaf || mEnded) return {};
  return mProtocol.imageSpace();
}

void Conversation::imageReceived(std::size_t count) {
  if (const auto event = mProtocol.imageReceived(count)) handle(*event);
}

void Conversation::handle(const ProtocolEvent& event) {
  if (const auto* half = std::get_if<HalfReceived>(&event)) reach(middleOf(half->message));
  if (std::holds_alternative<ImageBegun>(event)) reach(Step::FirstImageByte);
  if (std::holds_alternative<ImageNearlyIn>(event)) reach(Step::LastImageByte);
  if (const auto* whole = std::get_if<Received>(&event)) handleMessage(*whole);
  if (const auto* wrong = std::get_if<Violation>(&event)) handleViolation(*wrong);
  pump();
}

void Conversation::handleMessage(const Received& received) {
  Journal::Fields fields = entry();
  fields["message"] = messageName(received.message);
  if (received.message == Message::Image) {
    fields["bytes"] = mProtocol.burnRequest().length;
  } else {
    fields["bytes"] = received.bytes.size();
    fields["hex"] = Journal::hex(received.bytes);
  }
  mPrinter.journal().write("received", fields);
  reach(endOf(received.message));
  if (mEnded || mDeaf) return;
  if (received.message == Message::IdRequest) answerIdRequest();
  if (received.message == Message::Uel) startBurn();
}

void Conversation::handleViolation(const Violation& violation) {
  Journal::Fields fields = entry();
  fields["message"] = violation.message;
  fields["offset"] = violation.offset;
  fields["stream_offset"] = violation.streamOffset;
  fields["expected"] = Journal::hex(violation.expected);
  fields["got"] = Journal::hex(std::span<const std::uint8_t>(&violation.got, 1));
  fields["text"] = violation.text;
  mPrinter.journal().write("violation", fields);
  mPrinter.countViolation();
  mConnection.close();
  end("printer");
}

void Conversation::reach(Step step) {
  for (const Fault* fault : mFaults->at(step)) {
    if (mEnded || mSilent) return;
    Journal::Fields fields = entry();
    fields["fault"] = fault->text;
    mPrinter.journal().write("fault", fields);
    strike(*fault);
  }
}

void Conversation::strike(const Fault& fault) {
  switch (fault.kind) {
    case FaultKind::Close:
      mConnection.close();
      end("printer");
      break;
    case FaultKind::Reset:
      mConnection.reset();
      end("printer");
      break;
    case FaultKind::Hang:
      mDeaf = true;
      mSilent = true;
      mConnection.stopReading();
      break;
    case FaultKind::Silence:
      mSilent = true;
      break;
    case FaultKind::Delay:
      mOutput.push_front({std::chrono::milliseconds(fault.number), {}, {}, {}});
      break;
    case FaultKind::Extra:
      perform({{}, fault.bytes, "extra", {}});
      break;
    case FaultKind::Shutdown:
      mSilent = true;
      perform(fault);
      break;
    default:
      perform(fault);
      break;
  }
}

void Conversation::perform(const Fault& fault) {
  mConnection.perform(fault);
  Journal::Fields fields = entry();
  fields["fault"] = fault.text;
  mPrinter.journal().write("performed", fields);
}

void Conversation::answerIdRequest() {
  const std::vector<std::uint8_t> id = deviceIdBytes();
  std::vector<std::uint8_t> head = response(Step::IdResponse, kIdCommand, 1, id.size());
  const Fault* split = mFaults->find(FaultKind::Split, Step::IdResponse);
  if (split || mFaults->find(FaultKind::Merge)) {
    head.insert(head.end(), id.begin(), id.end());
    say("id-response and device-id", Step::MidDeviceId, Step::DeviceId, split, head);
  } else {
    say("id-response", Step::MidIdResponse, Step::IdResponse, nullptr, head);
    say("device-id", Step::MidDeviceId, Step::DeviceId, nullptr, id);
  }
}

std::vector<std::uint8_t> Conversation::deviceIdBytes() const {
  const std::string text = mPrinter.deviceId(*mFaults);
  std::vector<std::uint8_t> bytes(2 + text.size());
  std::copy(text.begin(), text.end(), bytes.begin() + 2);
  put16(bytes, bytes.size());
  if (const Fault* header = mFaults->find(FaultKind::IdHeader)) put16(bytes, header->number);
  if (const Fault* length = mFaults->find(FaultKind::DataLength)) {
    bytes.resize(std::min<std::size_t>(bytes.size(), length->number));
  }
  return bytes;
}

std::vector<std::uint8_t> Conversation::response(Step reply, std::uint16_t command,
                                                 std::uint16_t status,
                                                 std::size_t dataLength) const {
  std::vector<std::uint8_t> bytes(kResponseSize);
  const std::span<std::uint8_t> fields = bytes;
  put16(fields, numberOr(mFaults->find(FaultKind::WrongPrefix, reply), kPrefix));
  put16(fields.subspan(2), numberOr(mFaults->find(FaultKind::WrongCommand, reply), command));
  put16(fields.subspan(4), numberOr(mFaults->find(FaultKind::WrongStatus, reply), status));
  const Fault* length = command == kIdCommand ? mFaults->find(FaultKind::DataLength) : nullptr;
  put16(fields.subspan(6), length ? length->number : dataLength);
  return bytes;
}

void Conversation::startBurn() {
  mBurning = true;
  mPrinter.burn(mProtocol.takeImage(), mProtocol.burnRequest(), *mFaults,
                [this](std::uint16_t status) { answerBurn(status); });
}

void Conversation::answerBurn(std::uint16_t status) {
  mBurning = false;
  reach(Step::Burned);
  if (mEnded) return;
  const Fault* split = mFaults->find(FaultKind::Split, Step::BurnReply);
  say("burn-reply", Step::MidBurnReply, Step::BurnReply, split,
      response(Step::BurnReply, kBurnCommand, status, 0));
  pump();
}

// Queues the bytes in the pieces that the plan asks for. `middle` is reached with the piece that
// brings the first half, if another one follows.
void Conversation::say(const std::string& message, Step middle, Step whole, const Fault* split,
                       const std::vector<std::uint8_t>& bytes) {
  const std::size_t half = (bytes.size() + 1) / 2;
  std::size_t piece = bytes.size();
  std::chrono::microseconds pause{0};
  if (const Fault* dribble = mFaults->find(FaultKind::Dribble, whole)) {
    piece = dribble->pace->size;
    pause = dribble->pace->period;
  } else if (split) {
    piece = split->number;
    pause = kPause;
  } else if (!mFaults->at(middle).empty()) {
    piece = half;
  }
  std::size_t begin = 0;
  while (begin < bytes.size()) {
    const std::size_t count = std::min(std::max<std::size_t>(piece, 1), bytes.size() - begin);
    const std::size_t end = begin + count;
    Output output;
    if (begin > 0) output.delay = pause;
    output.bytes.assign(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                        bytes.begin() + static_cast<std::ptrdiff_t>(end));
    output.message = message;
    if (begin < half && end >= half && end < bytes.size()) output.step = middle;
    mOutput.push_back(std::move(output));
    begin = end;
    if (split) piece = bytes.size();
  }
  mOutput.push_back({{}, {}, {}, whole});
}

void Conversation::pump() {
  if (mPumping) return;
  mPumping = true;
  while (!mOutput.empty() && !mOutputTimer && !mEnded) {
    const Output next = std::move(mOutput.front());
    mOutput.pop_front();
    if (next.delay.count() == 0) {
      perform(next);
      continue;
    }
    mOutputTimer = mPrinter.scheduler().after(next.delay, [this, next] {
      mOutputTimer.reset();
      perform(next);
      pump();
    });
  }
  mPumping = false;
  finishIfIdle();
}

void Conversation::perform(const Output& output) {
  if (!output.bytes.empty() && !mSilent) {
    Journal::Fields fields = entry();
    fields["message"] = output.message;
    fields["bytes"] = output.bytes.size();
    fields["hex"] = Journal::hex(output.bytes);
    mPrinter.journal().write("sent", fields);
    mBytesSent += output.bytes.size();
    mConnection.send(output.bytes);
  }
  if (!output.step) return;
  reach(*output.step);
  if (*output.step != Step::BurnReply || mEnded || mDeaf || !mPrinter.wantsRestart()) return;
  mHangUpTimer = mPrinter.scheduler().after(mPrinter.settings().hangUpTime, [this] { hangUp(); });
}

void Conversation::hangUp() {
  mHangUpTimer.reset();
  mConnection.close();
  end("printer");
}

void Conversation::hostFinished() {
  mHostFinished = true;
  finishIfIdle();
}

void Conversation::lost(const std::string& reason) {
  if (mEnded) return;
  Journal::Fields fields = entry();
  fields["reason"] = reason;
  mPrinter.journal().write("lost", fields);
  mSilent = true;
  mOutput.clear();
  mOutputTimer.reset();
  hostFinished();
}

void Conversation::finishIfIdle() {
  if (!mHostFinished || mEnded || mBurning || mOutputTimer || !mOutput.empty()) return;
  mConnection.close();
  end("host");
}

void Conversation::abandon() {
  if (mNumber == 0 || mEnded) return;
  if (mBurning) mPrinter.abandonBurn();
  end("printer");
}

void Conversation::end(const std::string& by) {
  mEnded = true;
  mOutput.clear();
  mOutputTimer.reset();
  mHangUpTimer.reset();
  Journal::Fields fields = entry();
  fields["by"] = by;
  fields["received"] = mProtocol.bytesReceived();
  fields["sent"] = mBytesSent;
  fields["position"] = mProtocol.position();
  mPrinter.journal().write("closed", fields);
  mPrinter.endConversation();
}

}  // namespace virtualprinter
