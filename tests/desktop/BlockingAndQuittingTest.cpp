// What a sheet blocks, and how the program ends in each of its states.
#include <gmock/gmock.h>
#include <signal.h>

#include <thread>

#include "DesktopTest.h"

namespace {

using namespace std::chrono_literals;

constexpr char kWindow[] = "Printer Firmware Update";

class SheetBlocksItsWindow : public DesktopTest {
 protected:
  // Everything by which somebody could ask for a download or the end, behind the sheet.
  void tryEverythingBehindTheSheet() {
    for (const char* name : {"Download", "Quit"}) {
      for (const char* role : {"push button", "menu item"}) {
        if (const auto node = desktop::findNode(
                program().pid(),
                [&](const desktop::Node& each) {
                  return each.role() == role && each.name() == name;
                },
                0ms)) {
          node->activate();
        }
      }
    }
    const auto window = desktop::findNode(program().pid(), "push button", "Download", 0ms);
    if (window) click(*window);
    press("ctrl+d");
    press("ctrl+q");
    desktop().closeWindow(kWindow);
    // What the above could have set off has had its turn when the program answers again.
    std::this_thread::sleep_for(300ms);
    desktop::findApplication(program().pid());
  }
};

TEST_F(SheetBlocksItsWindow, TheQuestionLetsNothingThrough) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  tryEverythingBehindTheSheet();
  EXPECT_TRUE(programRuns());
  EXPECT_TRUE(isOnScreen("push button", "Yes"));
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
  waitForActive("Confirm the Download");
  press("Escape");
  EXPECT_TRUE(waitUntilGone("push button", "Yes"));
}

TEST_F(SheetBlocksItsWindow, TheProgressLetsNothingThrough) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "6"});
  startProgram();
  startUpdate("Office");
  tryEverythingBehindTheSheet();
  press("Escape");
  desktop().closeWindow("Updating Firmware");
  EXPECT_TRUE(programRuns());
  progressBar();
  printer->waitFor("burn");
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 1u);
}

TEST_F(SheetBlocksItsWindow, TheFailureLetsNothingThrough) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  button("Close");
  tryEverythingBehindTheSheet();
  EXPECT_TRUE(programRuns());
  EXPECT_TRUE(isOnScreen("push button", "Close"));
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 1u);
  waitForActive("Download Failed");
  press("Escape");
  EXPECT_TRUE(waitUntilGone("push button", "Close"));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
}

class QuittingEndsWell : public DesktopTest {
 protected:
  int statusOfEnd() { return program().waitForExit(20s).value_or(-1); }

  void expectTidyEnd() {
    EXPECT_EQ(statusOfEnd(), 0) << program().output();
    EXPECT_EQ(timesLogged("Cleaning up firmware downloader."), 1u);
  }
};

TEST_F(QuittingEndsWell, ByTheMenuKey) {
  startProgram();
  press("ctrl+q");
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, ByTheMenu) {
  startProgram();
  press("alt+p");
  const auto quit = desktop::findNode(program().pid(), "menu item", "Quit", 10s);
  ASSERT_TRUE(quit);
  keepPicture("menu");
  click(*quit);
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, ByClosingTheWindow) {
  startProgram();
  EXPECT_TRUE(desktop().closeWindow(kWindow));
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, WithPrintersInTheList) {
  const auto printer = startPrinter("Office");
  startProgram();
  click(cell("Office"));
  enabledButton("Download");
  EXPECT_TRUE(desktop().closeWindow(kWindow));
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, WhileAPrinterIsBeingResolved) {
  const auto printer = startPrinter("Office");
  startProgram();
  program().signal(SIGTERM);
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, AtTheEndOfTheSessionDuringTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  program().signal(SIGTERM);
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, AtTheEndOfTheSessionDuringADownload) {
  const auto printer = startPrinter("Office", {"--fault", "silence@id-request"});
  startProgram();
  startUpdate("Office");
  EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
  program().signal(SIGTERM);
  expectTidyEnd();
  EXPECT_EQ(timesLogged("Cleaning up network transport."), 1u);
}

TEST_F(QuittingEndsWell, AtTheEndOfTheSessionUnderAnAlert) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  button("Close");
  program().signal(SIGTERM);
  expectTidyEnd();
}

}  // namespace
