// Downloads that take longer than they may.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ShellCommand.h"
#include "Tool.h"
#include "ToolProcess.h"
#include "VirtualPrinterProcess.h"

namespace {

// What is said of a printer with these options, without its name.
std::string errorOf(const std::vector<std::string>& options) {
  VirtualPrinterProcess printer(options);
  const std::string address = addressOf(printer);
  const Outcome outcome = runInShell(kToolInShell + " update --yes --quiet --timeout 5.5 " +
                                     ("--address " + address + " </dev/null"));
  EXPECT_EQ(outcome.status, 1);
  const std::string label = address + ": failed: ";
  EXPECT_THAT(outcome.errors, testing::StartsWith(label));
  return outcome.errors.substr(std::min(label.size(), outcome.errors.size()));
}

TEST(FwupdatectlTimeout, PrinterThatIsSilentIsGivenUp) {
  EXPECT_EQ(errorOf({"--fault", "silence@id-request"}),
            "The printer did not answer within 5.5 s. Check that the printer is switched on, "
            "connected and not printing, then try again.\n");
}

// A megabyte takes up to 51 seconds.
TEST(FwupdatectlTimeout, PrinterThatWritesItsMemoryIsWaitedFor) {
  VirtualPrinterProcess printer({"--burn-seconds", "6"});
  const std::string address = addressOf(printer);
  const Outcome outcome =
      runInShell(kToolInShell + " update --yes --timeout 5 --address " + address + " </dev/null");
  EXPECT_THAT(outcome.output, testing::EndsWith("updated to version 200 (was 100)\n"));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(FwupdatectlTimeout, StoppedProcessIsEnded) {
  VirtualPrinterProcess printer({"--fault", "silence@id-request"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --timeout 10 --address " + address);
  tool.readUntil(address + ": asking for its version");
  ASSERT_EQ(runInShell("kill -STOP $(cat /proc/" + std::to_string(tool.pid()) + "/task/" +
                       std::to_string(tool.pid()) + "/children)")
                .status,
            0);
  tool.readUntil(address +
                 ": failed: The printer did not answer within 10 s. Check that the printer "
                 "is switched on, connected and not printing, then try again.");
  tool.readUntil("status 1");
}

}  // namespace
