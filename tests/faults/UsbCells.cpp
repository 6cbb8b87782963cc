#include "UsbCells.h"

#include "DownloadLog.h"
#include "assertions.h"
#include "usbSteps.h"

namespace {

using platform::IOReturn;
using enum Afterwards;

UsbCell cell(const std::string& table, const std::string& when, const std::string& what,
             UsbFault fault, std::size_t step, Verdict verdict, Afterwards afterwards,
             const Lines& log, const std::string& position) {
  UsbCell cell;
  cell.table = table;
  cell.when = when;
  cell.what = what;
  cell.fault = fault;
  cell.step = step;
  cell.verdict = verdict;
  cell.afterwards = afterwards;
  cell.log = log;
  cell.position = position;
  return cell;
}

std::string codeInHex(IOReturn result) {
  const std::string digits = "0123456789abcdef";
  std::string text;
  for (unsigned shift = 32; shift > 0; shift -= 4) {
    text += digits[static_cast<std::uint32_t>(result) >> (shift - 4) & 0xf];
  }
  return "0x" + text;
}

Lines refusedWith(const std::string& message, IOReturn result) {
  return Lines{"3 I/O Kit error occurred during async task: " + message +
               " [return value = " + codeInHex(result) + "]"} +
         kUsbTransportGone;
}

Lines failedWith(const UsbStep& step, IOReturn result) {
  return {std::string("3 Async ") + (step.name != nullptr ? "write" : "read") +
          " failed: I/O Kit error=" + codeInHex(result)};
}

Lines endedWith(const UsbStep& step, IOReturn result) {
  return failedWith(step, result) + kUsbTransportGone;
}

const Lines kRemoved{"5 Removed Veltra KX350T device with serial number VX0042",
                     "5 List selection changed: status=0 first=0 last=0",
                     "5 Removing printer with ID=1"};

std::vector<UsbCell> unplugged() {
  std::vector<UsbCell> cells{cell("unplugged", "before Download is pressed", "is unplugged",
                                  UsbFault::UnplugBefore, 0, Verdict::NotStarted, Untouched,
                                  kRemoved, "")};
  for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
    const UsbStep& step = usbSteps()[i - 1];
    if (i > 1) {
      cells.push_back(
          cell("unplugged", step.before, "is unplugged", UsbFault::UnplugBefore, i, Verdict::Failed,
               step.afterwards,
               upTo(i - 1) + answered(i - 1) + kRemoved + step.begun +
                   refusedWith("Failed to clear pipe stall.", platform::kIOReturnNoDevice),
               step.untouched));
    }
    cells.push_back(
        cell("unplugged", step.during, "is unplugged", UsbFault::UnplugDuring, i, Verdict::Failed,
             step.afterwards,
             upTo(i) + failedWith(step, platform::kIOReturnNoDevice) + kRemoved + kUsbTransportGone,
             step.halfway));
  }
  return cells;
}

std::vector<UsbCell> ended() {
  struct Ending {
    const char* table;
    const char* what;
    UsbFault fault;
    IOReturn result;
  };
  const std::vector<Ending> endings{
      {"stalls", "stalls its pipe", UsbFault::End, platform::kIOUSBPipeStalled},
      {"no answer in time", "takes or says nothing in time", UsbFault::TimeOut,
       platform::kIOUSBTransactionTimeout},
      {"bus errors", "cannot be reached for a bus error", UsbFault::End,
       platform::kIOReturnIOError},
      {"bus errors", "sends more than there is room for", UsbFault::End,
       platform::kIOReturnOverrun},
  };
  std::vector<UsbCell> cells;
  for (const Ending& ending : endings) {
    for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
      const UsbStep& step = usbSteps()[i - 1];
      if (ending.result == platform::kIOReturnOverrun && step.name != nullptr) continue;
      cells.push_back(cell(ending.table, step.during, ending.what, ending.fault, i, Verdict::Failed,
                           step.afterwards, upTo(i) + endedWith(step, ending.result),
                           step.untouched));
      cells.back().result = ending.result;
      cells.back().milliseconds = step.milliseconds;
    }
  }
  return cells;
}

