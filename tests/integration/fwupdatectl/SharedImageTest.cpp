// Looks into the processes of an update of several printers for the image that they share.
#include <gmock/gmock.h>

#include "Tool.h"
#include "ToolProcess.h"

namespace {

// The memory files that the processes of `tool` have in their memory.
std::string sharedBy(const ToolProcess& tool) {
  const std::string process = std::to_string(tool.pid());
  return runInShell("for each in $(cat /proc/" + process + "/task/" + process +
                    "/children); do grep -o 'r--s.*memfd:[a-z.]*' /proc/$each/maps | "
                    "sed 's/.*memfd:/memfd:/'; done")
      .output;
}

TEST(FwupdatectlSharedImage, IsThatOfTheProcessThatStartedThem) {
  VirtualPrinterProcess printer({"--burn-seconds", "1000"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --jobs 1 --address " + address + " --address 127.0.0.1:9");
  tool.readUntil(address + ": the printer is writing its memory");
  EXPECT_EQ(sharedBy(tool), "memfd:product.brand.bin\n");
}

TEST(FwupdatectlSharedImage, IsNotMadeForOnePrinter) {
  VirtualPrinterProcess printer({"--burn-seconds", "1000"});
  const std::string address = addressOf(printer);
  ToolProcess tool(kTool, "update --yes --address " + address);
  tool.readUntil(address + ": the printer is writing its memory");
  EXPECT_EQ(sharedBy(tool), "");
}

}  // namespace
