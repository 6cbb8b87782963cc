#include "KernelUsbCells.h"

#include <algorithm>
#include <regex>

#include "DownloadLog.h"
#include "usbSteps.h"

namespace {

using enum Afterwards;

// What a call that meets the end of the device comes back with.
const Lines kGone{"3 The transfer or the call that meets it ends with 0xe00002c0 or 0xe00002ca."};

KernelUsbCell kernelCell(const std::string& table, const std::string& when, const std::string& what,
                         Verdict verdict, Afterwards afterwards, const Lines& log,
                         const std::string& position) {
  KernelUsbCell cell;
  cell.table = table;
  cell.when = when;
  cell.what = what;
  cell.verdict = verdict;
  cell.afterwards = afterwards;
  cell.log = log;
  cell.position = position;
  return cell;
}

Lines refusal(const std::string& message, const std::string& code) {
  return Lines{"3 I/O Kit error occurred during async task: " + message +
               " [return value = " + code + "]"} +
         kUsbTransportGone;
}

Lines transferEnd(const char* kind, const std::string& code) {
  return Lines{std::string("3 Async ") + kind + " failed: I/O Kit error=" + code} +
         kUsbTransportGone;
}

const std::string kStalled = "0xe000404f";
const std::string kTimedOut = "0xe0004051";

void setFirmwareSize(KernelUsbCell& cell, std::size_t size) {
  cell.firmwareSize = size;
  for (std::string& line : cell.log) {
    if (line == "5 Async write request for 28 bytes.") {
      line = "5 Async write request for " + std::to_string(size) + " bytes.";
    }
  }
}

// The printer pulls its own plug at a point of the conversation that only it knows.
KernelUsbCell pullingItself(const char* when, const char* at, std::size_t step, std::size_t reached,
                            Afterwards afterwards, const char* position) {
  KernelUsbCell cell = kernelCell("kernel: unplugged", when, "is unplugged", Verdict::Failed,
                                  afterwards, upTo(reached) + kGone + kUsbTransportGone, position);
  cell.faults = {std::string("unplug@") + at};
  cell.step = step;
  cell.event = "unplugged";
  return cell;
}

KernelUsbCell pulled(const char* when, KernelFault fault, const char* silentFrom, std::size_t step,
                     Verdict verdict, Afterwards afterwards, const Lines& log,
                     const char* position) {
  KernelUsbCell cell =
      kernelCell("kernel: unplugged", when, "is unplugged", verdict, afterwards, log, position);
  cell.fault = fault;
  if (silentFrom != nullptr) cell.faults = {std::string("silence@") + silentFrom};
  cell.step = step;
  return cell;
}

std::vector<KernelUsbCell> unpluggedFromKernel() {
  const Lines halfOfId{"7 SRB::handleReadCompletion 18 bytes added",
                       "7 SRB::read requested 36; copying 18; 0 bytes left in short read buffer"};
  KernelUsbCell inImage =
      pullingItself("in the middle of the firmware", "mid-image", 6, 6, Unfinished, "in image");
  setFirmwareSize(inImage, 4000000);
  return {
      pulled("before Download is pressed", KernelFault::Pulled, nullptr, 0, Verdict::NotStarted,
             Untouched, {}, ""),
      pulled("as Download is pressed", KernelFault::PulledUnnoticed, nullptr, 0, Verdict::Failed,
             Untouched, upTo(1) + refusal("Unable to open interface.", "0xe00002c0"), ""),
      pullingItself("after the first message", "status-off", 1, 2, Untouched, "after status-off"),
      pulled("while the response is awaited", KernelFault::Pulled, "id-request", 3, Verdict::Failed,
             Asked, upTo(3) + kGone + kUsbTransportGone, "after id-request"),
      pulled("in the middle of the device ID", KernelFault::Pulled, "mid-device-id", 4,
             Verdict::Failed, Asked, upTo(4) + halfOfId + kGone + kUsbTransportGone,
             "after id-request"),
      pullingItself("before the first byte of the firmware", "burn-header", 5, 6, Unfinished,
                    "in image at 0 of 28"),
      inImage,
      pullingItself("after the firmware, before its end is said", "image", 6, 7, Unfinished,
                    "after image"),
      pullingItself("when the printer has everything, and burns", "uel", 7, 8, Unannounced,
                    "after uel"),
      pullingItself("when it has burned, before it answers", "burned", 8, 8, Unannounced,
                    "after uel"),
  };
}

std::vector<KernelUsbCell> stalledOnKernel() {
  const std::string table = "kernel: stalls";
  KernelUsbCell cleared =
      kernelCell(table, "after the first message", "stalls both of its pipes", Verdict::Updated,
                 Updated, upTo(8) + packet(16) + kBurned + kUsbTransportGone, "after uel");
  cleared.faults = {"stall@status-off"};
  cleared.step = 1;
  cleared.event = "performed";
  KernelUsbCell answer =
      kernelCell(table, "while the response is awaited", "stalls its IN pipe", Verdict::Failed,
                 Asked, upTo(3) + transferEnd("read", kStalled), "after id-request");
  answer.faults = {"stall@id-request=500"};
  KernelUsbCell burned = kernelCell(table, "when it has burned, before it answers",
                                    "stalls its IN pipe", Verdict::Failed, Unannounced,
                                    upTo(8) + transferEnd("read", kStalled), "after uel");
  burned.faults = {"stall@burned"};
  return {cleared, answer, burned};
}

std::vector<KernelUsbCell> silentOnKernel() {
  const std::string table = "kernel: no answer in time";
  KernelUsbCell image =
      kernelCell(table, "while the firmware is sent", "takes nothing in 0.2 s", Verdict::Failed,
                 Unfinished, upTo(6) + transferEnd("write", kTimedOut), "in image");
  image.faults = {"hang@burn-header"};
  setFirmwareSize(image, 100000);
  KernelUsbCell answer =
      kernelCell(table, "while the response is awaited", "says nothing in 20 s", Verdict::Failed,
                 Asked, upTo(3) + transferEnd("read", kTimedOut), "after id-request");
  answer.faults = {"silence@id-request"};
  KernelUsbCell burn =
      kernelCell(table, "while the printer burns", "takes longer than 3 s", Verdict::Failed,
                 Unannounced, upTo(8) + transferEnd("read", kTimedOut), "after uel");
  burn.burnSeconds = 5;
  return {answer, image, burn};
}

KernelUsbCell notOpened(const char* when, const char* what, KernelFault fault, const Lines& log) {
  KernelUsbCell cell =
      kernelCell("kernel: not opened", when, what, Verdict::Failed, Untouched, upTo(1) + log, "");
  cell.fault = fault;
  return cell;
}

std::vector<KernelUsbCell> refusedByKernel() {
  const Lines inUse{"3 The printer's interface is in use by ipp-usb (process 4711)."};
  KernelUsbCell other =
      notOpened("before the first message", "has no printer interface", KernelFault::OfThePrinter,
                refusal("The device has no ACL channel.", "0xe00002f0"));
  other.faults = {"no-printer-interface"};
  KernelUsbCell huge = kernelCell(
      "kernel: not opened", "before the first byte of the firmware",
      "is to get more than the 16 MiB that the system takes", Verdict::Failed, Unfinished,
      upTo(6) + refusal("Async write request failed.", "0xe00002bd"), "in image");
  setFirmwareSize(huge, 16777728);
  return {
      notOpened("before the first message", "is taken by another program",
                KernelFault::ClaimedElsewhere,
                inUse + refusal("Unable to open interface.", "0xe00002c5")),
      notOpened("before the first message of a second update",
                "is taken by another program, after the first one", KernelFault::ClaimedMeanwhile,
                inUse + refusal("Failed to clear pipe stall.", "0xe00002c5")),
      notOpened("before the first message", "may not be used by this user",
                KernelFault::NotPermitted, refusal("Unable to open interface.", "0xe00002e2")),
      notOpened("before the first message", "is not configured yet", KernelFault::ConfiguredLate,
                refusal("The device has no ACL channel.", "0xe00002f0")),
      other,
      huge,
  };
}

std::vector<KernelUsbCell> quitOnKernel() {
  struct Moment {
    const char* when;
    std::size_t step;
    const char* silentFrom;
    Afterwards afterwards;
    const char* position;
  };
  const std::vector<Moment> moments{
      {"while the response is awaited", 3, "id-request", Asked, "after id-request"},
      {"while the printer burns", 8, "uel", Unannounced, "after uel"}};
  std::vector<KernelUsbCell> cells;
  for (const Moment& moment : moments) {
    KernelUsbCell cell = kernelCell(
        "kernel: quit", moment.when, "quit, and say so again when you are asked", Verdict::Quits,
        moment.afterwards,
        upTo(moment.step) + Lines{"5 Cleaning up firmware downloader."} + kUsbTransportGone,
        moment.position);
    cell.fault = KernelFault::Quit;
    cell.faults = {std::string("silence@") + moment.silentFrom};
    cell.step = moment.step;
    cells.push_back(cell);
  }
  return cells;
}

bool isOfTheList(const std::string& line) {
  static const std::regex ofTheList("5 (Removed|Removing|Found|Adding|List selection changed).*");
  return std::regex_match(line, ofTheList);
}

}  // namespace

