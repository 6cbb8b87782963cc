// The tool of the terminal with printers on a real USB bus: what it says, what the printer gets,
// and who has the printer's interface afterwards, however the tool ends.
#include <gmock/gmock.h>
#include <signal.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <utility>

#include "OtherProgram.h"
#include "Places.h"
#include "PollRunLoop.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"
#include "ToolProcess.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "VirtualPrinterProcess.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kUpdate[] = "update 'Veltra KX350T'";
constexpr char kUpdateBySerial[] = "update --serial VP000001";
const std::string kLabel = "Veltra KX350T (VP000001): ";
const std::string kWriting = kLabel + "the printer is writing its memory";
const std::string kUpdated = kLabel + "updated to version 200 (was 100)";

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void expectBurned(const UsbPrinterProcess& printer) {
  const auto burn = printer.last("burn");
  EXPECT_TRUE(burn.value("ok", false));
  EXPECT_EQ(burn.value("sha256", ""), SMALL_FIRMWARE_SHA256);
  EXPECT_EQ(printer.count("violation"), 0u);
}

// With an image that an emulated bus carries within the time-out of a write.
class FwupdatectlOnUsb : public testing::Test {
 protected:
  FwupdatectlOnUsb() {
    fs::create_directories(mPrefix.path() / "bin");
    fs::create_directories(mPrefix.path() / "share/fwupdate");
    fs::copy_file(builtProgram("fwupdatectl"), mProgram);
    fs::create_symlink(builtFile("tests/vm/firmware/small/product.brand.bin"), firmware());
    fs::permissions(mPrefix.path(), fs::perms(0755));
  }

  // Which is sent in time also where the machine has little of it.
  void useTinyFirmware() const {
    fs::remove(firmware());
    fs::create_symlink(builtFile("tests/vm/firmware/tiny/product.brand.bin"), firmware());
  }

  Outcome tool(const std::string& arguments, const std::string& by = "") const {
    return runInShell(by + " '" + mProgram.string() + "' " + arguments + " </dev/null");
  }

  std::unique_ptr<ToolProcess> start(const std::string& arguments) const {
    return std::make_unique<ToolProcess>(mProgram.string(), arguments);
  }

  // Until the tool says that the printer writes its memory.
  std::unique_ptr<ToolProcess> startToBurn() const {
    auto tool = start(kUpdateBySerial);
    tool->readUntil(kWriting);
    EXPECT_EQ(kernelDriver(), "usbfs");
    return tool;
  }

  // The process of the one download.
  static pid_t downloadOf(const ToolProcess& tool) {
    const std::string number = std::to_string(tool.pid());
    return std::stoi(contentOf("/proc/" + number + "/task/" + number + "/children"));
  }

  static void waitUntil(const std::function<bool()>& done, const char* otherwise) {
    ASSERT_TRUE(PollRunLoop().runUntil(done)) << otherwise;
  }

  static void awaitPrinter(const std::string& serial = "VP000001") {
    waitUntil([&] { return kernelDriver(serial) == "usblp"; }, "the printer is not there");
  }

  void awaitPrinters(std::size_t count) const {
    waitUntil([&] { return linesOf(tool("list --wait 1").output).size() == count; },
              "the printers are not there");
  }

 private:
  fs::path firmware() const { return mPrefix.path() / "share/fwupdate/product.brand.bin"; }

  TemporaryDirectory mPrefix;
  fs::path mProgram = mPrefix.path() / "bin/fwupdatectl";
};

TEST_F(FwupdatectlOnUsb, IsListedAndUpdatedByNameWithoutAQuestion) {
  UsbPrinterProcess printer({"--burn-seconds", "0.2", "--hang-up-seconds", "60"});
  awaitPrinter();
  EXPECT_EQ(tool("list --wait 0.2").output, "Veltra KX350T\tUSB\tVP000001\n");
  const Outcome outcome = tool(kUpdate);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(kernelDriver(), "usblp");
  EXPECT_THAT(linesOf(outcome.output),
              ElementsAre(kLabel + "connecting", kLabel + "asking for its version",
                          kLabel + "choosing its firmware", kLabel + "sending the firmware",
                          kWriting, kUpdated));
  EXPECT_EQ(outcome.errors, "");
  expectBurned(printer);
}