// In the middle of what the program sends.
std::vector<UsbCell> stalledHalfway() {
  std::vector<UsbCell> cells;
  for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
    const UsbStep& step = usbSteps()[i - 1];
    if (step.name == nullptr) continue;
    cells.push_back(cell("stalls", step.during, "stalls its pipe halfway", UsbFault::EndHalfway, i,
                         Verdict::Failed, step.afterwards,
                         upTo(i) + endedWith(step, platform::kIOUSBPipeStalled), step.halfway));
    cells.back().result = platform::kIOUSBPipeStalled;
  }
  return cells;
}

// The system does not even begin.
std::vector<UsbCell> refusedCalls() {
  struct Refusal {
    const char* what;
    const char* call;  // null: the transfer's own
    const char* message;
    IOReturn result;
  };
  const std::vector<Refusal> refusals{
      {"is taken by another program", "clearPipeStallBothEnds", "Failed to clear pipe stall.",
       platform::kIOReturnExclusiveAccess},
      {"gets no transfer, for want of memory", nullptr, nullptr, platform::kIOReturnNoMemory},
  };
  std::vector<UsbCell> cells;
  for (const Refusal& refusal : refusals) {
    for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
      const UsbStep& step = usbSteps()[i - 1];
      const char* transfer =
          step.name != nullptr ? "Async write request failed." : "Async read request failed.";
      cells.push_back(cell(
          "refused by the system", step.before, refusal.what, UsbFault::Call, i, Verdict::Failed,
          step.afterwards,
          upTo(i) +
              refusedWith(refusal.message != nullptr ? refusal.message : transfer, refusal.result),
          step.untouched));
      cells.back().result = refusal.result;
      cells.back().call =
          std::string(refusal.call != nullptr ? refusal.call : step.call) + " printer/7";
    }
  }
  return cells;
}

// Before the first message the interface is opened.
std::vector<UsbCell> notOpened() {
  struct Opening {
    const char* what;
    UsbFault fault;
    const char* call;
    const char* message;
    IOReturn result;
  };
  const std::vector<Opening> openings{
      {"is taken by another program", UsbFault::ClaimedElsewhere, "", "Unable to open interface.",
       platform::kIOReturnExclusiveAccess},
      {"may not be used by this user", UsbFault::Call, "open printer/7",
       "Unable to open interface.", platform::kIOReturnNotPermitted},
      {"is gone when it is opened", UsbFault::Call, "open printer/7", "Unable to open interface.",
       platform::kIOReturnNoDevice},
      {"does not say its endpoints", UsbFault::Call, "getNumEndpoints printer/7",
       "Unable to get number of endpoints.", platform::kIOReturnIOError},
      {"does not describe a pipe", UsbFault::Call, "getPipeProperties printer/7",
       "Unable to get properties of pipe.", platform::kIOReturnIOError},
      {"has no event source", UsbFault::Call, "createAsyncEventSource printer/7",
       "Unable to create asynchronous event source.", platform::kIOReturnNoResources},
      {"has no OUT pipe", UsbFault::NoOutPipe, "", "Failed to clear pipe stall.",
       platform::kIOUSBUnknownPipeErr},
      {"is configured late: it has no printer interface yet", UsbFault::NoPrinterInterface, "",
       "The device has no ACL channel.", platform::kIOReturnNotFound},
  };
  std::vector<UsbCell> cells;
  for (const Opening& opening : openings) {
    cells.push_back(cell(
        "not opened", "before the first message", opening.what, opening.fault, 1, Verdict::Failed,
        Untouched, upTo(1) + refusedWith(opening.message, opening.result), "before status-off"));
    cells.back().result = opening.result;
    cells.back().call = opening.call;
  }
  cells.push_back(cell(
      "not opened", usbSteps()[2].before, "has no IN pipe", UsbFault::NoInPipe, 3, Verdict::Failed,
      Asked, upTo(3) + refusedWith("The interface cannot be read.", platform::kIOReturnNotFound),
      "after id-request"));
  return cells;
}

