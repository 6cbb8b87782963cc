#include "FaultPlan.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "Wrap.h"

namespace virtualprinter {
namespace {

enum class Where { Nowhere, AnyStep, Response, Reply };
enum class Value { None, Number, OptionalNumber, Hex, Pace };

struct Kind {
  FaultKind kind;
  std::string_view name;
  Where where;
  Value value;
  std::uint64_t defaultNumber;
  Medium medium;
  std::string_view meaning;
};

// The first group strikes at a step, which has to be given; see isAtStep().
constexpr Kind kKinds[] = {
    {FaultKind::Close, "close", Where::AnyStep, Value::None, 0, Medium::Any,
     "lets the host go: what was said still goes out, then the connection is closed"},
    {FaultKind::Reset, "reset", Where::AnyStep, Value::None, 0, Medium::Any,
     "breaks the connection at once (TCP: RST)"},
    {FaultKind::Shutdown, "shutdown", Where::AnyStep, Value::None, 0, Medium::Network,
     "says nothing more and ends its direction of the connection (TCP: FIN), but reads on"},
    {FaultKind::Silence, "silence", Where::AnyStep, Value::None, 0, Medium::Any,
     "says nothing more, but reads on"},
    {FaultKind::Hang, "hang", Where::AnyStep, Value::None, 0, Medium::Any,
     "neither says nor reads anything more"},
    {FaultKind::Delay, "delay", Where::AnyStep, Value::Number, 0, Medium::Any,
     "waits so many milliseconds before it says anything more"},
    {FaultKind::Extra, "extra", Where::AnyStep, Value::Hex, 0, Medium::Any,
     "says these bytes too, given in hexadecimal"},
    {FaultKind::Unplug, "unplug", Where::AnyStep, Value::OptionalNumber, 0, Medium::Usb,
     "pulls the plug, and puts it back after so many milliseconds; without a number, never"},
    {FaultKind::Stall, "stall", Where::AnyStep, Value::OptionalNumber, 0, Medium::Usb,
     "stalls both pipes until the host clears them; with a number, so many milliseconds later, "
     "when "
     "a host surely waits for an answer, and says nothing before"},

    {FaultKind::WrongPrefix, "wrong-prefix", Where::Response, Value::OptionalNumber, 0x00ad,
     Medium::Any, "says this prefix in its responses, not 0x00ac"},
    {FaultKind::WrongCommand, "wrong-command", Where::Response, Value::OptionalNumber, 0x0063,
     Medium::Any, "says this command in its responses, not 6 and 15"},
    {FaultKind::WrongStatus, "wrong-status", Where::Response, Value::OptionalNumber, 2, Medium::Any,
     "says this status in its responses, not 1"},
    {FaultKind::DataLength, "data-length", Where::Nowhere, Value::Number, 0, Medium::Any,
     "announces so many bytes of device ID, and says no more of it than that"},
    {FaultKind::IdHeader, "id-header", Where::Nowhere, Value::Number, 0, Medium::Any,
     "says this length in the two bytes that begin the device ID"},
    {FaultKind::Dribble, "dribble", Where::Reply, Value::Pace, 0, Medium::Any,
     "says its replies in pieces of so many bytes, one every so many milliseconds"},
    {FaultKind::Merge, "merge", Where::Nowhere, Value::None, 0, Medium::Any,
     "says the response and the device ID in one piece"},
    {FaultKind::Split, "split", Where::Response, Value::Number, 0, Medium::Any,
     "says so many bytes of a reply in one piece, and the rest 20 ms later in another; response "
     "and "
     "device ID count as one reply"},

    {FaultKind::NoMdl, "no-mdl", Where::Nowhere, Value::None, 0, Medium::Any,
     "leaves MDL out of its device ID"},
    {FaultKind::NoLic, "no-lic", Where::Nowhere, Value::None, 0, Medium::Any,
     "leaves LIC out of its device ID"},
    {FaultKind::NoFwver, "no-fwver", Where::Nowhere, Value::None, 0, Medium::Any,
     "leaves FWVER out of its device ID, also after a burn"},
    {FaultKind::BadUtf8, "bad-utf8", Where::Nowhere, Value::None, 0, Medium::Any,
     "has bytes in its device ID that are not UTF-8: DES:<FF><FE>;"},

    {FaultKind::FailBurn, "fail-burn", Where::Nowhere, Value::OptionalNumber, 2, Medium::Any,
     "burns, fails, keeps the old firmware and answers with this status"},
    {FaultKind::ForgetBurn, "forget-burn", Where::Nowhere, Value::None, 0, Medium::Any,
     "burns, says that all is well, and comes back with the old firmware"},
    {FaultKind::Refuse, "refuse", Where::Nowhere, Value::None, 0, Medium::Network,
     "is announced, but refuses connections"},
    {FaultKind::Slow, "slow", Where::Nowhere, Value::Pace, 0, Medium::Network,
     "reads so many bytes every so many milliseconds, into a receive buffer of 4096 bytes"},
    {FaultKind::ReceiveBuffer, "receive-buffer", Where::Nowhere, Value::Number, 0, Medium::Network,
     "has a receive buffer of so many bytes (SO_RCVBUF)"},
    {FaultKind::ZeroPackets, "zero-packets", Where::Nowhere, Value::None, 0, Medium::Usb,
     "sends an empty packet before each piece of its replies"},
    {FaultKind::InPipeFirst, "in-pipe-first", Where::Nowhere, Value::None, 0, Medium::Usb,
     "has the IN pipe of each interface before the OUT pipe"},
    {FaultKind::NoPrinterInterface, "no-printer-interface", Where::Nowhere, Value::None, 0,
     Medium::Usb, "has no interface of class 7"},
    {FaultKind::NoVendorInterface, "no-vendor-interface", Where::Nowhere, Value::None, 0,
     Medium::Usb, "has no interface of class 255"},
};

const Kind& kindOf(FaultKind kind) {
  return *std::find_if(std::begin(kKinds), std::end(kKinds),
                       [&](const Kind& entry) { return entry.kind == kind; });
}

bool mayStrike(Where where, Step step) {
  switch (where) {
    case Where::Nowhere:
      return false;
    case Where::AnyStep:
      return true;
    case Where::Response:
      return step == Step::IdResponse || step == Step::BurnReply;
    case Where::Reply:
      return step == Step::IdResponse || step == Step::DeviceId || step == Step::BurnReply;
  }
  return false;
}

std::string_view whereSyntax(Where where) {
  switch (where) {
    case Where::Nowhere:
      return "";
    case Where::AnyStep:
      return "@STEP";
    case Where::Response:
      return "[@id-response|@burn-reply]";
    case Where::Reply:
      return "[@id-response|@device-id|@burn-reply]";
  }
  return "";
}

std::string_view valueSyntax(Value value) {
  switch (value) {
    case Value::None:
      return "";
    case Value::Number:
      return "=N";
    case Value::OptionalNumber:
      return "[=N]";
    case Value::Hex:
      return "=HEX";
    case Value::Pace:
      return "=BYTES/MS";
  }
  return "";
}

[[noreturn]] void reject(std::string_view text, const std::string& reason) {
  throw std::invalid_argument("fault \"" + std::string(text) + "\": " + reason);
}

std::uint64_t parseNumber(std::string_view fault, std::string_view text) {
  const bool hex = text.starts_with("0x");
  const std::string_view digits = hex ? text.substr(2) : text;
  std::uint64_t number = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, hex ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size()) {
    reject(fault, "\"" + std::string(text) + "\" is not a number");
  }
  return number;
}

std::vector<std::uint8_t> parseHex(std::string_view fault, std::string_view text) {
  if (text.empty() || text.size() % 2 != 0) reject(fault, "bytes are pairs of hexadecimal digits");
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    std::uint8_t byte = 0;
    const auto [end, error] = std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
    if (error != std::errc() || end != text.data() + i + 2) {
      reject(fault, "bytes are pairs of hexadecimal digits");
    }
    bytes.push_back(byte);
  }
  return bytes;
}

