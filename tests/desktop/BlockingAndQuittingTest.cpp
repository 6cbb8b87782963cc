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
  // Everything by which somebody could ask for a download behind the sheet.
  void tryEverythingBehindTheSheet() {
    for (const char* role : {"push button", "menu item"}) {
      if (const auto node = desktop::findNode(
              program().pid(),
              [&](const desktop::Node& each) {
                return each.role() == role && each.name() == "Download";
              },
              0ms)) {
        node->activate();
      }
    }
    const auto window = desktop::findNode(program().pid(), "push button", "Download", 0ms);
    if (window) click(*window);
    press("ctrl+d");
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
  EXPECT_TRUE(isOnScreen("push button", "Download firmware"));
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
  answerByKey("Escape", "Download firmware");
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
  answerByKey("Escape", "Close");
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
}

class QuittingEndsWell : public DesktopTest {
 protected:
  // With the mouse.
  void chooseQuit() {
    const auto menu = desktop::findNode(program().pid(), "menu item", "Printer", 10s);
    ASSERT_TRUE(menu);
    click(*menu);
    const auto quit = desktop::findNode(program().pid(), "menu item", "Quit", 10s);
    ASSERT_TRUE(quit);
    keepPicture("menu");
    click(*quit);
  }

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
  chooseQuit();
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

TEST_F(QuittingEndsWell, ByTheMenuKeyDuringTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  waitForActive("Confirm the Download");
  press("ctrl+q");
  expectTidyEnd();
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
}

TEST_F(QuittingEndsWell, ByTheMenuDuringTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  chooseQuit();
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, ByClosingTheWindowDuringTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  EXPECT_TRUE(desktop().closeWindow(kWindow));
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, ByClosingTheWindowUnderAnAlert) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  button("Close");
  EXPECT_TRUE(desktop().closeWindow(kWindow));
  expectTidyEnd();
}

TEST_F(QuittingEndsWell, ByTheMenuKeyUnderAnAlert) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  waitForActive("Download Failed");
  press("ctrl+q");
  expectTidyEnd();
}

// The printer says nothing more, and nothing ends the waiting for it.
class QuittingADownload : public QuittingEndsWell {
 protected:
  void startEndlessUpdate() {
    mPrinter = startPrinter("Office", {"--fault", "silence@id-request"});
    startProgram();
    startUpdate("Office");
    EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
    waitForActive("Updating Firmware");
  }

  void expectEndAfterTheQuestion() {
    button("Quit anyway");
    EXPECT_TRUE(programRuns());
    answer("Quit anyway");
    expectTidyEnd();
    EXPECT_EQ(timesLogged("Cleaning up network transport."), 1u);
  }

 private:
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
};

TEST_F(QuittingADownload, ByTheMenuKey) {
  startEndlessUpdate();
  press("ctrl+q");
  button("Keep downloading");
  keepPicture("question");
  expectEndAfterTheQuestion();
}

TEST_F(QuittingADownload, ByTheFrameOfTheProgress) {
  startEndlessUpdate();
  press("alt+F4");
  expectEndAfterTheQuestion();
}

TEST_F(QuittingADownload, ASignalAsksNothing) {
  startEndlessUpdate();
  press("ctrl+q");
  button("Quit anyway");
  program().signal(SIGHUP);
  expectTidyEnd();
}

TEST_F(QuittingADownload, HeldKeyDoesNotAnswerTheQuestion) {
  startEndlessUpdate();
  desktop().holdDown("Control_L");
  desktop().holdDown("q");
  button("Quit anyway");
  std::this_thread::sleep_for(3s);
  desktop().letGo("q");
  desktop().letGo("Control_L");
  EXPECT_TRUE(programRuns());
  EXPECT_TRUE(isOnScreen("push button", "Quit anyway"));
  answerByKey("Escape", "Quit anyway");
  progressBar();
  EXPECT_TRUE(programRuns());
}

TEST_F(QuittingEndsWell, AnswerOfThePrinterTakesTheQuestionAway) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "4", "--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  press("ctrl+q");
  button("Keep downloading");
  button("Close");
  EXPECT_FALSE(isOnScreen("push button", "Quit anyway"));
  answer("Close");
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
}

TEST_F(QuittingEndsWell, WhereTheFileOfAnAlertIsMissing) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  const auto executable = copyInstallation();
  std::filesystem::remove(executable.parent_path().parent_path() /
                          "share/fwupdate/main.nib/FailedSheet.ui");
  startProgramAt(executable);
  startUpdate("Office");
  EXPECT_TRUE(
      waitForLog("Failed to create FailedSheet window. <status=-10962 => "
                 "kIBCarbonRuntimeCantFindObject; desc: The interface file holds no such object>"));
  press("ctrl+q");
  answer("Quit anyway");
  expectTidyEnd();
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
