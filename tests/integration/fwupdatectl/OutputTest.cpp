// Where the tool's output goes, and where it cannot go.
#include <gmock/gmock.h>

#include "Tool.h"

namespace {

Outcome show(const std::string& redirection) {
  return runInShell(kToolInShell + " show '" + kDemoFirmware + "' " + redirection);
}

TEST(FwupdatectlOutput, ThatCannotBeWrittenIsAFailure) {
  const Outcome outcome = show(">/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "fwupdatectl: The output could not be written. Is the disk full?\n");
  EXPECT_EQ(runInShell(kToolInShell + " --help >/dev/full").status, 1);
}

TEST(FwupdatectlOutput, ThatNobodyReadsIsNone) {
  for (const char* redirection : {">&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
    const Outcome outcome = show(redirection);
    EXPECT_EQ(outcome.status, 0) << redirection;
    EXPECT_EQ(outcome.errors, "") << redirection;
  }
  const Outcome gone =
      runInShell("{ " + kToolInShell + " show '" + kDemoFirmware + "'; echo $? >&2; } | true");
  EXPECT_EQ(gone.errors, "0\n");
}

// The download goes on, whatever becomes of what is said about it.
TEST(FwupdatectlOutput, ThatIsLostTakesNoDownloadAlong) {
  for (const char* redirection : {">/dev/full", "--json >/dev/full"}) {
    VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
    const Outcome outcome = update("--yes --address " + addressOf(printer) + " " + redirection);
    EXPECT_EQ(outcome.status, 1) << redirection;
    EXPECT_EQ(outcome.errors, "fwupdatectl: The output could not be written. Is the disk full?\n");
    printer.waitFor("burn");
  }
}

TEST(FwupdatectlOutput, ErrorsThatAreLostChangeNoExitStatus) {
  for (const char* redirection : {"2>/dev/full", "2>&-", ">&- 2>&-"}) {
    VirtualPrinterProcess good({"--burn-seconds", "0.1"});
    VirtualPrinterProcess bad({"--fault", "fail-burn", "--burn-seconds", "0.1"});
    const std::string options = std::string("--yes --verbose ") + redirection + " --address ";
    EXPECT_EQ(update(options + addressOf(good)).status, 0) << redirection;
    EXPECT_EQ(update(options + addressOf(bad)).status, 1) << redirection;
    good.waitFor("burn");
  }
}

}  // namespace