// A short write counts as complete. The printer waits for the rest, or takes what follows for it,
// and the program waits for the answer.
std::vector<UsbCell> shortWrites() {
  struct Short {
    std::size_t step;
    const char* lacking;  // where the printer stands when a byte is missing
    const char* without;  // when all are
    Afterwards afterwards;
  };
  const std::vector<Short> all{
      {1, "after a violation", "after a violation", Untouched},
      {2, "in id-request at 58 of 59", "after status-off", Untouched},
      {5, "in image at 36 of 70", "after a violation", Unfinished},
      {6, "after a violation", "in image at 9 of 28", Unfinished},
      {7, "in uel at 8 of 9", "after image", Unfinished},
  };
  std::vector<UsbCell> cells;
  for (const UsbFault fault : {UsbFault::ShortWrite, UsbFault::EmptyWrite}) {
    const bool isEmpty = fault == UsbFault::EmptyWrite;
    for (const Short& each : all) {
      const std::size_t awaited = each.step < 3 ? 3 : 8;
      cells.push_back(cell(
          "short writes", usbSteps()[each.step - 1].during,
          isEmpty ? "takes none of it" : "takes all but a byte", fault, each.step, Verdict::Failed,
          each.afterwards,
          upTo(awaited) + endedWith(usbSteps()[awaited - 1], platform::kIOUSBTransactionTimeout),
          isEmpty ? each.without : each.lacking));
      cells.back().milliseconds = usbSteps()[awaited - 1].milliseconds;
    }
  }
  return cells;
}

// From the answers' packets to the end of a good update.
Lines updated(const Lines& response, const Lines& deviceId, const Lines& reply) {
  return upTo(3) + response + kAwaitingDeviceId + deviceId + kDeviceIdHandled + kHeader + kImage +
         kUel + kAwaitBurn + reply + kBurned + kUsbTransportGone;
}

Lines emptyPacket() { return {"7 SRB::handleReadCompletion 0 bytes added"}; }

Lines bytePackets(int bytes) {
  Lines lines;
  for (int left = bytes; left > 0; --left) {
    lines = lines + Lines{"7 SRB::handleReadCompletion 1 bytes added",
                          "7 SRB::read requested " + std::to_string(left) +
                              "; copying 1; 0 bytes left in short read buffer"};
  }
  return lines;
}

std::vector<UsbCell> packets() {
  const auto good = [](const std::string& what, UsbFault fault, const Lines& log) {
    return cell("packets", "throughout", what, fault, 8, Verdict::Updated, Updated, log,
                "after uel");
  };
  return {
      good("sends an empty packet before each answer", UsbFault::ZeroPackets,
           updated(emptyPacket() + packet(16), emptyPacket() + packet(36),
                   emptyPacket() + packet(16))),
      good("sends its answers in packets of one byte", UsbFault::BytePackets,
           updated(bytePackets(16), bytePackets(36), bytePackets(16))),
      good("sends response and device ID in one packet", UsbFault::OnePacket,
           updated({"7 SRB::handleReadCompletion 52 bytes added",
                    "7 SRB::read requested 16; copying 16; 36 bytes left in short read buffer"},
                   {"7 SRB::read requested 36; copying 36; 0 bytes left in short read buffer"},
                   packet(16))),
      good("has its IN pipe before its OUT pipe", UsbFault::InPipeFirst,
           updated(packet(16), packet(36), packet(16))),
  };
}

Lines response(const std::string& fields, const std::string& raw) {
  return {"7 ACL Response: " + fields, "7 ACL Response raw: " + raw + " "};
}

