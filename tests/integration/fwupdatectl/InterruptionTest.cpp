// Ends of the tool that leave processes of downloads behind, or that are no Ctrl+C.
#include <gmock/gmock.h>

#include <csignal>
#include <string>

#include "Tool.h"
#include "ToolProcess.h"

namespace {

std::string labelOf(const std::string& address) { return address + ": "; }

TEST(FwupdatectlInterruption, KilledToolLeavesNothingBehindThatHasSentNothing) {
  VirtualPrinterProcess printer({"--fault", "silence@id-request"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --address " + address);
  printer.waitFor("fault");
  EXPECT_TRUE(printer.entries("closed").empty());
  tool.signal(SIGKILL);
  tool.readUntil("status 137");
  printer.waitFor("closed");
  EXPECT_EQ(printer.receivedMessages().size(), 2u);
}

TEST(FwupdatectlInterruption, QuestionEndsWithWhoAsks) {
  VirtualPrinterProcess printer({"--fault", "silence@id-request"});
  const std::string order = R"({"connection":"network","name":"Office","address":")" +
                            addressOf(printer) + R"(","work":"version"})";
  const Outcome outcome = runInShell("{ timeout 20 " + kToolInShell + " --worker '" + order +
                                     "'; echo status $? >&2; } | true");
  EXPECT_THAT(outcome.errors, testing::EndsWith("\nstatus 1\n"));
}

TEST(FwupdatectlInterruption, KilledToolLetsABurnEnd) {
  VirtualPrinterProcess printer({"--burn-seconds", "10"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --address " + address);
  printer.waitFor("burning");
  tool.signal(SIGKILL);
  tool.readUntil("status 137");
  // Its download goes on, and keeps others away.
  EXPECT_THAT(update("--yes --address " + address).errors,
              testing::HasSubstr(") is using this printer. "));
  printer.waitFor("closed");
  ASSERT_EQ(printer.entries("burn").size(), 1u);
  EXPECT_EQ(printer.entries("burn").at(0).at("ok"), true);
}

TEST(FwupdatectlInterruption, ClosedTerminalLetsABurnEnd) {
  VirtualPrinterProcess printer({"--burn-seconds", "1", "--hang-up-seconds", "60"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --jobs 1 --address " + address + " --address 127.0.0.1:9");
  printer.waitFor("burning");
  tool.signal(SIGHUP);
  tool.readUntil(labelOf("127.0.0.1:9") + "not started");
  tool.readUntil(labelOf(address) + "updated to version 200 (was 100)");
  tool.readUntil("status 130");
}

TEST(FwupdatectlInterruption, SignalThatIsIgnoredFromTheStartStaysSo) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.5"});
  const std::string address = addressOf(printer);
  ToolProcess tool("/usr/bin/nohup", kToolInShell + " update --yes --address " + address);
  printer.waitFor("burning");
  tool.signal(SIGHUP);
  tool.readUntil(labelOf(address) + "updated to version 200 (was 100)");
  tool.readUntil("status 0");
}

}  // namespace