TEST_F(FwupdatectlOnUsb, IsUpdatedBySerialNumberAmongOthersOfItsName) {
  UsbPrinterProcess first({"--serial", "VP000001"});
  UsbPrinterProcess second({"--serial", "VP000002", "--burn-seconds", "0.2"});
  awaitPrinter("VP000001");
  awaitPrinter("VP000002");
  const Outcome unclear = tool("update --wait 3 'Veltra KX350T'");
  EXPECT_EQ(unclear.status, 3);
  EXPECT_EQ(unclear.errors,
            "fwupdatectl: There are several printers named \"Veltra KX350T\". Name one by "
            "--address or --serial:\n"
            "  Veltra KX350T (VP000001)\n"
            "  Veltra KX350T (VP000002)\n");
  EXPECT_EQ(tool("update --serial VP000002").status, 0);
  expectBurned(second);
  EXPECT_THAT(first.receivedMessages(), IsEmpty());
}

TEST_F(FwupdatectlOnUsb, InUseByAnotherProgramIsSaidWithItsName) {
  UsbPrinterProcess printer({"--burn-seconds", "0.2"});
  awaitPrinter();
  {
    const OtherProcess other("ipp-usb", "VP000001", 1);
    const Outcome outcome = tool(kUpdateBySerial);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors,
              kLabel +
                  "failed: The program ipp-usb is using the printer’s USB connection. Stop it "
                  "with the command “systemctl stop ipp-usb”, then try again.\n");
    EXPECT_THAT(printer.receivedMessages(), IsEmpty());
  }
  EXPECT_EQ(tool(kUpdateBySerial).status, 0);
  expectBurned(printer);
}

TEST_F(FwupdatectlOnUsb, WithoutARightOnTheDeviceItIsListedAndNotUpdated) {
  const UsbPrinterProcess printer;
  awaitPrinter();
  const std::string nobody = "setpriv --reuid=65534 --regid=65534 --clear-groups";
  EXPECT_EQ(tool("list --wait 0.2", nobody).output, "Veltra KX350T\tUSB\tVP000001\n");
  const Outcome outcome = tool(kUpdateBySerial, nobody);
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.errors,
            kLabel +
                "failed: You are not permitted to use the printer’s USB connection. Unplug the "
                "printer and plug it in again. If that does not help, ask the administrator "
                "of this computer for permission.\n");
  EXPECT_EQ(kernelDriver(), "usblp");
  EXPECT_THAT(printer.receivedMessages(), IsEmpty());
}

// However long the second one takes to find that out: the first one's download stands still.
TEST_F(FwupdatectlOnUsb, SecondRunOfTheToolSaysThatTheFirstIsAtIt) {
  const UsbPrinterProcess printer({"--fault", "silence@id-request"});
  awaitPrinter();
  const auto first = start(kUpdateBySerial);
  first->readUntil(kLabel + "asking for its version");
  waitUntil([&] { return printer.count("fault") == 1; }, "it is not asked");
  ASSERT_EQ(kill(downloadOf(*first), SIGSTOP), 0);
  const std::string inUse =
      "The program fwupdatectl is using the printer’s USB connection. Wait until it has finished, "
      "then try again.\n";
  const Outcome second = tool(kUpdateBySerial);
  EXPECT_EQ(second.status, 1);
  EXPECT_EQ(second.errors, kLabel + "failed: " + inUse);
  const Outcome question = tool("list --versions --wait 0.2 --timeout 60 --verbose");
  EXPECT_EQ(question.status, 1);
  EXPECT_EQ(question.output, "Veltra KX350T\tUSB\tVP000001\t?\t?\n");
  EXPECT_THAT(question.errors, testing::EndsWith(kLabel + inUse));
  EXPECT_EQ(kernelDriver(), "usbfs");
  first->signal(SIGTERM);
  first->signal(SIGINT);
  first->readUntil("status 130");
  EXPECT_EQ(kernelDriver(), "usblp");
}

// Restarts. -------------------------------------------------------------------------------------

TEST_F(FwupdatectlOnUsb, PrinterThatIsBackIsAskedForItsVersion) {
  const UsbPrinterProcess printer({"--burn-seconds", "0.2", "--return-seconds", "1"});
  awaitPrinter();
  const Outcome outcome = tool("update --verify --serial VP000001");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  const auto lines = linesOf(outcome.output);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines.at(lines.size() - 2), kLabel + "waiting until it is back");
  EXPECT_EQ(lines.back(), kLabel + "now runs version 200 (was 100)");
  awaitPrinter();
  expectBurned(printer);
}

TEST_F(FwupdatectlOnUsb, PrinterThatIsBackWithItsOldFirmwareHasFailed) {
  const UsbPrinterProcess printer(
      {"--burn-seconds", "0.2", "--return-seconds", "5", "--fault", "forget-burn"});
  awaitPrinter();
  const Outcome outcome = tool("update --verify --quiet --serial VP000001");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, kLabel +
                                "failed: The printer came back with version 100. Switch the "
                                "printer off and on, then try again.\n");
  awaitPrinter();
}

