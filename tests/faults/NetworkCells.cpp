#include "NetworkCells.h"

#include <algorithm>
#include <iterator>

#include "DownloadLog.h"
#include "networkReplies.h"
#include "networkSteps.h"
#include "networkSurroundings.h"
#include "whenInWords.h"

namespace {

// Where the program is held.
const std::string kAtStart;
const std::string kAtStatusOff = "Async write request for 34 bytes.";
const std::string kAtRequest = "Async write request for 59 bytes.";
const std::string kAtHeader = "Async write request for 50 bytes.";
const std::string kAtImage = "Async write request for 28 bytes.";
const std::string kAtUel = "Async write request for 9 bytes.";

// The end of the stream, which a broken connection has too.
const Lines kEnd = arriving(0);

// The log up to where the printer strikes, and a little beyond.
const Lines kResponseOnly = kAwaitingResponse + arriving(16) + kAwaitingDeviceId;
const Lines kHalfResponse = kAwaitingResponse + arriving(8);
const Lines kHalfOfReplies = kAwaitingResponse + arriving(26) + kAwaitingDeviceId;
const Lines kIdentified = kMergedReplies;
const Lines kBurning = kMergedReplies + kAwaitingBurn;

struct Strike {
  const char* step;
  std::string heldAt;
  Lines log;  // without what follows from the verdict
  Verdict verdict;
  const char* position;
  Afterwards afterwards;
};

Lines endOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::Waits:
      return kDropped;
    case Verdict::Failed:
      return kWriteFailed + kTransportGone;
    default:
      return kTransportGone;
  }
}

// The replies come in one piece, unless the fault strikes between them.
bool isBetweenReplies(const std::string& step) {
  return step == "mid-id-response" || step == "id-response";
}

std::vector<NetworkCell> struck(const std::string& table, const std::string& what,
                                const std::string& fault, const std::string& event,
                                const std::vector<Strike>& strikes) {
  std::vector<NetworkCell> cells;
  for (const Strike& strike : strikes) {
    NetworkCell cell;
    cell.table = table;
    cell.when = whenInWords(strike.step);
    cell.what = what;
    cell.verdict = strike.verdict;
    cell.afterwards = strike.afterwards;
    cell.log = strike.log + endOf(strike.verdict);
    if (!isBetweenReplies(strike.step)) cell.faults = {"merge"};
    cell.faults.push_back(fault + "@" + strike.step);
    cell.heldAt = strike.heldAt;
    cell.event = event;
    cell.position = strike.position;
    cells.push_back(cell);
  }
  return cells;
}

constexpr auto Waits = Verdict::Waits;
constexpr auto Failed = Verdict::Failed;
constexpr auto Done = Verdict::Updated;

// The first write to a closed connection goes well; it is the next one that fails. A connection
// that is closed before everything was read is broken, and the first one fails.
std::vector<NetworkCell> closed() {
  using enum Afterwards;
  return struck(
      "closes", "closes the connection", "close", "closed",
      {
          {"connect", kAtStart, kRequestWritten, Failed, "before status-off", Untouched},
          {"mid-status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse, Waits,
           "in status-off at 17 of 34", Untouched},
          {"status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse, Waits,
           "after status-off", Untouched},
          {"mid-id-request", kAtRequest, kAwaitingResponse + kEnd, Waits,
           "in id-request at 30 of 59", Untouched},
          {"id-request", kAtRequest, kAwaitingResponse + kEnd, Waits, "after id-request", Asked},
          {"mid-id-response", kAtRequest, kHalfResponse + kEnd, Waits, "after id-request", Asked},
          {"id-response", kAtRequest, kResponseOnly + kEnd, Waits, "after id-request", Asked},
          {"mid-device-id", kAtRequest, kHalfOfReplies + kEnd, Waits, "after id-request", Asked},
          {"device-id", kAtRequest, kIdentified + kImageWritten, Failed, "after id-request", Asked},
          {"mid-burn-header", kAtHeader, kIdentified + kImageWritten + kEnd + kReady + kUel, Failed,
           "in burn-header at 25 of 50", Asked},
          {"burn-header", kAtHeader, kIdentified + kImageWritten + kEnd + kReady + kUel, Failed,
           "in image at 0 of 28", Unfinished},
          {"first-image-byte", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn,
           Waits, "in image at 1 of 28", Unfinished},
          {"mid-image", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn, Waits,
           "in image at 14 of 28", Unfinished},
          {"last-image-byte", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn,
           Waits, "in image at 27 of 28", Unfinished},
          {"image", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn, Waits,
           "after image", Unfinished},
          {"mid-uel", kAtUel, kBurning + kEnd, Waits, "in uel at 5 of 9", Unfinished},
          {"uel", kAtUel, kBurning + kEnd, Waits, "after uel", Unfinished},
          {"burned", kAtUel, kBurning + kEnd, Waits, "after uel", Unannounced},
          {"mid-burn-reply", kAtUel, kBurning + arriving(8) + kEnd, Waits, "after uel",
           Unannounced},
          {"burn-reply", kAtUel, kBurning + arriving(16) + kBurned, Done, "after uel", Updated},
      });
}

