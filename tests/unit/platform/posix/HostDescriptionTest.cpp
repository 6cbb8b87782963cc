#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "TemporaryDirectory.h"
#include "platform/posix/HostDescription.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

class HostDescription : public testing::Test {
 protected:
  std::vector<std::string> linesWith(const std::string& osRelease) {
    std::ofstream(mFile) << osRelease;
    return platform::describeHost(mFile);
  }

  TemporaryDirectory mDirectory;
  std::filesystem::path mFile = mDirectory.path() / "os-release";
};

constexpr char kKernel[] = "Linux [^ ]+ [^ ]+";

TEST_F(HostDescription, NamesDistributionAndKernel) {
  EXPECT_THAT(linesWith("NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12\"\n"),
              ElementsAre("Debian GNU/Linux 12", MatchesRegex(kKernel)));
  EXPECT_THAT(linesWith("PRETTY_NAME=Plain\n"), ElementsAre("Plain", MatchesRegex(kKernel)));
  EXPECT_THAT(linesWith("PRETTY_NAME='Single quotes'\n"),
              ElementsAre("Single quotes", MatchesRegex(kKernel)));
  EXPECT_THAT(linesWith("PRETTY_NAME=xyx\n"), ElementsAre("xyx", MatchesRegex(kKernel)));
  EXPECT_THAT(linesWith("PRETTY_NAME=\"\n"), ElementsAre("\"", MatchesRegex(kKernel)));
  EXPECT_THAT(linesWith("PRETTY_NAME='One quote\""),
              ElementsAre("'One quote\"", MatchesRegex(kKernel)));
}

TEST_F(HostDescription, DoesWithoutTheFile) {
  EXPECT_THAT(linesWith("NAME=x\n"), ElementsAre("distribution unknown", MatchesRegex(kKernel)));
  EXPECT_THAT(platform::describeHost(mDirectory.path() / "none"),
              ElementsAre("distribution unknown", MatchesRegex(kKernel)));
}

// Opening it would wait for somebody who writes.
TEST_F(HostDescription, ReadsNothingButAFile) {
  ASSERT_EQ(mkfifo(mFile.c_str(), 0600), 0);
  EXPECT_THAT(platform::describeHost(mFile),
              ElementsAre("distribution unknown", MatchesRegex(kKernel)));
}

TEST_F(HostDescription, KnowsUserAndHomeByTheEnvironment) {
  setenv("HOME", "/home/anna", 1);
  setenv("USER", "anna", 1);
  const platform::PersonalNames names = platform::personalNames();
  EXPECT_EQ(names.home, "/home/anna");
  EXPECT_EQ(names.user, "anna");
  EXPECT_NE(names.computer, "");
  unsetenv("USER");
  EXPECT_EQ(platform::personalNames().user, "");
}

}  // namespace