bool KernelUsbCell::needsAnotherPrinter() const {
  if (afterwards == Updated || afterwards == Unannounced) return false;
  return !faults.empty() || fault == KernelFault::Pulled || fault == KernelFault::PulledUnnoticed ||
         afterwards == Unfinished;
}

const std::vector<KernelUsbCell>& kernelUsbCells() {
  static const std::vector<KernelUsbCell> all = [] {
    std::vector<KernelUsbCell> cells;
    for (const auto& column : {unpluggedFromKernel(), stalledOnKernel(), silentOnKernel(),
                               refusedByKernel(), quitOnKernel()}) {
      cells.insert(cells.end(), column.begin(), column.end());
    }
    return cells;
  }();
  return all;
}

Lines withoutChance(const Lines& log) {
  static const std::regex gone(
      "3 (Async (write|read) failed: I/O Kit error=0xe00002(ca|c0)|"
      "(I/O Kit error occurred during async task: )?"
      "(Failed to clear pipe stall|Async (write|read) request failed)\\. "
      "\\[return value = 0xe00002(ca|c0)\\])");
  static const std::regex process("\\(process [0-9]+\\)");
  Lines lines;
  for (const std::string& line : log) {
    if (isOfTheList(line)) continue;
    lines.push_back(std::regex_match(line, gone)
                        ? kGone[0]
                        : std::regex_replace(line, process, "(process 4711)"));
  }
  return lines;
}
