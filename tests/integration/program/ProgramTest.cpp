// Starts the program as its users do, where it cannot run, and compares all that it says.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "ShellCommand.h"
#include "TemporaryDirectory.h"

namespace {

using std::filesystem::path;

const std::string kWithoutNib =
    "fwupdate: Cleaning up firmware downloader.\n"
    "fwupdate: General runtime error occurred: Failed to create NIB reference. <status=-10960 => "
    "kIBCarbonRuntimeCantFindNibFile; desc: The interface file could not be found>\n";

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    std::filesystem::create_directories(mPrefix.path() / "bin");
    std::filesystem::copy_file(FWUPDATE, program());
  }

  path program() const { return mPrefix.path() / "bin/fwupdate"; }
  path nib() const { return mPrefix.path() / "share/fwupdate/main.nib"; }

  // `arguments` are for the shell.
  Outcome run(const std::string& display, const std::string& arguments) const {
    return runInShell("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " + display + " '" +
                      program().string() + "' " + arguments);
  }

  Outcome runOffscreen(const std::string& arguments) const {
    return run("QT_QPA_PLATFORM=offscreen", arguments);
  }

  void placeWindow(const std::string& name) const {
    std::filesystem::create_directories(nib());
    std::filesystem::copy_file(path(NIB_DIRECTORY) / (name + ".ui"), nib() / (name + ".ui"));
  }

  TemporaryDirectory mPrefix;
};

TEST_F(ProgramTest, WithoutDisplayItSaysSoAndEndsWithOne) {
  const Outcome outcome = run("", "");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors,
            "fwupdate: cannot open a display. Start it from a desktop session, or set DISPLAY or "
            "WAYLAND_DISPLAY.\n");
}

TEST_F(ProgramTest, WithoutResourcesItLogsTheReasonAndEndsWithOne) {
  const Outcome outcome = runOffscreen("-e");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, kWithoutNib);
}

TEST_F(ProgramTest, LogGoesToStandardErrorOnlyForTheFirstArgument) {
  for (const char* arguments : {"", "-E", "--e", "-ee", "'-e '", "'' -e", "x -e"}) {
    const Outcome outcome = runOffscreen(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.errors, "") << arguments;
  }
  EXPECT_EQ(runOffscreen("-e x --help").errors, kWithoutNib);
}

TEST_F(ProgramTest, ReaderOfTheLogMayGo) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ASSERT_EQ(::dup2(ends[1], 9), 9);  // a shell's redirection takes one digit
  for (const int end : ends) ::close(end);
  EXPECT_EQ(runOffscreen("-e 2>&9").status, 1);
  ::close(9);
}

TEST_F(ProgramTest, WindowThatIsMissingFromTheResourcesIsNamedByItsMessage) {
  const std::string suffix =
      " <status=-10962 => kIBCarbonRuntimeCantFindObject; desc: The interface file holds no such "
      "object>\n";
  const std::string prefix =
      "fwupdate: Cleaning up firmware downloader.\nfwupdate: General runtime error occurred: ";
  std::filesystem::create_directories(nib());
  EXPECT_EQ(runOffscreen("-e").errors, prefix + "Failed to create window from NIB." + suffix);
  placeWindow("PrinterSelectWindow");
  EXPECT_EQ(runOffscreen("-e").errors, prefix + "Failed to create dialog sheet." + suffix);
  placeWindow("ConfirmDownloadSheet");
  EXPECT_EQ(runOffscreen("-e").errors, prefix + "Failed to create dialog sheet." + suffix);
  placeWindow("ProgressSheet");
  EXPECT_EQ(runOffscreen("-e").errors, prefix + "Failed to set menu bar from NIB." + suffix);
}

}  // namespace
