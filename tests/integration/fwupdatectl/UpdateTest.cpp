// Updates virtual printers with the tool, and compares all that it says.
#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "Tool.h"
#include "ToolProcess.h"

using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

// Without what differs from run to run.
std::vector<std::string> eventsOf(const std::string& output) {
  std::vector<std::string> events;
  for (const std::string& line : linesOf(output)) {
    auto event = nlohmann::ordered_json::parse(line);
    EXPECT_EQ(event.at("schema"), 1);
    EXPECT_THAT(event.at("time").get<std::string>(),
                testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}"
                                      "\\.[0-9]{3}Z"));
    EXPECT_THAT(event.at("printer").at("address").get<std::string>(),
                testing::StartsWith("127.0.0.1:"));
    for (const char* each : {"schema", "time", "printer"}) event.erase(each);
    events.push_back(event.dump());
  }
  return events;
}

TEST(FwupdatectlUpdate, SaysEachStepAndTheOutcome) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const std::string address = addressOf(printer);
  const Outcome outcome = update("--yes --address " + address);
  const std::string label = address + ": ";
  EXPECT_THAT(linesOf(outcome.output),
              ElementsAre(label + "connecting", label + "asking for its version",
                          label + "choosing its firmware", label + "sending the firmware",
                          label + "the printer is writing its memory",
                          label + "updated to version 200 (was 100)"));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
  printer.waitFor("burn");
  EXPECT_EQ(printer.entries("burn").at(0).at("ok"), true);
  EXPECT_EQ(printer.entries("burn").at(0).at("bytes"), 1048576);
}

TEST(FwupdatectlUpdate, PrinterThatHasTheFirmwareIsDone) {
  VirtualPrinterProcess printer({"--fwver", "00000200"});
  const std::string address = addressOf(printer);
  const Outcome outcome = update("--yes --address " + address);
  EXPECT_THAT(linesOf(outcome.output), testing::Contains(address + ": up to date (version 200)"));
  EXPECT_EQ(outcome.status, 0);
  printer.stop();
  EXPECT_TRUE(printer.entries("burn").empty());
}

TEST(FwupdatectlUpdate, OneFailureTakesNoOtherPrinterAlong) {
  VirtualPrinterProcess good({"--burn-seconds", "0.1"});
  VirtualPrinterProcess bad({"--fault", "fail-burn", "--burn-seconds", "0.1"});
  VirtualPrinterProcess fatal({"--fault", "data-length=0"});
  const std::string a = addressOf(good);
  const std::string b = addressOf(bad);
  const std::string c = addressOf(fatal);
  const Outcome outcome =
      update("--yes --quiet --address " + a + " --address " + b + " --address " + c);
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(
      linesOf(outcome.errors),
      UnorderedElementsAre(
          b + ": failed: The printer refused the firmware. Switch the printer off and on, then "
              "try again. If it refuses again, ask whoever supports this printer.",
          c + ": failed: Assertion failed: (expectLen > 0), function operator(), file "
              "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443."));
  EXPECT_EQ(outcome.status, 1);
  good.waitFor("burn");
  EXPECT_EQ(good.entries("burn").at(0).at("ok"), true);
}

TEST(FwupdatectlUpdate, UnreachablePrinterFails) {
  std::string address;
  {
    const VirtualPrinterProcess gone({});
    address = addressOf(gone);
  }
  const Outcome outcome = update("--yes --quiet --address " + address);
  EXPECT_EQ(outcome.errors,
            address +
                ": failed: The printer refused the connection. Wait until the "
                "printer has finished its other work, or switch it off and on, then "
                "try again.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST(FwupdatectlUpdate, UsbPrinterThatLeftMeanwhileIsSaidToBeGone) {
  const Outcome outcome =
      runInShell(kToolInShell +
                 R"( --worker '{"connection":"usb","name":"Veltra KX350T","serial":"NOWHERE"}')");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output,
              testing::EndsWith(R"("event":"cause","cause":"The printer is no longer attached.",)"
                                R"("next_step":"Plug it in and switch it on, then try again."})"
                                "\n"));
}

