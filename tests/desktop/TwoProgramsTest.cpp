// The window and the tool, at one printer.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "DesktopTest.h"
#include "Places.h"
#include "ShellCommand.h"
#include "ToolProcess.h"

namespace {

using namespace std::chrono_literals;
using testing::ContainsRegex;

std::string installedTool() { return builtFile("installed/bin/fwupdatectl"); }

class TwoPrograms : public DesktopTest {};

TEST_F(TwoPrograms, WindowLeavesAPrinterAloneThatTheToolUpdates) {
  const auto printer = startPrinter("Office", {"--fault", "silence@id-request"});
  ToolProcess tool(installedTool(), "update --yes --wait 20 --quiet Office");
  printer->waitFor("fault");
  startProgram();
  askForUpdate("Office");
  answer("Download firmware");
  waitForActive("Download Failed");
  const std::string cause = labelWith("The program fwupdatectl (").name();
  EXPECT_THAT(cause,
              ContainsRegex("^The program fwupdatectl \\([0-9]+\\) is using this printer\\.$"));
  labelWith("Wait until it has finished, then try again.");
  keepPicture("in-use");
  answer("Close");
  waitForActive("Printer Firmware Update");
  EXPECT_EQ(printer->entries("connected").size(), 1u);
  tool.signal(SIGTERM);
  tool.signal(SIGINT);
}

TEST_F(TwoPrograms, ToolLeavesAPrinterAloneThatTheWindowUpdates) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "1000"});
  startProgram();
  startUpdate("Office");
  printer->waitFor("burning");
  const Outcome tool =
      runInShell("'" + installedTool() + "' update --yes --wait 20 --quiet Office </dev/null");
  EXPECT_THAT(tool.errors, ContainsRegex("failed: The program fwupdate \\([0-9]+\\) is using this "
                                         "printer\\. Wait until it has finished, then try again"));
  EXPECT_EQ(tool.status, 1);
  printer->readJournal();
  EXPECT_EQ(printer->entries("connected").size(), 1u);
}

TEST_F(TwoPrograms, WindowWaitsForTheEndOfAQuestion) {
  const auto printer =
      startPrinter("Office", {"--fault", "delay@id-request=8000", "--faulty-conversations", "1",
                              "--burn-seconds", "0.1", "--return-seconds", "1000"});
  ToolProcess tool(installedTool(), "list --versions --wait 2 --timeout 60");
  printer->waitFor("fault");
  startProgram();
  startUpdate("Office");
  EXPECT_TRUE(desktop::waitUntil(
      [&] {
        return std::ranges::any_of(log(), [](const std::string& entry) {
          return entry.starts_with("Waiting for fwupdatectl (process ");
        });
      },
      20s));
  printer->readJournal();
  EXPECT_EQ(printer->entries("closed").size(), 0u);
  tool.readUntil("status 0");
  printer->waitFor("burn");
  EXPECT_EQ(printer->entries("connected").size(), 2u);
}

}  // namespace
