// The window and the tool, at one printer.
#include <gmock/gmock.h>

#include <string>

#include "DesktopTest.h"
#include "ShellCommand.h"
#include "ToolProcess.h"

namespace {

using testing::ContainsRegex;

class TwoPrograms : public DesktopTest {};

TEST_F(TwoPrograms, WindowLeavesAPrinterAloneThatTheToolUpdates) {
  const auto printer = startPrinter("Office", {"--fault", "silence@id-request"});
  ToolProcess tool(INSTALLED_TOOL, "update --yes --wait 20 --quiet Office");
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
      runInShell("'" INSTALLED_TOOL "' update --yes --wait 20 --quiet Office </dev/null");
  EXPECT_THAT(tool.errors, ContainsRegex("failed: The program fwupdate \\([0-9]+\\) is using this "
                                         "printer\\. Wait until it has finished, then try again"));
  EXPECT_EQ(tool.status, 1);
  printer->readJournal();
  EXPECT_EQ(printer->entries("connected").size(), 1u);
}

}  // namespace