// After a reset, the very next write fails.
std::vector<NetworkCell> broken() {
  using enum Afterwards;
  return struck(
      "breaks", "breaks the connection", "reset", "closed",
      {
          {"connect", kAtStart, kStatusOffWritten, Failed, "before status-off", Untouched},
          {"mid-status-off", kAtStatusOff, kRequestWritten, Failed, "in status-off at 17 of 34",
           Untouched},
          {"status-off", kAtStatusOff, kRequestWritten, Failed, "after status-off", Untouched},
          {"mid-id-request", kAtRequest, kAwaitingResponse + kEnd, Waits,
           "in id-request at 30 of 59", Untouched},
          {"id-request", kAtRequest, kAwaitingResponse + kEnd, Waits, "after id-request", Asked},
          {"mid-id-response", kAtRequest, kHalfResponse + kEnd, Waits, "after id-request", Asked},
          {"id-response", kAtRequest, kResponseOnly + kEnd, Waits, "after id-request", Asked},
          {"mid-device-id", kAtRequest, kHalfOfReplies + kEnd, Waits, "after id-request", Asked},
          {"device-id", kAtRequest, kIdentified + kHeaderWritten, Failed, "after id-request",
           Asked},
          {"mid-burn-header", kAtHeader, kIdentified + kImageWritten, Failed,
           "in burn-header at 25 of 50", Asked},
          {"burn-header", kAtHeader, kIdentified + kImageWritten, Failed, "in image at 0 of 28",
           Unfinished},
          {"first-image-byte", kAtImage, kIdentified + kUelWritten, Failed, "in image at 1 of 28",
           Unfinished},
          {"mid-image", kAtImage, kIdentified + kUelWritten, Failed, "in image at 14 of 28",
           Unfinished},
          {"last-image-byte", kAtImage, kIdentified + kUelWritten, Failed, "in image at 27 of 28",
           Unfinished},
          {"image", kAtImage, kIdentified + kUelWritten, Failed, "after image", Unfinished},
          {"mid-uel", kAtUel, kBurning + kEnd, Waits, "in uel at 5 of 9", Unfinished},
          {"uel", kAtUel, kBurning + kEnd, Waits, "after uel", Unfinished},
          {"burned", kAtUel, kBurning + kEnd, Waits, "after uel", Unannounced},
          {"mid-burn-reply", kAtUel, kBurning + arriving(8) + kEnd, Waits, "after uel",
           Unannounced},
          {"burn-reply", kAtUel, kBurning + arriving(16) + kBurned, Done, "after uel", Updated},
      });
}

