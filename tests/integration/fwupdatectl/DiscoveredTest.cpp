// Printers that announce themselves on a network of their own: listed, and updated by name.
#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "Announcement.h"
#include "JsonSchema.h"
#include "PeerProcess.h"
#include "PrivateNetwork.h"
#include "TemporaryDirectory.h"
#include "Tool.h"
#include "ToolProcess.h"

int main(int argc, char** argv) {
  privatenetwork::enter(argc, argv, {"--no-daemon"});
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

namespace {

class FwupdatectlDiscovered : public testing::Test {
 protected:
  FwupdatectlDiscovered() { privatenetwork::startDaemon(); }
  ~FwupdatectlDiscovered() override { privatenetwork::restore(); }

  static std::vector<std::string> announced(const std::string& name) {
    return {"--address", "0.0.0.0",        "--announce", "daemon",           "--name",
            name,        "--burn-seconds", "0.1",        "--return-seconds", "0.1"};
  }

  // "NAME<tab>network<tab>10.0.0.1:PORT", whatever the address.
  static testing::Matcher<std::string> row(const std::string& name,
                                           const VirtualPrinterProcess& printer) {
    return testing::MatchesRegex(name + "\tnetwork\t[0-9.]+:" + std::to_string(printer.port()));
  }
};

TEST_F(FwupdatectlDiscovered, AreListedByName) {
  VirtualPrinterProcess office(announced("Office"));
  VirtualPrinterProcess attic(announced("Attic\xE2\x80\xAE"));
  const Outcome outcome = tool("list --wait 5");
  EXPECT_THAT(linesOf(outcome.output),
              testing::ElementsAre(row("Attic\xEF\xBF\xBD", attic), row("Office", office)));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(FwupdatectlDiscovered, AreAskedForTheirVersions) {
  VirtualPrinterProcess attic(announced("Attic"));
  std::vector<std::string> current = announced("Cellar");
  current.insert(current.end(), {"--fwver", "00000200"});
  VirtualPrinterProcess cellar(current);
  std::vector<std::string> malformed = announced("Office");
  malformed.insert(malformed.end(), {"--fault", "data-length=0"});
  VirtualPrinterProcess office(malformed);
  std::vector<std::string> silent = announced("Yard");
  silent.insert(silent.end(), {"--fault", "silence@id-request"});
  VirtualPrinterProcess yard(silent);

  const Outcome outcome = tool("list --wait 5 --versions --timeout 5 --verbose");
  const auto answered = [](const std::string& name, const std::string& cells) {
    return testing::MatchesRegex(name + "\tnetwork\t[0-9.]+:[0-9]+\t" + cells);
  };
  EXPECT_THAT(linesOf(outcome.output),
              testing::ElementsAre(answered("Attic", "100\t200 \\(product.brand.bin\\)"),
                                   answered("Cellar", "200\tup to date"),
                                   answered("Office", "\\?\t\\?"), answered("Yard", "\\?\t\\?")));
  EXPECT_THAT(outcome.errors, testing::ContainsRegex("Office \\([0-9.:]+\\): Assertion failed: "));
  EXPECT_THAT(outcome.errors,
              testing::ContainsRegex("Yard \\([0-9.:]+\\): The printer did not answer within 5 s"
                                     "\\. Wait until it has finished its other work, then try "
                                     "again."));
  EXPECT_EQ(outcome.status, 1);
  attic.stop();
  EXPECT_TRUE(attic.entries("burn").empty());
}

TEST_F(FwupdatectlDiscovered, JsonHasTheVersionsAndTheFirmware) {
  VirtualPrinterProcess office(announced("Office"));
  const std::string output = tool("list --wait 5 --versions --json").output;
  EXPECT_EQ(faultsOf(output), "");
  auto line = nlohmann::ordered_json::parse(output);
  for (const char* each : {"schema", "time", "printer"}) line.erase(each);
  EXPECT_EQ(line.dump(), R"({"event":"printer","version":100,"would_be_updated":true,)"
                         R"("firmware":{"file":"product.brand.bin","version":200}})");
}

TEST_F(FwupdatectlDiscovered, JsonSaysWhyAVersionIsNotKnown) {
  std::vector<std::string> silent = announced("Office");
  silent.insert(silent.end(), {"--fault", "silence@id-request"});
  VirtualPrinterProcess office(silent);
  const Outcome outcome = tool("list --wait 5 --versions --timeout 5 --json");
  EXPECT_EQ(faultsOf(outcome.output), "");
  auto line = nlohmann::ordered_json::parse(outcome.output);
  for (const char* each : {"schema", "time", "printer"}) line.erase(each);
  EXPECT_EQ(line.dump(),
            R"({"event":"printer","cause":"The printer did not answer within 5 s.",)"
            R"("next_step":"Wait until it has finished its other work, then try again."})");
  EXPECT_EQ(outcome.status, 1);
}

// One that no firmware is for, and one whose firmware does not say its version.
TEST_F(FwupdatectlDiscovered, SayWhenThereIsNoFirmwareForThem) {
  const TemporaryDirectory directory;
  const std::string tree = directory.path().string();
  ASSERT_EQ(
      runInShell("cd '" + tree + "' && mkdir -p bin share/fwupdate && cp " + kToolInShell +
                 " bin && head -c 1000 '" + kDemoFirmware + "' >share/fwupdate/product.brand.bin")
          .status,
      0);
  std::vector<std::string> other = announced("Attic");
  other.insert(other.end(), {"--lic", "OTHER"});
  VirtualPrinterProcess attic(other);
  VirtualPrinterProcess office(announced("Office"));
  const Outcome outcome =
      runInShell("'" + tree + "/bin/fwupdatectl' list --wait 5 --versions </dev/null");
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(
      linesOf(outcome.output),
      testing::ElementsAre(testing::EndsWith("\t100\tnone"),
                           testing::EndsWith("\t100\tnone (product.brand.bin is damaged)")));
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(FwupdatectlDiscovered, AreNoneWhereNobodyAnnouncesOne) {
  const Outcome outcome = tool("update --all --yes --wait 1");
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "fwupdatectl: No printer was found.\n");
  EXPECT_EQ(outcome.status, 3);
}

TEST_F(FwupdatectlDiscovered, AreFoundByTheDaemon) {
  EXPECT_EQ(linesOf(tool("check").output).front(),
            "ok\tSearch for network printers\tDone by the Avahi daemon.\t");
}

TEST_F(FwupdatectlDiscovered, AreUpdatedByName) {
  VirtualPrinterProcess office(announced("Office"));
  VirtualPrinterProcess attic(announced("Attic"));
  const Outcome outcome = tool("update --yes --wait 20 Office");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(linesOf(outcome.output).back(),
              testing::MatchesRegex("Office \\([0-9.:]+\\): updated to version 200 \\(was 100\\)"));
  attic.stop();
  EXPECT_TRUE(attic.entries("connected").empty());
}

// A printer that restarts, and comes back at another address.
class FwupdatectlFollows : public FwupdatectlDiscovered {
 protected:
  static std::vector<std::string> office(const std::string& announcer) {
    std::vector<std::string> options = announced("Office");
    options.insert(options.end(), {"--announce", announcer, "--return-seconds", "1000"});
    return options;
  }

  void moveAway() {
    const PeerProcess moved(
        builtProgram("virtual-printer"),
        {"--announce", "in-process", "--name", "Office", "--fwver", "00000200", "--quiet"},
        PeerProcess::Machine::Peer);
    mUpdating.readUntil("status 0");
    EXPECT_THAT(mUpdating.lines(),
                testing::Contains(testing::MatchesRegex(
                    "Office \\([0-9.:]+\\): now runs version 200 \\(was 100\\)")));
  }

  // Another one, which is not where that one is.
  VirtualPrinterProcess mAttic{announced("Attic")};
  ToolProcess mUpdating{kTool, "update --yes --wait 20 --verify --verify-wait 60 Office"};
};

TEST_F(FwupdatectlFollows, OneWhoseAnnouncementHasEnded) {
  VirtualPrinterProcess printer(office("daemon"));
  printer.waitFor("closed");
  while (!tool("list --wait 0.5").output.empty()) {
  }
  moveAway();
}

TEST_F(FwupdatectlFollows, OneThatIsBackBeforeItsAnnouncementHasEnded) {
  VirtualPrinterProcess printer(office("in-process"));
  printer.waitFor("closed");
  printer.signal(SIGKILL);
  moveAway();
}

TEST_F(FwupdatectlDiscovered, AreAllUpdated) {
  VirtualPrinterProcess office(announced("Office"));
  VirtualPrinterProcess attic(announced("Attic"));
  const Outcome outcome = tool("update --yes --wait 5 --all");
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  office.waitFor("burn");
  attic.waitFor("burn");
}

TEST_F(FwupdatectlDiscovered, ComeAndGoWhileTheyAreWatched) {
  PeerProcess watching("/bin/sh", {"-c", "exec " + kToolInShell + " list --watch </dev/null"},
                       PeerProcess::Machine::Here);
  {
    VirtualPrinterProcess office(announced("Office"));
    EXPECT_THAT(watching.readLine(), testing::StartsWith("+\tOffice\tnetwork\t"));
  }
  EXPECT_THAT(watching.readLine(), testing::StartsWith("-\tOffice\tnetwork\t"));
}

TEST_F(FwupdatectlDiscovered, ComeAndGoInJson) {
  PeerProcess watching("/bin/sh",
                       {"-c", "exec " + kToolInShell + " list --watch --json </dev/null"},
                       PeerProcess::Machine::Here);
  std::string lines;
  {
    VirtualPrinterProcess office(announced("Office"));
    lines = watching.readLine() + "\n";
    const Outcome listed = tool("list --json --wait 5");
    EXPECT_EQ(faultsOf(listed.output), "");
    EXPECT_EQ(eventsIn(listed.output), "printer");
  }
  lines += watching.readLine() + "\n";
  ASSERT_EQ(kill(watching.pid(), SIGTERM), 0);
  lines += watching.readLine() + "\n";
  EXPECT_EQ(faultsOf(lines), "");
  EXPECT_EQ(eventsIn(lines), "added removed failure");
}

TEST_F(FwupdatectlDiscovered, OfOneNameAreToldApartByTheirAddresses) {
  Announcement first({"--port", "9101", "Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  Announcement second(
      {"--domain", "attic.local", "--port", "9102", "Office", "usb_MFG=Veltra", "usb_MDL=KX350T"});
  first.waitUntilEstablished();
  second.waitUntilEstablished();
  const Outcome outcome = tool("update --yes --json --wait 5 Office");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.errors,
            "fwupdatectl: There are several printers named \"Office\". Name one by --address or "
            "--serial:\n  Office (10.91.0.2:9101)\n  Office (10.91.0.2:9102)\n");
  EXPECT_EQ(faultsOf(outcome.output), "");
  EXPECT_THAT(
      outcome.output,
      testing::EndsWith(
          R"("message":"There are several printers named \"Office\". Name one by --address )"
          R"(or --serial:","exit_status":3,"candidates":[{"connection":"network",)"
          R"("name":"Office","address":"10.91.0.2:9101"},{"connection":"network",)"
          R"("name":"Office","address":"10.91.0.2:9102"}]})"
          "\n"));
}

TEST_F(FwupdatectlDiscovered, UnknownNameIsNoPrinter) {
  VirtualPrinterProcess office(announced("Office"));
  const Outcome outcome = tool("update --yes --wait 2 Offic");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.errors, "fwupdatectl: No printer named \"Offic\" was found.\n");
  office.stop();
  EXPECT_TRUE(office.entries("connected").empty());
}

}  // namespace
