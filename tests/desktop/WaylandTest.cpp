// The program on Wayland compositors: by keys on weston, by clicks on sway. Menus are not clicked,
// since a program does not learn where they are; and nothing is closed, moved or resized by a
// frame, since the compositors give none.
#include <gmock/gmock.h>

#include <thread>

#include "DesktopTest.h"

namespace {

using desktop::Compositor;
using namespace std::chrono_literals;
using desktop::Node;
using testing::HasSubstr;
using testing::StartsWith;

class OnACompositor : public DesktopTest {
 protected:
  OnACompositor(int width, int height, Compositor::Kind kind) : DesktopTest(width, height) {
    useWayland(kind);
  }

  void expectDetails() {
    const auto shown = desktop::findNode(
        program().pid(), [](const Node& node) { return node.name() == "Log of this download"; },
        20s);
    ASSERT_TRUE(shown);
    EXPECT_THAT(shown->text(), HasSubstr(" error: The firmware download failed on the printer."));
  }
};

class OnWayland : public OnACompositor {
 protected:
  OnWayland() : OnACompositor(1280, 800, Compositor::Kind::Weston) {}

  void startUpdateByKeys(const std::string& printer) {
    cell(printer);
    press("Home");
    enabledButton("Download");
    press("Return");
    labelWith(printer + " (");
    answerByKey("alt+d", "Download firmware");
    progressBar();
  }
};

TEST_F(OnWayland, KeysUpdateFromTheListToTheFlash) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "4"});
  startProgram();
  EXPECT_FALSE(desktop().windowSize("Printer Firmware Update"));  // of the X server
  keepPicture("1-list");
  startUpdateByKeys("Office");
  labelWith("The printer is writing its memory: this may take up to 51 second");
  keepPicture("2-writing");
  const Node outcome = labelWith(" was updated to version 200 at ");
  EXPECT_THAT(outcome.name(), StartsWith("Office ("));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  keepPicture("3-done");
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_BRAND_SHA256);
  EXPECT_EQ(printer->stop(), 0);
}

TEST_F(OnWayland, FailureHasItsDetailsByKeys) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdateByKeys("Office");
  waitForActive("Download Failed");
  labelWith("The firmware was not updated.");
  labelWith("The printer refused the firmware.");
  keepPicture("1-failed");
  std::this_thread::sleep_for(1s);  // the alert takes nothing before
  press("alt+d");
  expectDetails();
  keepPicture("2-details");
  press("alt+o");
  button("Details copied");
  answerByKey("Escape", "Close");
  EXPECT_TRUE(cell("Office").isSelected());
}

TEST_F(OnWayland, QuittingADownloadAsksFirst) {
  const auto printer = startPrinter("Office", {"--fault", "silence@id-request"});
  startProgram();
  startUpdateByKeys("Office");
  waitForActive("Updating Firmware");
  press("ctrl+q");
  button("Quit anyway");
  keepPicture("1-question");
  EXPECT_TRUE(programRuns());
  answerByKey("alt+q", "Quit anyway");
  EXPECT_EQ(program().waitForExit(20s).value_or(-1), 0) << program().output();
  EXPECT_EQ(timesLogged("Cleaning up network transport."), 1u);
}

TEST_F(OnWayland, PrinterThatIsUpToDateIsNamedInDoubleSize) {
  const auto printer = startPrinter("Office", {"--fwver", "200"});
  startProgram({{"QT_SCALE_FACTOR", "2"}});
  const auto window = desktop::findNode(program().pid(), "frame", "Printer Firmware Update", 20s);
  ASSERT_TRUE(window);
  EXPECT_EQ(window->extents().width, 640);
  EXPECT_EQ(window->extents().height, 400);
  startUpdateByKeys("Office");
  labelWith("The printer is up to date.");
  keepPicture("1-up-to-date");
  answerByKey("Return", "Close");
}

// The compositor's frame needs room around it.
class ByClicksOnWayland : public OnACompositor {
 protected:
  ByClicksOnWayland() : OnACompositor(1400, 900, Compositor::Kind::Sway) {}
};

TEST_F(ByClicksOnWayland, UpdateFromTheListToTheFlash) {
  const auto printer = startPrinter("Office");
  startProgram();
  EXPECT_FALSE(desktop().windowSize("Printer Firmware Update"));  // of the X server
  askForUpdate("Office");
  waitForActive("Confirm the Download");
  keepPicture("1-question");
  answer("Do not download");
  EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
  startUpdate("Office");
  labelWith(" was updated to version 200 at ");
  keepPicture("2-done");
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_BRAND_SHA256);
}

TEST_F(ByClicksOnWayland, FailureIsCopiedAndTheWindowHasTheKeyboardAgain) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  waitForActive("Download Failed");
  std::this_thread::sleep_for(1s);  // the alert takes nothing before
  click(button("Details"));
  expectDetails();
  click(button("Copy details"));
  button("Details copied");
  keepPicture("details");
  EXPECT_THAT(compositor().clipboard(),
              testing::AllOf(StartsWith("The firmware was not updated.\nOffice ("),
                             HasSubstr(" error: The firmware download failed on the printer.")));
  answer("Close");
  waitForActive("Printer Firmware Update");
  press("Return");
  answerByKey("Escape", "Do not download");
}

}  // namespace
