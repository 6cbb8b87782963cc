#include "NetworkCellUpdate.h"

#include <gmock/gmock.h>

#include <chrono>

#include "CellProcess.h"

namespace {

constexpr std::size_t kDroppedLines = 2;

void expectOutcome(Application& application, const std::string& command,
                   const std::string& screen) {
  EXPECT_TRUE(application.runUntil([&] { return !application.outcome().empty(); }));
  EXPECT_EQ(application.outcome(), command);
  EXPECT_EQ(application.onScreen(), screen);
}

}  // namespace

void holdUntilFault(const NetworkCell& cell, Application& application,
                    VirtualPrinterProcess& printer) {
  if (cell.event.empty()) return;
  if (!cell.heldAt.empty()) {
    EXPECT_TRUE(application.runUntil([&] {
      return !application.log().empty() && application.log().back() == "5 " + cell.heldAt;
    })) << joined(application.log());
  }
  printer.waitFor(cell.event);
}

void expectEnd(const NetworkCell& cell, Application& application) {
  switch (cell.verdict) {
    case Verdict::Updated:
      expectOutcome(application, "DlOk", "PrinterSelectWindow");
      break;
    case Verdict::UpToDate:
      expectOutcome(application, "DlUd", "[PrinterSelectWindow] [ProgressSheet] UpToDateSheet");
      break;
    default:
      expectOutcome(application, "DlNo", "[PrinterSelectWindow] [ProgressSheet] FailedSheet");
      break;
  }
  EXPECT_EQ(application.closeAlert(), cell.verdict != Verdict::Updated);
  EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
}

void quitWhileWaiting(const NetworkCell& cell, Application& application) {
  const std::size_t expected = cell.log.size() - kDroppedLines;
  EXPECT_TRUE(
      application.runUntil([&] { return seenLog(cell, application.log()).size() >= expected; }));
  application.pass(std::chrono::minutes(10));
  EXPECT_EQ(application.outcome(), "");
  EXPECT_EQ(application.onScreen(), "[PrinterSelectWindow] ProgressSheet");
  EXPECT_TRUE(application.chooseQuit());
}

Lines seenLog(const NetworkCell& cell, const Lines& log) {
  return cell.inAnyPieces ? withoutArrivals(log) : log;
}