// Two bytes too many begin what is read next.
std::vector<UsbCell> excessBytes() {
  const std::string what = "sends two bytes too many";
  const Lines failed = Lines{"3 The firmware download failed on the printer."} + kUsbTransportGone;
  const Lines shifted =
      kAwaitBurn + Lines{
                       "7 SRB::read requested 16; copying 2; 0 bytes left in short read "
                       "buffer",
                       "7 SRB::handleReadCompletion 16 bytes added",
                       "7 SRB::read requested 14; copying 14; 2 bytes left in short read "
                       "buffer"};
  const Lines wholePacket{
      "7 SRB::handleReadCompletion 18 bytes added",
      "7 SRB::read requested 16; copying 16; 2 bytes left in short read buffer"};
  return {
      cell("surplus on USB", "behind the response", what, UsbFault::ExcessPacket, 3,
           Verdict::Failed, Unannounced,
           upTo(3) + wholePacket + kAwaitingDeviceId +
               Lines{"7 SRB::read requested 36; copying 2; 0 bytes left in short read buffer",
                     "7 SRB::handleReadCompletion 36 bytes added",
                     "7 SRB::read requested 34; copying 34; 2 bytes left in short read buffer",
                     "5 Validating IEEE 1284 device ID...", "5 IEEE 1284 device ID is ",
                     "5 Choosing and loading a firmware file..."} +
               kHeader + kImage + kUel + shifted +
               response("prefix=303b; cmd ID=00ac; cmdStatus=f",
                        "30 3b 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00") +
               failed,
           "after uel"),
      cell("surplus on USB", "behind the device ID", what, UsbFault::ExcessPacket, 4,
           Verdict::Failed, Unannounced,
           upTo(4) +
               Lines{"7 SRB::handleReadCompletion 38 bytes added",
                     "7 SRB::read requested 36; copying 36; 2 bytes left in short read buffer"} +
               kDeviceIdHandled + kHeader + kImage + kUel + shifted +
               response("prefix=4142; cmd ID=00ac; cmdStatus=f",
                        "41 42 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00") +
               failed,
           "after uel"),
      cell("surplus on USB", "behind its answer to the firmware", what, UsbFault::ExcessPacket, 8,
           Verdict::Updated, Updated, updated(packet(16), packet(36), wholePacket), "after uel"),
  };
}

// The printer said it too late for the update before, and nobody has heard it yet.
std::vector<UsbCell> staleAnswers() {
  using namespace std::string_literals;
  const std::string what = "still has to say something of the update before";
  const std::string id = "\0\x24MDL:KX350T;LIC:QT725013;FWVER:100;"s;
  const auto aborting = [&](const std::string& when, std::size_t step, const std::string& answer,
                            const Lines& log) {
    UsbCell aborts = cell("late answers on USB", when, what, UsbFault::Stale, step, Verdict::Aborts,
                          Asked, upTo(3) + log, "after id-request");
    aborts.reply = answer;
    aborts.assertion = kEmptyId;
    return aborts;
  };
  UsbCell shifted =
      cell("late answers on USB", "a response and a device ID", what, UsbFault::Stale, 3,
           Verdict::Failed, Unannounced,
           upTo(8) + packet(16) +
               response("prefix=00ac; cmd ID=0006; cmdStatus=1",
                        "00 ac 00 06 00 01 00 24 00 00 00 00 00 00 00 00") +
               Lines{"3 The firmware download failed on the printer."} + kUsbTransportGone,
           "after uel");
  shifted.reply = "\0\xac\0\x06\0\x01\0\x24"s + std::string(8, '\0') + id;
  return {shifted,
          aborting("a device ID", 4, id,
                   Lines{"7 SRB::handleReadCompletion 36 bytes added",
                         "7 SRB::read requested 16; copying 16; 20 bytes left in short read "
                         "buffer"} +
                       response("prefix=0024; cmd ID=4d44; cmdStatus=4c3a",
                                "00 24 4d 44 4c 3a 4b 58 33 35 30 54 3b 4c 49 43")),
          aborting("an answer to the firmware", 8, "\0\xac\0\x0f\0\x01\0\0"s + std::string(8, '\0'),
                   packet(16) + response("prefix=00ac; cmd ID=000f; cmdStatus=1",
                                         "00 ac 00 0f 00 01 00 00 00 00 00 00 00 00 00 00"))};
}

