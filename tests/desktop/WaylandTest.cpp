// The program on a Wayland compositor, by keys. Clicks are not tried: the compositor gets no
// pointer while its window is full screen, and in a framed one clicks would need the frame's offset
// and the place of a sheet, which a program does not learn. Nor are closing, moving and resizing by
// a frame (the X server knows none of the windows), the keyboard's way back to the window below
// when a sheet goes (the compositor takes it from the sheet and gives it to none), and what a paste
// would insert.
#include <gmock/gmock.h>

#include <thread>

#include "DesktopTest.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;
using testing::HasSubstr;
using testing::StartsWith;

class OnWayland : public DesktopTest {
 protected:
  OnWayland() : DesktopTest(1280, 800) { useWayland(); }

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
  const auto shown = desktop::findNode(
      program().pid(), [](const Node& node) { return node.name() == "Log of this download"; }, 20s);
  ASSERT_TRUE(shown);
  EXPECT_THAT(shown->text(), HasSubstr(" error: The firmware download failed on the printer."));
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

}  // namespace