TEST_F(FwupdatectlOnUsb, PrinterThatStaysAwayHasFailed) {
  const UsbPrinterProcess printer({"--burn-seconds", "0.2", "--return-seconds", "1000"});
  awaitPrinter();
  const Outcome outcome = tool("update --verify --verify-wait 4 --quiet --serial VP000001");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, kLabel +
                                "failed: The printer did not come back within 4 s. Check that the "
                                "printer is switched on and connected, then update it again.\n");
}

// Limits. ---------------------------------------------------------------------------------------

TEST_F(FwupdatectlOnUsb, PrinterThatIsGivenUpIsGivenBack) {
  const UsbPrinterProcess printer({"--fault", "silence@id-request"});
  awaitPrinter();
  const Outcome outcome = tool("update --timeout 8 --quiet --serial VP000001");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            kLabel +
                "failed: The printer did not answer within 8 s. Check that the printer is switched "
                "on, connected and not printing, then try again.\n");
  EXPECT_EQ(kernelDriver(), "usblp");
}

// Unplugging. -----------------------------------------------------------------------------------

TEST_F(FwupdatectlOnUsb, UnpluggedDuringASendFailsAndIsUpdatedOnceItIsBack) {
  const auto watching = start("list --watch");
  UsbPrinterProcess printer({"--fault", "unplug@burn-header=300", "--faulty-conversations", "1",
                             "--burn-seconds", "0.2"});
  watching->readUntil("+\tVeltra KX350T\tUSB\tVP000001");
  const Outcome outcome = tool(kUpdateBySerial);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, testing::StartsWith(kLabel + "failed: The "));
  watching->readUntil("-\tVeltra KX350T\tUSB\tVP000001");
  watching->readUntil("+\tVeltra KX350T\tUSB\tVP000001");
  EXPECT_EQ(tool(kUpdateBySerial).status, 0);
  expectBurned(printer);
  watching->signal(SIGINT);
  watching->readUntil("status 130");
}

TEST_F(FwupdatectlOnUsb, UnpluggedWhileItBurnsIsNotConfirmed) {
  useTinyFirmware();
  const UsbPrinterProcess printer(
      {"--fault", "unplug@burned", "--burn-seconds", "0.5", "--return-seconds", "1000"});
  awaitPrinter();
  const Outcome outcome = tool(kUpdateBySerial);
  EXPECT_EQ(outcome.status, 1);
  // Which call it is that meets the end of the device is a matter of chance.
  EXPECT_THAT(outcome.errors,
              testing::MatchesRegex(
                  "Veltra KX350T .VP000001.: failed: The (printer was disconnected or switched off"
                  "|USB connection to the printer failed)\\. It may still be writing its memory: "
                  "leave it switched on for a few minutes\\. Then download the firmware again; a "
                  "printer that has it is reported as up to date\\.\n"));
  const Outcome gone = tool("update --wait 0.2 --serial VP000001");
  EXPECT_EQ(gone.status, 3);
  EXPECT_EQ(gone.errors, "fwupdatectl: No printer with the serial number VP000001 was found.\n");
}

// Interruption. ---------------------------------------------------------------------------------

TEST_F(FwupdatectlOnUsb, FirstInterruptWaitsForTheEndOfTheBurn) {
  const UsbPrinterProcess printer({"--burn-seconds", "1", "--hang-up-seconds", "60"});
  awaitPrinter();
  const auto tool = startToBurn();
  tool->signal(SIGINT);
  tool->readUntil(kUpdated);
  tool->readUntil("status 130");
  EXPECT_EQ(kernelDriver(), "usblp");
  expectBurned(printer);
}