// It takes in and burns what it is sent, but nobody hears of it.
std::vector<NetworkCell> silent() {
  using enum Afterwards;
  return struck(
      "is silent", "says nothing more", "silence", "fault",
      {
          {"connect", kAtStart, kAwaitingResponse, Waits, "after id-request", Asked},
          {"mid-status-off", kAtStatusOff, kAwaitingResponse, Waits, "after id-request", Asked},
          {"status-off", kAtStatusOff, kAwaitingResponse, Waits, "after id-request", Asked},
          {"mid-id-request", kAtRequest, kAwaitingResponse, Waits, "after id-request", Asked},
          {"id-request", kAtRequest, kAwaitingResponse, Waits, "after id-request", Asked},
          {"mid-id-response", kAtRequest, kHalfResponse, Waits, "after id-request", Asked},
          {"id-response", kAtRequest, kResponseOnly, Waits, "after id-request", Asked},
          {"mid-device-id", kAtRequest, kHalfOfReplies, Waits, "after id-request", Asked},
          {"device-id", kAtRequest, kBurning, Waits, "after uel", Unannounced},
          {"mid-burn-header", kAtHeader, kBurning, Waits, "after uel", Unannounced},
          {"burn-header", kAtHeader, kBurning, Waits, "after uel", Unannounced},
          {"first-image-byte", kAtImage, kBurning, Waits, "after uel", Unannounced},
          {"mid-image", kAtImage, kBurning, Waits, "after uel", Unannounced},
          {"last-image-byte", kAtImage, kBurning, Waits, "after uel", Unannounced},
          {"image", kAtImage, kBurning, Waits, "after uel", Unannounced},
          {"mid-uel", kAtUel, kBurning, Waits, "after uel", Unannounced},
          {"uel", kAtUel, kBurning, Waits, "after uel", Unannounced},
          {"burned", kAtUel, kBurning, Waits, "after uel", Unannounced},
          {"mid-burn-reply", kAtUel, kBurning + arriving(8), Waits, "after uel", Unannounced},
          {"burn-reply", kAtUel, kBurning + arriving(16) + kBurned, Done, "after uel", Updated},
      });
}

// It neither says nor takes anything: a pulled cable looks the same from here.
std::vector<NetworkCell> frozen() {
  using enum Afterwards;
  return struck(
      "freezes", "neither says nor takes anything more", "hang", "fault",
      {
          {"connect", kAtStart, kAwaitingResponse, Waits, "before status-off", Untouched},
          {"mid-status-off", kAtStatusOff, kAwaitingResponse, Waits, "in status-off at 17 of 34",
           Untouched},
          {"status-off", kAtStatusOff, kAwaitingResponse, Waits, "after status-off", Untouched},
          {"mid-id-request", kAtRequest, kAwaitingResponse, Waits, "in id-request at 30 of 59",
           Untouched},
          {"id-request", kAtRequest, kAwaitingResponse, Waits, "after id-request", Asked},
          {"mid-id-response", kAtRequest, kHalfResponse, Waits, "after id-request", Asked},
          {"id-response", kAtRequest, kResponseOnly, Waits, "after id-request", Asked},
          {"mid-device-id", kAtRequest, kHalfOfReplies, Waits, "after id-request", Asked},
          {"device-id", kAtRequest, kBurning, Waits, "after id-request", Asked},
          {"mid-burn-header", kAtHeader, kBurning, Waits, "in burn-header at 25 of 50", Asked},
          {"burn-header", kAtHeader, kBurning, Waits, "in image at 0 of 28", Unfinished},
          {"first-image-byte", kAtImage, kBurning, Waits, "in image at 1 of 28", Unfinished},
          {"mid-image", kAtImage, kBurning, Waits, "in image at 14 of 28", Unfinished},
          {"last-image-byte", kAtImage, kBurning, Waits, "in image at 27 of 28", Unfinished},
          {"image", kAtImage, kBurning, Waits, "after image", Unfinished},
          {"mid-uel", kAtUel, kBurning, Waits, "in uel at 5 of 9", Unfinished},
          {"uel", kAtUel, kBurning, Waits, "after uel", Unfinished},
      });
}

