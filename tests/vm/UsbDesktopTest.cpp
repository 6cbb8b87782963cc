// The installed program in a real window, with printers on a real USB bus.
#include <gmock/gmock.h>
#include <signal.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "DesktopTest.h"
#include "OtherProgram.h"
#include "Places.h"
#include "ShellCommand.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPrinter[] = "Veltra KX350T";

class UsbFromTheWindow : public DesktopTest {
 protected:
  // With an image that an emulated bus carries within the time-out of a write.
  void startWithSmallFirmware() {
    const auto program = copyInstallation();
    replaceFirmware(program, builtFile("tests/vm/firmware/small/product.brand.bin"));
    mTool = (program.parent_path() / "fwupdatectl").string();
    startProgramAt(program);
  }

  void download(const std::string& serial) {
    click(cell(serial));
    click(enabledButton("Download"));
  }

  bool waitForRows(std::size_t count) {
    return desktop::waitUntil([&] { return printersInList().size() == count; }, 60s);
  }

  std::string mTool;  // beside the program with the small firmware
};

TEST_F(UsbFromTheWindow, AnAttachedPrinterIsUpdatedWithoutAQuestion) {
  // The program waits 6 seconds for the burn of an image of this size.
  UsbPrinterProcess printer({"--burn-seconds", "5"});
  startWithSmallFirmware();
  cell(kPrinter);
  cell("USB");
  keepPicture("1-list");
  download("VP000001");
  EXPECT_TRUE(waitForLog("Connecting to I/O transport..."));
  EXPECT_FALSE(isOnScreen("push button", "Download firmware"));
  labelWith("Veltra KX350T (VP000001)");
  keepPicture("2-progress");
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  const auto burn = printer.last("burn");
  EXPECT_TRUE(burn.value("ok", false));
  EXPECT_EQ(burn.value("sha256", ""), SMALL_FIRMWARE_SHA256);
  EXPECT_EQ(printer.count("violation"), 0u);
}

TEST_F(UsbFromTheWindow, AnUpdatedPrinterReturnsAndIsUpToDate) {
  UsbPrinterProcess printer({"--burn-seconds", "0.2", "--return-seconds", "0.5"});
  startWithSmallFirmware();
  download("VP000001");
  EXPECT_TRUE(waitForLog("Removed Veltra KX350T device with serial number VP000001"));
  EXPECT_TRUE(waitForLog("Adding printer with ID=2"));
  download("VP000001");
  labelWith("The printer is up to date.");
  click(button("Close"));
  EXPECT_TRUE(waitUntilGone("push button", "Close"));
  EXPECT_EQ(printer.count("burn"), 1u);
}

TEST_F(UsbFromTheWindow, AFailedBurnIsSaid) {
  UsbPrinterProcess printer({"--burn-seconds", "0.2", "--fault", "fail-burn"});
  startWithSmallFirmware();
  download("VP000001");
  labelWith("The firmware was not updated.");
  EXPECT_EQ(timesLogged("The firmware download failed on the printer."), 1u);
  EXPECT_TRUE(desktop::waitUntil([] { return kernelDriver() == "usblp"; }, 60s));
}

// How long the program looks for its name does not depend on how slow the machine is.
TEST_F(UsbFromTheWindow, AProgramThatHasThePrinterIsTold) {
  UsbPrinterProcess printer;
  startWithSmallFirmware();
  {
    cell("VP000001");
    const OtherProcess other("ipp-usb", "VP000001", 1);
    download("VP000001");
    labelWith("The firmware was not updated.");
    keepPicture("in-use");
    EXPECT_THAT(log(),
                testing::Contains(testing::StartsWith("The printer's interface is in use by ")));
  }
  click(button("Close"));
  EXPECT_TRUE(waitUntilGone("push button", "Close"));
  click(enabledButton("Download"));
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
}

TEST_F(UsbFromTheWindow, IsNamedByTheTool) {
  const UsbPrinterProcess printer({"--fault", "silence@id-request"});
  startWithSmallFirmware();
  download("VP000001");
  EXPECT_TRUE(desktop::waitUntil([&] { return printer.count("fault") == 1; }, 60s));
  const Outcome outcome = runInShell("'" + mTool + "' update --quiet --serial VP000001 </dev/null");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "Veltra KX350T (VP000001): failed: The program fwupdate is using the printer’s USB "
            "connection. Wait until it has finished, then try again.\n");
}

TEST_F(UsbFromTheWindow, APrinterComesAndGoesWithItsCable) {
  startProgram();
  EXPECT_THAT(printersInList(), IsEmpty());
  {
    const auto plugged = steady_clock::now();
    UsbPrinterProcess printer;
    ASSERT_TRUE(waitForLog("Adding printer with ID=1"));
    const std::chrono::duration<double> time = steady_clock::now() - plugged;
    std::printf("from the start of the printer to its row: %.3f s\n", time.count());
    cell("VP000001");
  }
  EXPECT_TRUE(waitForLog("Removing printer with ID=1"));
  EXPECT_TRUE(waitForRows(0));
  UsbPrinterProcess again;
  EXPECT_TRUE(waitForLog("Adding printer with ID=2"));
  EXPECT_TRUE(waitForRows(1));
}

