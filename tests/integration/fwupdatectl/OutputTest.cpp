// Where the tool's output goes, and where it cannot go.
#include <gmock/gmock.h>

#include "ShellCommand.h"

namespace {

Outcome show(const std::string& redirection) {
  return runInShell("'" FWUPDATECTL "' show '" FIRMWARE "/product.brand.bin' " + redirection);
}

TEST(FwupdatectlOutput, ThatCannotBeWrittenIsAFailure) {
  const Outcome outcome = show(">/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "fwupdatectl: The output could not be written. Is the disk full?\n");
  EXPECT_EQ(runInShell("'" FWUPDATECTL "' --help >/dev/full").status, 1);
}

TEST(FwupdatectlOutput, ThatNobodyReadsIsNone) {
  for (const char* redirection : {">&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
    const Outcome outcome = show(redirection);
    EXPECT_EQ(outcome.status, 0) << redirection;
    EXPECT_EQ(outcome.errors, "") << redirection;
  }
  const Outcome gone = runInShell("{ '" FWUPDATECTL "' show '" FIRMWARE
                                  "/product.brand.bin'; echo $? >&2; } | true");
  EXPECT_EQ(gone.errors, "0\n");
}

}  // namespace