TEST(FwupdatectlUpdate, JsonLinesSayTheSame) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const Outcome outcome = update("--yes --json --address " + addressOf(printer));
  const auto events = eventsOf(outcome.output);
  ASSERT_GE(events.size(), 9u);
  EXPECT_EQ(events[0], R"({"event":"begun"})");
  EXPECT_EQ(events[1], R"({"event":"phase","phase":"connecting","bound_ms":0})");
  EXPECT_EQ(events[2], R"({"event":"phase","phase":"asking-for-version","bound_ms":0})");
  EXPECT_EQ(events[3], R"({"event":"phase","phase":"choosing-firmware","bound_ms":0})");
  EXPECT_EQ(events[4], R"({"event":"versions","version_before":100,"version_of_firmware":200})");
  EXPECT_EQ(events[5], R"({"event":"phase","phase":"sending-firmware","bound_ms":0})");
  EXPECT_EQ(events[6], R"({"event":"progress","bytes":0,"total":1048576})");
  const std::size_t last = events.size() - 1;
  EXPECT_EQ(events[last - 2], R"({"event":"progress","bytes":1048576,"total":1048576})");
  EXPECT_EQ(events[last - 1], R"({"event":"phase","phase":"burning-firmware","bound_ms":51000})");
  EXPECT_EQ(events[last], R"({"event":"outcome","outcome":"updated","version_before":100,)"
                          R"("version_of_firmware":200})");
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(FwupdatectlUpdate, JsonLinesSayAFailure) {
  VirtualPrinterProcess printer({"--fault", "fail-burn", "--burn-seconds", "0.1"});
  const Outcome outcome = update("--yes --json --address " + addressOf(printer));
  const auto events = eventsOf(outcome.output);
  ASSERT_GE(events.size(), 2u);
  EXPECT_EQ(events[events.size() - 2],
            R"({"event":"error","message":"The firmware download failed on the printer."})");
  EXPECT_EQ(events.back(),
            R"({"event":"outcome","outcome":"failed","version_before":100,)"
            R"("version_of_firmware":200,"cause":"The printer refused the firmware.",)"
            R"("next_step":"Switch the printer off and on, then try again. If it refuses again, )"
            R"(ask whoever supports this printer."})");
  EXPECT_EQ(outcome.status, 1);
}

TEST(FwupdatectlUpdate, AddressGivenTwiceIsUpdatedOnce) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const std::string address = addressOf(printer);
  EXPECT_EQ(update("--yes --address " + address + " --address " + address).status, 0);
  printer.stop();
  EXPECT_EQ(printer.entries("connected").size(), 1u);
}

TEST(FwupdatectlUpdate, AsManyAtATimeAsAllowed) {
  VirtualPrinterProcess first({"--burn-seconds", "0.1"});
  VirtualPrinterProcess second({"--burn-seconds", "0.1"});
  const std::string a = addressOf(first);
  const std::string b = addressOf(second);
  const auto lines = linesOf(update("--yes --jobs 1 --address " + a + " --address " + b).output);
  ASSERT_EQ(lines.size(), 13u);
  EXPECT_EQ(lines[5], a + ": updated to version 200 (was 100)");
  EXPECT_EQ(lines[6], b + ": connecting");
  EXPECT_EQ(lines[12], "2 updated");
}

TEST(FwupdatectlUpdate, ReaderOfTheOutputMayGo) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const Outcome outcome = runInShell(kToolInShell + " update --yes --address " +
                                     addressOf(printer) + " </dev/null >&-");
  EXPECT_EQ(outcome.status, 0);
  printer.waitFor("burn");
  EXPECT_EQ(printer.entries("burn").at(0).at("ok"), true);
}

TEST(FwupdatectlUpdate, FirstSignalLetsADownloadEndAndStartsNoOther) {
  VirtualPrinterProcess first({"--burn-seconds", "1"});
  VirtualPrinterProcess second({});
  const std::string a = addressOf(first);
  const std::string b = addressOf(second);
  ToolProcess tool(kTool, "update --yes --jobs 1 --address " + a + " --address " + b);
  tool.readUntil(a + ": the printer is writing its memory");
  tool.signal(SIGINT);
  tool.readUntil("status 130");
  EXPECT_THAT(tool.lines(),
              testing::IsSupersetOf({a + ": updated to version 200 (was 100)", b + ": not started",
                                     std::string("1 updated, 1 not started")}));
  second.stop();
  EXPECT_TRUE(second.entries("connected").empty());
}

TEST(FwupdatectlUpdate, SecondSignalEndsAtOnce) {
  VirtualPrinterProcess printer({"--burn-seconds", "1000"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --jobs 1 --address " + address + " --address 127.0.0.1:9");
  tool.readUntil(address + ": the printer is writing its memory");
  tool.signal(SIGTERM);
  tool.readUntil("127.0.0.1:9: not started");
  tool.signal(SIGTERM);
  tool.readUntil(address +
                 ": failed: Interrupted. What the printer has received, "
                 "it may still be writing to its memory.");
  tool.readUntil("status 130");
}

}  // namespace