Pace parsePace(std::string_view fault, std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) reject(fault, "a pace is BYTES/MILLISECONDS");
  const std::uint64_t size = parseNumber(fault, text.substr(0, slash));
  const std::uint64_t milliseconds = parseNumber(fault, text.substr(slash + 1));
  if (size == 0) reject(fault, "a pace has at least one byte");
  if (milliseconds > 3600000) reject(fault, "a pace takes an hour at most");
  return {size, std::chrono::milliseconds(milliseconds)};
}

void parseValue(const Kind& kind, std::optional<std::string_view> value, Fault& fault) {
  if (!value && kind.value != Value::None && kind.value != Value::OptionalNumber) {
    reject(fault.text,
           std::string(kind.name) + " needs a value: " + std::string(valueSyntax(kind.value)));
  }
  switch (kind.value) {
    case Value::None:
      if (value) reject(fault.text, std::string(kind.name) + " takes no value");
      break;
    case Value::Number:
    case Value::OptionalNumber:
      fault.number = value ? parseNumber(fault.text, *value) : kind.defaultNumber;
      break;
    case Value::Hex:
      fault.bytes = parseHex(fault.text, *value);
      break;
    case Value::Pace:
      fault.pace = parsePace(fault.text, *value);
      break;
  }
}

void parseStep(const Kind& kind, std::optional<std::string_view> step, Fault& fault) {
  if (!step) {
    if (kind.where == Where::AnyStep) {
      reject(fault.text, std::string(kind.name) + " needs a step: @STEP");
    }
    return;
  }
  fault.at = stepNamed(*step);
  if (!fault.at) reject(fault.text, "there is no step \"" + std::string(*step) + "\"");
  if (!mayStrike(kind.where, *fault.at)) {
    reject(fault.text, std::string(kind.name) + " cannot strike at " + std::string(*step));
  }
}

}  // namespace