std::vector<UsbCell> wrongAnswers() {
  struct Wrong {
    const char* what;
    std::size_t step;
    std::string reply;
    const char* fields;
    const char* raw;
  };
  using namespace std::string_literals;
  const std::string rest(8, '\0');
  const std::vector<Wrong> all{
      {"has a wrong prefix", 3, "\0\xad\0\x06\0\x01\0\x24"s,
       "prefix=00ad; cmd ID=0006; cmdStatus=1", "00 ad 00 06 00 01 00 24"},
      {"answers another command", 3, "\0\xac\0\x0f\0\x01\0\x24"s,
       "prefix=00ac; cmd ID=000f; cmdStatus=1", "00 ac 00 0f 00 01 00 24"},
      {"has status 0", 3, "\0\xac\0\x06\0\0\0\x24"s, "prefix=00ac; cmd ID=0006; cmdStatus=0",
       "00 ac 00 06 00 00 00 24"},
      {"has status 2", 3, "\0\xac\0\x06\0\x02\0\x24"s, "prefix=00ac; cmd ID=0006; cmdStatus=2",
       "00 ac 00 06 00 02 00 24"},
      {"announces no device ID", 3, "\0\xac\0\x06\0\x01\0\0"s,
       "prefix=00ac; cmd ID=0006; cmdStatus=1", "00 ac 00 06 00 01 00 00"},
      {"is all zero", 3, "\0\0\0\0\0\0\0\0"s, "prefix=0000; cmd ID=0000; cmdStatus=0",
       "00 00 00 00 00 00 00 00"},
      {"has a wrong prefix", 8, "\0\xad\0\x0f\0\x01\0\0"s, "prefix=00ad; cmd ID=000f; cmdStatus=1",
       "00 ad 00 0f 00 01 00 00"},
      {"answers another command", 8, "\0\xac\0\x06\0\x01\0\0"s,
       "prefix=00ac; cmd ID=0006; cmdStatus=1", "00 ac 00 06 00 01 00 00"},
      {"has status 0", 8, "\0\xac\0\x0f\0\0\0\0"s, "prefix=00ac; cmd ID=000f; cmdStatus=0",
       "00 ac 00 0f 00 00 00 00"},
      {"has status 2", 8, "\0\xac\0\x0f\0\x02\0\0"s, "prefix=00ac; cmd ID=000f; cmdStatus=2",
       "00 ac 00 0f 00 02 00 00"},
      {"is all zero", 8, "\0\0\0\0\0\0\0\0"s, "prefix=0000; cmd ID=0000; cmdStatus=0",
       "00 00 00 00 00 00 00 00"},
  };
  std::vector<UsbCell> cells;
  for (const Wrong& each : all) {
    const bool isFirst = each.step == 3;
    const Lines answered =
        packet(16) + response(each.fields, each.raw + std::string(" 00 00 00 00 00 00 00 "
                                                                  "00"));
    const Lines end =
        isFirst ? Lines{}
                : Lines{"3 The firmware download failed on the printer."} + kUsbTransportGone;
    cells.push_back(cell("wrong answers on USB",
                         isFirst ? "in the response" : "in its answer to the firmware", each.what,
                         UsbFault::Reply, each.step, isFirst ? Verdict::Aborts : Verdict::Failed,
                         isFirst ? Asked : Unannounced, upTo(each.step) + answered + end,
                         isFirst ? "after id-request" : "after uel"));
    cells.back().reply = each.reply + rest;
    if (isFirst) cells.back().assertion = kEmptyId;
  }
  return cells;
}

}  // namespace

bool UsbCell::needsReplug() const {
  const bool isAwaiting = step == 3 || step == 4 || step == 8;
  const bool isHalfSaid = position.starts_with("in ") || position == "after status-off" ||
                          position == "after image" || position == "after a violation";
  if (isHalfSaid || afterwards == Updated || afterwards == Unannounced) return true;
  switch (fault) {
    case UsbFault::End:
      return isAwaiting && result != platform::kIOUSBPipeStalled;
    case UsbFault::Call:
      return isAwaiting || call.starts_with("get") || call.starts_with("create");
    case UsbFault::UnplugBefore:
    case UsbFault::UnplugDuring:
    case UsbFault::NoOutPipe:
    case UsbFault::NoInPipe:
    case UsbFault::NoPrinterInterface:
      return true;
    default:
      return false;
  }
}

const std::vector<UsbCell>& usbCells() {
  static const std::vector<UsbCell> all = [] {
    std::vector<UsbCell> cells;
    for (const auto& column :
         {unplugged(), ended(), stalledHalfway(), refusedCalls(), notOpened(), shortWrites(),
          packets(), excessBytes(), wrongAnswers(), staleAnswers()}) {
      cells.insert(cells.end(), column.begin(), column.end());
    }
    return cells;
  }();
  return all;
}