TEST_F(UsbFromTheWindow, TwoPrintersAreToldApart) {
  UsbPrinterProcess first({"--serial", "VP000001"});
  UsbPrinterProcess second({"--serial", "VP000002", "--burn-seconds", "0.2"});
  startWithSmallFirmware();
  EXPECT_TRUE(waitForRows(2));
  keepPicture("two-printers");
  download("VP000002");
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
  EXPECT_EQ(second.count("burn"), 1u);
  EXPECT_THAT(first.receivedMessages(), IsEmpty());
}

TEST_F(UsbFromTheWindow, APulledCableIsAFailure) {
  UsbPrinterProcess printer({"--fault", "unplug@burn-header"});
  startWithSmallFirmware();
  download("VP000001");
  labelWith("The firmware was not updated.");
  keepPicture("failed");
  press("Return");
  EXPECT_TRUE(waitUntilGone("push button", "Close"));
  EXPECT_TRUE(waitForRows(0));
  EXPECT_TRUE(programRuns());
}

TEST_F(UsbFromTheWindow, AUsbAndANetworkPrinterStandSideBySide) {
  const auto network = startPrinter("Office", {"--burn-seconds", "10"});
  UsbPrinterProcess usb({"--burn-seconds", "0.2"});
  startWithSmallFirmware();
  cell("Bonjour");
  cell("USB");
  EXPECT_THAT(printersInList(), ElementsAre("Office", kPrinter));
  keepPicture("side-by-side");
  download("VP000001");
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  EXPECT_EQ(usb.count("burn"), 1u);
  startUpdate("Office");
  network->waitFor("burn");
  EXPECT_EQ(burnedSha256(*network), SMALL_FIRMWARE_SHA256);
}

TEST_F(UsbFromTheWindow, TheProgramEndsDuringATransfer) {
  UsbPrinterProcess printer({"--fault", "silence@id-request"});
  startWithSmallFirmware();
  download("VP000001");
  EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
  program().signal(SIGTERM);
  EXPECT_EQ(program().waitForExit(30s).value_or(-1), 0) << program().output();
  EXPECT_EQ(timesLogged("Cleaning up USB transport."), 1u);
}

// Qt ends a program that has lost its display by exit(1).
TEST_F(UsbFromTheWindow, TheEndOfTheDisplayGivesThePrinterBack) {
  UsbPrinterProcess printer({"--fault", "silence@id-request"});
  startProgram();
  download("VP000001");
  EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
  EXPECT_EQ(kernelDriver(), "usbfs");
  desktop().killServer();
  EXPECT_EQ(program().waitForExit(30s).value_or(-1), 1) << program().output();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbFromTheWindow, AFaultOfTheProgramGivesThePrinterBack) {
  UsbPrinterProcess printer({"--fault", "silence@id-request"});
  for (const int number : {SIGABRT, SIGSEGV}) {
    startProgram();
    download("VP000001");
    EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
    EXPECT_EQ(kernelDriver(), "usbfs");
    program().signal(number);
    EXPECT_EQ(program().waitForExit(30s).value_or(-1), 128 + number) << program().output();
    EXPECT_EQ(kernelDriver(), "usblp");
  }
}

TEST_F(UsbFromTheWindow, APrinterThatAKillLeftBehindIsGivenBackAtTheNextStart) {
  UsbPrinterProcess printer({"--fault", "silence@id-request"});
  startProgram();
  download("VP000001");
  EXPECT_TRUE(waitForLog("Async read request for 16 bytes."));
  program().signal(SIGKILL);
  EXPECT_EQ(program().waitForExit(30s).value_or(-1), 128 + SIGKILL);
  EXPECT_EQ(kernelDriver(), "");
  startProgram();
  EXPECT_EQ(kernelDriver(), "usblp");
  cell("VP000001");
}

TEST_F(UsbFromTheWindow, APrinterThatIsAuthorizedLateIsUpdated) {
  startWithSmallFirmware();
  std::optional<AuthorizingNobody> nobody(std::in_place);
  UsbPrinterProcess printer({"--burn-seconds", "0.2"});
  EXPECT_TRUE(waitForLog("Adding printer with ID=1"));
  nobody.reset();
  // The program has long given up waiting by then.
  std::this_thread::sleep_for(4s);
  setUsbAttribute(usbDevice() / "authorized", "1");
  EXPECT_TRUE(waitForLog("Adding printer with ID=2"));
  EXPECT_TRUE(waitForRows(1));
  download("VP000001");
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
  EXPECT_EQ(printer.count("burn"), 1u);
}

}  // namespace
