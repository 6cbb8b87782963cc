// Printers that restart with new firmware, or do not, and are asked for their version.
#include <gmock/gmock.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include "ShellCommand.h"
#include "ToolProcess.h"
#include "VirtualPrinterProcess.h"

namespace {

class FwupdatectlVerify : public testing::Test {
 protected:
  void start(const std::vector<std::string>& options) {
    std::vector<std::string> all{"--burn-seconds", "0.1", "--hang-up-seconds", "0.1"};
    all.insert(all.end(), options.begin(), options.end());
    mPrinter.emplace(all);
    mAddress = "127.0.0.1:" + std::to_string(mPrinter->port());
  }

  Outcome update(const std::string& arguments) const {
    return runInShell(kToolInShell + " update --yes --verify " + arguments + " --address " +
                      mAddress + " </dev/null");
  }

  std::string label() const { return mAddress + ": "; }

  std::optional<VirtualPrinterProcess> mPrinter;
  std::string mAddress;
};

TEST_F(FwupdatectlVerify, PrinterThatIsBackSaysItsVersion) {
  start({"--return-seconds", "1.5"});
  const Outcome outcome = update("");
  EXPECT_THAT(outcome.output, testing::EndsWith(label() + "waiting until it is back\n" + label() +
                                                "now runs version 200 (was 100)\n"));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(FwupdatectlVerify, PrinterThatIsBackWithItsOldFirmwareHasFailed) {
  start({"--return-seconds", "1.5", "--fault", "forget-burn"});
  const Outcome outcome = update("--quiet");
  EXPECT_EQ(outcome.errors, label() +
                                "failed: The printer came back with version 100. Switch the "
                                "printer off and on, then try again.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlVerify, PrinterThatStaysAwayHasFailed) {
  start({"--return-seconds", "1000"});
  const Outcome outcome = update("--quiet --verify-wait 2");
  EXPECT_EQ(outcome.errors, label() +
                                "failed: The printer did not come back within 2 s. Check "
                                "that the printer is switched on and connected, then update it "
                                "again.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlVerify, JsonSaysTheVersionAfterwards) {
  start({"--return-seconds", "0.1"});
  const Outcome outcome = update("--json --verify-wait 20");
  EXPECT_THAT(outcome.output,
              testing::HasSubstr(R"("phase":"waiting-for-return","bound_ms":20000,)"));
  EXPECT_THAT(outcome.output, testing::EndsWith(R"("outcome":"updated","version_before":100,)"
                                                R"("version_of_firmware":200,"version_after":200})"
                                                "\n"));
}

TEST_F(FwupdatectlVerify, PrinterThatIsUpToDateIsNotWaitedFor) {
  start({"--fwver", "00000200"});
  const Outcome outcome = update("");
  EXPECT_THAT(outcome.output, testing::EndsWith(label() + "up to date (version 200)\n"));
  EXPECT_EQ(outcome.status, 0);
  mPrinter->stop();
  EXPECT_EQ(mPrinter->entries("connected").size(), 1u);
}

TEST_F(FwupdatectlVerify, SecondSignalEndsTheWaiting) {
  start({"--return-seconds", "1000"});
  ToolProcess tool(
      kTool, "update --yes --jobs 1 --verify --address " + mAddress + " --address 127.0.0.1:9");
  tool.readUntil(label() + "waiting until it is back");
  tool.signal(SIGTERM);
  tool.readUntil("127.0.0.1:9: not started");
  tool.signal(SIGTERM);
  tool.readUntil(label() + "failed: Interrupted before the printer was back.");
  tool.readUntil("status 130");
}

}  // namespace
