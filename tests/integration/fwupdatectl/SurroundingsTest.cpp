// The tool on a machine that lacks something: a daemon, a bus, a route, room on its disk.
#include <gmock/gmock.h>

#include <chrono>
#include <string>

#include "Announcement.h"
#include "JsonSchema.h"
#include "OnlyStack.h"
#include "PrivateNetwork.h"
#include "TemporaryDirectory.h"
#include "Tool.h"

namespace {

using testing::HasSubstr;

constexpr const char* kNobodySearched =
    "fwupdatectl: Nobody has searched the network so far. Give a longer --wait, or see "
    "\"fwupdatectl check\".\n";
constexpr const char* kSearchedByItself =
    "ok\tSearch for network printers\tDone by this program, since no Avahi daemon answers.\t";
// Who calls a stopped daemon over the bus, and waits for its answer, waits so long.
constexpr std::chrono::seconds kPatienceOfTheBus{25};
constexpr const char* kNotWritten =
    "fwupdatectl: The output could not be written. Is the disk full?\n";

class FwupdatectlSurroundings : public testing::Test {
 protected:
  ~FwupdatectlSurroundings() override { privatenetwork::restore(); }

  static void stopDaemonsProcess() {
    privatenetwork::startDaemon();
    ASSERT_EQ(runInShell("kill -STOP $(cat /run/private-network/avahi-daemon.pid)").status, 0);
  }

  static void expectUpdateByAddress() {
    VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
    EXPECT_EQ(update("--yes --address " + addressOf(printer)).status, 0);
    printer.waitFor("burn");
  }

  // In a directory whose disk is full but for a few bytes of the file "log".
  static Outcome onFullDisk(const std::string& arguments) {
    const TemporaryDirectory directory;
    const std::string disk = directory.path();
    return runInShell("unshare --mount sh -c 'mount -t tmpfs -o size=4k tmpfs " + disk + " && cd " +
                      disk + " && head -c 4090 /dev/zero >log && exec " + kTool + " " + arguments +
                      " </dev/null'");
  }
};

TEST_F(FwupdatectlSurroundings, WithoutADaemonItSearchesByItself) {
  Announcement office({"Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  office.waitUntilEstablished();
  EXPECT_EQ(tool("list --wait 3").output, "Office\tnetwork\t10.91.0.2:9100\n");
  EXPECT_EQ(linesOf(tool("check").output).front(), kSearchedByItself);
}

TEST_F(FwupdatectlSurroundings, WithoutABusItSearchesByItself) {
  privatenetwork::stopBus();
  Announcement office({"Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  office.waitUntilEstablished();
  EXPECT_EQ(tool("list --wait 3").output, "Office\tnetwork\t10.91.0.2:9100\n");
  EXPECT_EQ(linesOf(tool("check").output).front(), kSearchedByItself);
  expectUpdateByAddress();
}

TEST_F(FwupdatectlSurroundings, NobodyCanSearchBesideAStackThatToleratesNone) {
  const OnlyStack alone;
  ASSERT_TRUE(alone.holds());
  const Outcome listed = tool("list --wait 5");
  EXPECT_EQ(listed.output, "");
  EXPECT_EQ(listed.errors, kNobodySearched);
  const Outcome checked = tool("check");
  EXPECT_EQ(
      linesOf(checked.output).front(),
      "problem\tSearch for network printers\tNobody can do it.\tInstall and start the package "
      "avahi-daemon.");
  EXPECT_EQ(checked.status, 1);
}

TEST_F(FwupdatectlSurroundings, DaemonThatIsStoppedIsNoEmptyNetwork) {
  stopDaemonsProcess();
  const auto begin = std::chrono::steady_clock::now();
  const Outcome listed = tool("list --wait 0.5");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, kPatienceOfTheBus);
  EXPECT_EQ(listed.output, "");
  EXPECT_EQ(listed.errors, kNobodySearched);
  EXPECT_EQ(listed.status, 0);
  const Outcome updated = update("--yes --wait 0.5 Office");
  EXPECT_EQ(updated.errors,
            std::string(kNobodySearched) + "fwupdatectl: No printer named \"Office\" was found.\n");
  EXPECT_EQ(updated.status, 3);
  EXPECT_EQ(update("--yes --wait 0.5 --serial S1").errors,
            "fwupdatectl: No printer with the serial number S1 was found.\n");
  expectUpdateByAddress();
}

TEST_F(FwupdatectlSurroundings, PrinterThatAnnouncesPort0CannotBeReached) {
  Announcement office({"--port", "0", "Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  office.waitUntilEstablished();
  const Outcome outcome = update("--yes --wait 10 Office");
  EXPECT_EQ(outcome.errors,
            "Office (10.91.0.2:0): failed: The printer announces no port that can be connected "
            "to.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlSurroundings, AddressWithoutARouteCannotBeReached) {
  const std::string cause = "The printer cannot be reached over the network.";
  const std::string nextStep =
      "Check that the printer is switched on and on the same network as this computer, then try "
      "again.";
  const Outcome outcome = update("--yes --json --address 203.0.113.7");
  EXPECT_THAT(outcome.output, HasSubstr(R"("outcome":"failed","cause":")" + cause +
                                        R"(","next_step":")" + nextStep + "\"}\n"));
  EXPECT_EQ(faultsOf(outcome.output), "");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(update("--yes --quiet --address 203.0.113.7").errors,
            "203.0.113.7:9100: failed: " + cause + " " + nextStep + "\n");
}

TEST_F(FwupdatectlSurroundings, ListThatCannotBeWrittenIsAFailure) {
  Announcement office({"Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  office.waitUntilEstablished();
  for (const char* arguments : {"list --wait 3", "list --watch", "list --watch --json"}) {
    const Outcome outcome = tool(std::string(arguments) + " >/dev/full");
    EXPECT_EQ(outcome.errors, kNotWritten) << arguments;
    EXPECT_EQ(outcome.status, 1) << arguments;
  }
}

TEST_F(FwupdatectlSurroundings, WatchEndsWithItsReader) {
  Announcement office({"Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  office.waitUntilEstablished();
  const Outcome outcome =
      runInShell("{ " + kToolInShell + " list --watch; echo $? >&2; } </dev/null | head -1");
  EXPECT_EQ(outcome.output, "+\tOffice\tnetwork\t10.91.0.2:9100\n");
  EXPECT_EQ(outcome.errors, "0\n");
}

TEST_F(FwupdatectlSurroundings, FullDiskTakesNoDownloadAlong) {
  VirtualPrinterProcess logged({"--burn-seconds", "0.1"});
  const Outcome log =
      onFullDisk("update --yes --verbose --address " + addressOf(logged) + " 2>>log");
  EXPECT_EQ(log.status, 0);
  EXPECT_THAT(log.output, HasSubstr("updated to version 200"));
  logged.waitFor("burn");
  VirtualPrinterProcess told({"--burn-seconds", "0.1"});
  const Outcome output = onFullDisk("update --yes --json --address " + addressOf(told) + " >>log");
  EXPECT_EQ(output.errors, kNotWritten);
  EXPECT_EQ(output.status, 1);
  told.waitFor("burn");
}

}  // namespace