// Also where the process of the download cannot go on, as it is when somebody has stopped it.
TEST_F(FwupdatectlOnUsb, SecondInterruptGivesThePrinterBackAtOnce) {
  const UsbPrinterProcess printer({"--burn-seconds", "60"});
  awaitPrinter();
  const auto tool = startToBurn();
  ASSERT_EQ(kill(downloadOf(*tool), SIGSTOP), 0);
  tool->signal(SIGINT);
  tool->signal(SIGTERM);  // two of one kind may arrive as one
  tool->readUntil(kLabel +
                  "failed: Interrupted. What the printer has received, it may still be writing to "
                  "its memory.");
  tool->readUntil("status 130");
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(FwupdatectlOnUsb, ClosedTerminalAndTerminationGiveThePrinterBack) {
  const UsbPrinterProcess printer({"--burn-seconds", "60"});
  awaitPrinter();
  const auto tool = startToBurn();
  tool->signal(SIGHUP);
  tool->signal(SIGTERM);
  tool->readUntil(kLabel +
                  "failed: Interrupted. What the printer has received, it may still be writing to "
                  "its memory.");
  tool->readUntil("status 130");
  EXPECT_EQ(kernelDriver(), "usblp");
}

// Nobody is left who could let it go on.
TEST_F(FwupdatectlOnUsb, StoppedDownloadOfAKilledToolGivesThePrinterBack) {
  const UsbPrinterProcess printer({"--fault", "silence@id-request"});
  awaitPrinter();
  const auto tool = start(kUpdateBySerial);
  tool->readUntil(kLabel + "asking for its version");
  waitUntil([&] { return printer.count("fault") == 1; }, "it is not asked");
  ASSERT_EQ(kill(downloadOf(*tool), SIGSTOP), 0);
  EXPECT_EQ(kernelDriver(), "usbfs");
  tool->signal(SIGKILL);
  tool->readUntil("status 137");
  awaitPrinter();
}

TEST_F(FwupdatectlOnUsb, KilledToolLetsTheBurnEnd) {
  const UsbPrinterProcess printer({"--burn-seconds", "1", "--hang-up-seconds", "60"});
  awaitPrinter();
  startToBurn()->signal(SIGKILL);
  waitUntil([&] { return printer.count("burn") == 1; }, "it does not burn");
  awaitPrinter();
  expectBurned(printer);
}

TEST_F(FwupdatectlOnUsb, KilledDownloadGivesThePrinterBack) {
  const UsbPrinterProcess printer({"--burn-seconds", "60"});
  awaitPrinter();
  const auto tool = startToBurn();
  ASSERT_EQ(kill(downloadOf(*tool), SIGKILL), 0);
  tool->readUntil(kLabel + "failed: The update ended unexpectedly: Killed.");
  tool->readUntil("status 1");
  EXPECT_EQ(kernelDriver(), "usblp");
}

// Several. --------------------------------------------------------------------------------------

TEST_F(FwupdatectlOnUsb, OnesThatCannotBeToldApartGetNothing) {
  const UsbPrinterProcess first;
  const UsbPrinterProcess second;
  awaitPrinters(2);
  const std::string advice =
      ". Unplug all of them but one:\n  Veltra KX350T (VP000001)\n  Veltra KX350T (VP000001)\n";
  const Outcome byName = tool(kUpdate);
  EXPECT_EQ(byName.status, 3);
  EXPECT_EQ(byName.errors,
            "fwupdatectl: There are several printers named \"Veltra KX350T\"" + advice);
  const Outcome bySerial = tool(kUpdateBySerial);
  EXPECT_EQ(bySerial.status, 3);
  EXPECT_EQ(bySerial.errors,
            "fwupdatectl: There are several printers with the serial number VP000001" + advice);
  const Outcome all = tool("update --all --wait 3");
  EXPECT_EQ(all.status, 1);
  EXPECT_EQ(all.output, "");
  EXPECT_EQ(all.errors, kLabel +
                            "failed: Another attached printer cannot be told apart from this one. "
                            "Unplug the other one, then try again.\n");
  EXPECT_THAT(first.receivedMessages(), IsEmpty());
  EXPECT_THAT(second.receivedMessages(), IsEmpty());
}

TEST_F(FwupdatectlOnUsb, AllAreUpdatedOnUsbAndOnTheNetworkAtATime) {
  const UsbPrinterProcess first({"--burn-seconds", "0.2"});
  const UsbPrinterProcess second({"--usb-serial", "", "--burn-seconds", "0.2"});
  VirtualPrinterProcess network({"--address", "0.0.0.0", "--announce", "daemon", "--name", "Office",
                                 "--burn-seconds", "0.2"});
  awaitPrinters(3);
  const Outcome outcome = tool("update --all --yes --jobs 3 --wait 5");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  expectBurned(first);
  expectBurned(second);
  network.waitFor("burn");
  EXPECT_EQ(network.entries("burn").at(0).at("sha256"), SMALL_FIRMWARE_SHA256);
}

TEST_F(FwupdatectlOnUsb, AuthorizedLateIsAnotherPrinter) {
  std::optional<AuthorizingNobody> nobody(std::in_place);
  const auto watching = start("list --watch");
  const UsbPrinterProcess printer({"--burn-seconds", "0.2"});
  watching->readUntil("+\tVeltra KX350T\tUSB\tVP000001");
  nobody.reset();
  EXPECT_EQ(tool(kUpdateBySerial).status, 1);
  setUsbAttribute(usbDevice() / "authorized", "1");
  watching->readUntil("-\tVeltra KX350T\tUSB\tVP000001");
  watching->readUntil("+\tVeltra KX350T\tUSB\tVP000001");
  EXPECT_EQ(tool(kUpdateBySerial).status, 0);
  expectBurned(printer);
}

}  // namespace