// It ends its own direction and still takes everything.
std::vector<NetworkCell> halfClosed() {
  using enum Afterwards;
  return struck(
      "ends its side", "ends its side of the connection and listens on", "shutdown", "performed",
      {
          {"connect", kAtStart, kRequestWritten + kEnd + kReady + kAwaitResponse, Waits,
           "after id-request", Asked},
          {"mid-status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse, Waits,
           "after id-request", Asked},
          {"status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse, Waits,
           "after id-request", Asked},
          {"mid-id-request", kAtRequest, kAwaitingResponse + kEnd, Waits, "after id-request",
           Asked},
          {"id-request", kAtRequest, kAwaitingResponse + kEnd, Waits, "after id-request", Asked},
          {"mid-id-response", kAtRequest, kHalfResponse + kEnd, Waits, "after id-request", Asked},
          {"id-response", kAtRequest, kResponseOnly + kEnd, Waits, "after id-request", Asked},
          {"mid-device-id", kAtRequest, kHalfOfReplies + kEnd, Waits, "after id-request", Asked},
          {"device-id", kAtRequest,
           kIdentified + kImageWritten + kEnd + kReady + kUel + kReady + kAwaitBurn, Waits,
           "after uel", Unannounced},
          {"mid-burn-header", kAtHeader,
           kIdentified + kImageWritten + kEnd + kReady + kUel + kReady + kAwaitBurn, Waits,
           "after uel", Unannounced},
          {"burn-header", kAtHeader,
           kIdentified + kImageWritten + kEnd + kReady + kUel + kReady + kAwaitBurn, Waits,
           "after uel", Unannounced},
          {"first-image-byte", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn,
           Waits, "after uel", Unannounced},
          {"mid-image", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn, Waits,
           "after uel", Unannounced},
          {"last-image-byte", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn,
           Waits, "after uel", Unannounced},
          {"image", kAtImage, kIdentified + kUelWritten + kEnd + kReady + kAwaitBurn, Waits,
           "after uel", Unannounced},
          {"mid-uel", kAtUel, kBurning + kEnd, Waits, "after uel", Unannounced},
          {"uel", kAtUel, kBurning + kEnd, Waits, "after uel", Unannounced},
          {"burned", kAtUel, kBurning + kEnd, Waits, "after uel", Unannounced},
          {"mid-burn-reply", kAtUel, kBurning + arriving(8) + kEnd, Waits, "after uel",
           Unannounced},
          {"burn-reply", kAtUel, kBurning + arriving(16) + kBurned, Done, "after uel", Updated},
      });
}

}  // namespace

const std::vector<NetworkCell>& networkCells() {
  static const std::vector<NetworkCell> all = [] {
    std::vector<NetworkCell> cells;
    for (const auto& column :
         {closed(), broken(), silent(), frozen(), halfClosed(), replyCells(), surroundingCells()}) {
      cells.insert(cells.end(), column.begin(), column.end());
    }
    for (NetworkCell& cell : cells) {
      if (cell.verdict != Verdict::NotStarted) cell.log = kNetworkPrinterChosen + cell.log;
    }
    return cells;
  }();
  return all;
}

const std::vector<PoorNetworkCell>& poorNetworkCells() {
  struct Condition {
    const char* what;
    std::vector<std::string> netem;
  };
  static const std::vector<PoorNetworkCell> all = [] {
    const std::vector<Condition> conditions{
        {"5 % of the packets are lost", {"loss", "5%"}},
        {"each packet takes 100 ms", {"delay", "100ms"}},
        {"25 % of the packets overtake others", {"delay", "20ms", "reorder", "25%"}},
        {"10 % of the packets come twice", {"duplicate", "10%"}},
        {"all of that", {"delay", "100ms", "reorder", "25%", "loss", "5%", "duplicate", "10%"}}};
    std::vector<PoorNetworkCell> cells;
    for (const Condition& condition : conditions) {
      PoorNetworkCell cell;
      cell.table = "poor network";
      cell.when = "throughout";
      cell.what = condition.what;
      cell.conditions = condition.netem;
      cell.afterwards = Afterwards::Updated;
      cell.firmwareSize = 100000;
      cell.inAnyPieces = true;
      cell.position = "after uel";
      cell.log = kNetworkPrinterChosen + kAwaitingResponse + kAwaitingDeviceId + kAwaitingBurn +
                 kBurned + kTransportGone;
      std::ranges::replace(cell.log, "5 Async write request for 28 bytes.",
                           "5 Async write request for 100000 bytes.");
      std::ranges::replace(cell.log, "5 This will take some time; using a timeout of 3000ms.",
                           "5 This will take some time; using a timeout of 6000ms.");
      cells.push_back(cell);
    }
    return cells;
  }();
  return all;
}

std::vector<NetworkCell> interruptedCells(Verdict verdict) {
  std::vector<NetworkCell> cells = silent();
  std::erase_if(cells, [](const NetworkCell& cell) { return cell.verdict != Verdict::Waits; });
  for (NetworkCell& cell : cells) {
    cell.table = verdict == Verdict::Killed ? "killed" : "interrupted";
    cell.verdict = verdict;
    cell.log.clear();
  }
  return cells;
}

Lines withoutArrivals(const Lines& lines) {
  Lines result;
  std::ranges::copy_if(lines, std::back_inserter(result), [](const std::string& line) {
    return !line.starts_with("5 Network data arriving [");
  });
  return result;
}