void FaultPlan::add(std::string_view text) {
  const std::size_t equals = text.find('=');
  const std::string_view head = text.substr(0, equals);
  const std::size_t at = head.find('@');
  const std::string_view name = head.substr(0, at);
  const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                 [&](const Kind& entry) { return entry.name == name; });
  if (kind == std::end(kKinds)) reject(text, "there is no such fault");
  std::optional<std::string_view> step;
  if (at != std::string_view::npos) step = head.substr(at + 1);
  std::optional<std::string_view> value;
  if (equals != std::string_view::npos) value = text.substr(equals + 1);
  Fault fault{kind->kind, std::nullopt, std::string(text), 0, {}, std::nullopt};
  parseStep(*kind, step, fault);
  parseValue(*kind, value, fault);
  mFaults.push_back(std::move(fault));
}

const Fault* FaultPlan::find(FaultKind kind) const {
  const auto found = std::find_if(mFaults.begin(), mFaults.end(),
                                  [&](const Fault& fault) { return fault.kind == kind; });
  return found == mFaults.end() ? nullptr : &*found;
}

const Fault* FaultPlan::find(FaultKind kind, Step step) const {
  const auto found = std::find_if(mFaults.begin(), mFaults.end(), [&](const Fault& fault) {
    return fault.kind == kind && (!fault.at || *fault.at == step);
  });
  return found == mFaults.end() ? nullptr : &*found;
}

std::vector<const Fault*> FaultPlan::at(Step step) const {
  std::vector<const Fault*> faults;
  for (const Fault& fault : mFaults) {
    if (fault.at == step && kindOf(fault.kind).where == Where::AnyStep) faults.push_back(&fault);
  }
  return faults;
}

const Fault* FaultPlan::foreignTo(Medium medium) const {
  const auto found = std::find_if(mFaults.begin(), mFaults.end(), [&](const Fault& fault) {
    const Medium needed = kindOf(fault.kind).medium;
    return needed != Medium::Any && needed != medium;
  });
  return found == mFaults.end() ? nullptr : &*found;
}

std::string FaultPlan::help() {
  std::string text;
  for (const Kind& kind : kKinds) {
    text += "  " + std::string(kind.name) + std::string(whereSyntax(kind.where)) +
            std::string(valueSyntax(kind.value));
    if (kind.medium == Medium::Usb) text += "   (USB only)";
    if (kind.medium == Medium::Network) text += "   (network only)";
    text += "\n      " + wrapped(kind.meaning, 6);
  }
  return text;
}

}  // namespace virtualprinter
