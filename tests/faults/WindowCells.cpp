#include "WindowCells.h"

#include <algorithm>
#include <regex>

#include "DownloadLog.h"

namespace {

using enum Afterwards;

struct Phase {
  const char* when;
  std::vector<std::string> faults;
  std::size_t firmwareSize;
  Lines log;
  const char* position;
  Afterwards afterwards;
};

const Lines kChosenByWindow{"5 Downloading firmware to Bonjour printer: Office(10.91.0.1)"};

const Phase& awaiting() {
  static const Phase phase{"while the response is awaited",     {"silence@id-request"}, 28,
                           kChosenByWindow + kAwaitingResponse, "after id-request",     Asked};
  return phase;
}

// The printer takes half of it and no more.
const Phase& sending() {
  static const Phase phase{"while the firmware is sent",
                           {"merge", "hang@mid-image", "receive-buffer=65536"},
                           16777216,
                           kChosenByWindow + kMergedReplies + kImageWriting +
                               Lines{"5 Async write request for 16777216 bytes."},
                           "in image at ",
                           Unfinished};
  return phase;
}

const Phase& burning() {
  static const Phase phase{"while the printer burns",
                           {"merge", "silence@uel"},
                           28,
                           kChosenByWindow + kMergedReplies + kAwaitingBurn,
                           "after uel",
                           Unannounced};
  return phase;
}

WindowCell windowCell(const char* table, const char* what, WindowFault fault, const Phase& phase) {
  WindowCell cell;
  cell.table = table;
  cell.when = phase.when;
  cell.what = what;
  cell.fault = fault;
  cell.faults = phase.faults;
  cell.firmwareSize = phase.firmwareSize;
  cell.verdict = Verdict::Quits;
  cell.afterwards = phase.afterwards;
  cell.log = phase.log;
  cell.position = phase.position;
  return cell;
}

// Nothing interrupts a send; it fails after five seconds, and the program ends right after it.
WindowCell ended(const char* what, WindowFault fault, const Phase& phase) {
  WindowCell cell = windowCell("window: closed", what, fault, phase);
  cell.log = cell.log + (cell.firmwareSize == 28 ? kDropped
                                                 : kWriteFailed + kTransportGone +
                                                       Lines{"5 Cleaning up firmware downloader."});
  return cell;
}

WindowCell killed(const Phase& phase) {
  WindowCell cell = windowCell("window: killed", "kill it", WindowFault::Killed, phase);
  cell.verdict = Verdict::Killed;
  cell.exitStatus = 137;
  // What the system has taken it still sends, to a printer that still reads.
  if (cell.firmwareSize != 28) cell.faults = {"merge", "slow=65536/19"};
  return cell;
}

WindowCell askedForAnother() {
  Phase phase = burning();
  phase.faults = {"merge"};
  phase.log = phase.log + kBurned + kTransportGone;
  WindowCell cell =
      windowCell("window: second download", "ask for another download, by all that there is",
                 WindowFault::AnotherDownload, phase);
  cell.verdict = Verdict::Updated;
  cell.afterwards = Updated;
  return cell;
}

// In both phases the printer goes on by itself.
Phase awaitingOn() {
  Phase phase = burning();
  phase.when = awaiting().when;
  phase.faults = {"merge", "delay@id-request=4000"};
  return phase;
}

Phase burningOn() {
  Phase phase = burning();
  phase.faults = {"merge"};
  return phase;
}

WindowCell without(const char* what, WindowFault fault, Phase phase) {
  phase.log = phase.log + kBurned + kTransportGone;
  phase.position = "after uel";
  WindowCell cell = windowCell("window: services", what, fault, phase);
  cell.verdict = Verdict::Updated;
  cell.afterwards = Updated;
  return cell;
}

}  // namespace

const std::vector<WindowCell>& windowCells() {
  static const std::vector<WindowCell> all{
      ended("close the window, and say so again when you are asked", WindowFault::Closed,
            awaiting()),
      ended("close the window", WindowFault::Closed, sending()),
      ended("close the window, and say so again when you are asked", WindowFault::Closed,
            burning()),
      ended("press Ctrl+Q", WindowFault::QuitByKey, sending()),
      ended("choose Quit, and say so again when you are asked", WindowFault::QuitByMenu, burning()),
      ended("log out, or send SIGTERM", WindowFault::Terminated, awaiting()),
      ended("log out, or send SIGTERM", WindowFault::Terminated, sending()),
      ended("log out, or send SIGTERM", WindowFault::Terminated, burning()),
      killed(awaiting()),
      killed(sending()),
      killed(burning()),
      askedForAnother(),
      without("the system bus ends, and the Avahi daemon with it", WindowFault::BusEnds,
              awaitingOn()),
      without("the Avahi daemon is restarted", WindowFault::DaemonRestarts, awaitingOn()),
      without("the system bus ends, and the Avahi daemon with it", WindowFault::BusEnds,
              burningOn()),
      without("the Avahi daemon ends", WindowFault::DaemonEnds, burningOn()),
      without("the Avahi daemon is restarted", WindowFault::DaemonRestarts, burningOn()),
  };
  return all;
}

Lines ofTheUpdate(const Lines& log) {
  static const std::regex others(
      "Network data arriving .*|Bonjour service .*|usb_M.*|(->|<-) .*|"
      "(Adding|Removing) printer .*|List selection changed.*");
  Lines lines;
  for (const std::string& line : log) {
    const bool hasPriority = line.size() > 2 && line[1] == ' ' && line[0] >= '0' && line[0] <= '7';
    const std::string text = hasPriority ? line.substr(2) : line;
    const bool begins = text.starts_with("Downloading firmware to ");
    if ((!lines.empty() || begins) && !std::regex_match(text, others)) lines.push_back(text);
  }
  return lines;
}
