#include "networkSurroundings.h"

#include "DownloadLog.h"
#include "networkSteps.h"

namespace {

using enum Afterwards;

const Lines kWithdrawal{
    "5 Bonjour service callback: flags=0x8, service: Office._pdl-datastream._tcp.local",
    "5 <- Removing: Office._pdl-datastream._tcp.local",
    "5 List selection changed: status=0 first=0 last=0", "5 Removing printer with ID=1"};

std::vector<NetworkCell> withdrawn() {
  std::vector<NetworkCell> cells;
  for (std::size_t i = 1; i < networkSteps().size(); ++i) {
    NetworkCell cell;
    cell.table = "withdrawn";
    cell.when = networkSteps()[i].during;
    cell.what = "goes from the list";
    cell.surrounding = Surrounding::Withdrawn;
    cell.step = i;
    cell.verdict = Verdict::Updated;
    cell.afterwards = Updated;
    cell.inAnyPieces = true;
    cell.position = "after uel";
    cell.log = goodUpdate(i, kWithdrawal);
    cells.push_back(cell);
  }
  return cells;
}

NetworkCell notStarted(const char* when, Surrounding surrounding, const Lines& log) {
  NetworkCell cell;
  cell.table = "withdrawn";
  cell.when = when;
  cell.what = "goes from the list";
  cell.surrounding = surrounding;
  cell.verdict = Verdict::NotStarted;
  cell.afterwards = Untouched;
  cell.log = log;
  return cell;
}

NetworkCell around(const char* when, const char* what, Surrounding surrounding, Verdict verdict,
                   const Lines& log) {
  NetworkCell cell;
  cell.table = "no connection";
  cell.when = when;
  cell.what = what;
  cell.surrounding = surrounding;
  cell.verdict = verdict;
  cell.afterwards = Untouched;
  cell.log = log;
  return cell;
}

}  // namespace

std::vector<NetworkCell> surroundingCells() {
  std::vector<NetworkCell> cells = withdrawn();
  cells.push_back(
      notStarted("before Download is pressed", Surrounding::WithdrawnBefore, kWithdrawal));
  cells.push_back(notStarted("while you are asked", Surrounding::WithdrawnAsked,
                             kWithdrawal + Lines{"3 Failed to download firmware: Invalid list "
                                                 "selection"}));
  cells.push_back(around("before the connection stands", "does not answer at its address",
                         Surrounding::Unreachable, Verdict::Waits, kConnecting + kDropped));
  cells.push_back(around("before the connection stands",
                         "is not reached: the process has no descriptor left",
                         Surrounding::NoDescriptors, Verdict::Failed,
                         kConnecting +
                             Lines{"3 General runtime error occurred during async task: Unable to "
                                   "connect to socket"} +
                             kTransportGone));
  return cells;
}
