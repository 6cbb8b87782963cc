// Starts the program as its users do, where it cannot run, and compares all that it says on
// standard error and in the system log.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "Places.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"

namespace {

using std::filesystem::path;

constexpr int kCannotRun = 77;

const std::string kWithoutNib =
    "fwupdate: Cleaning up firmware downloader.\n"
    "fwupdate: General runtime error occurred: Failed to create NIB reference. <status=-10960 => "
    "kIBCarbonRuntimeCantFindNibFile; desc: The interface file could not be found>\n";

const std::string kWithoutDisplay =
    "fwupdate: cannot open a display. Start it from a desktop session, or set DISPLAY or "
    "WAYLAND_DISPLAY.\n";

const std::string kPreloaded = "LD_PRELOAD='" +
                               builtFile("tests/integration/program/libfailing_libusb.so") +
                               "' ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\" "
                               "QT_QPA_PLATFORM=offscreen";

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    std::filesystem::create_directories(mPrefix.path() / "bin");
    std::filesystem::copy_file(builtProgram("fwupdate"), program());
  }

  path program() const { return mPrefix.path() / "bin/fwupdate"; }
  path nib() const { return mPrefix.path() / "share/fwupdate/main.nib"; }

  // `environment` and `arguments` are for the shell.
  Outcome run(const std::string& environment, const std::string& arguments) const {
    return runInShell(command(environment, arguments));
  }

  std::string command(const std::string& environment, const std::string& arguments) const {
    return "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " + environment + " '" +
           program().string() + "' " + arguments;
  }

  // Where it cannot start: what the system log and standard error get of it.
  void expectFailure(const std::string& environment, const std::string& arguments,
                     const std::string& entries, const std::string& errors) const {
    const path log = mPrefix.path() / "log";
    const Outcome outcome = runInShell("'" + builtProgram("with-system-log") + "' '" +
                                       log.string() + "' " + command(environment, arguments));
    if (outcome.status == kCannotRun) GTEST_SKIP() << "no name spaces for this user";
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, errors);
    EXPECT_EQ(contentOf(log), entries);
  }

  Outcome runOffscreen(const std::string& arguments) const {
    return run("QT_QPA_PLATFORM=offscreen", arguments);
  }

  void placeWindow(const std::string& name) const {
    std::filesystem::create_directories(nib());
    std::filesystem::copy_file(projectFile("resources/main.nib/" + name + ".ui"),
                               nib() / (name + ".ui"));
  }

  TemporaryDirectory mPrefix;
};

TEST_F(ProgramTest, WithoutDisplayItSaysSoAndEndsWithOne) {
  const Outcome outcome = run("", "");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, kWithoutDisplay);
  EXPECT_EQ(run("", "-e").errors, kWithoutDisplay);
}

TEST_F(ProgramTest, WithoutResourcesItLogsTheReasonAndEndsWithOne) {
  const Outcome outcome = runOffscreen("-e");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, kWithoutNib);
}

TEST_F(ProgramTest, CopyOutsideABinDirectoryLogsToStandardErrorToo) {
  const path copy = mPrefix.path() / "copied";
  std::filesystem::copy_file(builtProgram("fwupdate"), copy);
  const Outcome outcome = runInShell("QT_QPA_PLATFORM=offscreen '" + copy.string() + "' -e");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "copied: Cleaning up firmware downloader.\n"
            "copied: General runtime error occurred: Failed to create NIB reference. "
            "<status=-10960 => kIBCarbonRuntimeCantFindNibFile; desc: The interface file could not "
            "be found>\n");
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

TEST_F(ProgramTest, MissingDisplayIsInTheSystemLogToo) {
  const std::string entry =
      "<11>fwupdate: cannot open a display. Start it from a desktop session, or set DISPLAY or "
      "WAYLAND_DISPLAY.\n";
  expectFailure("", "", entry, kWithoutDisplay);
  expectFailure("", "-e", entry, kWithoutDisplay);
}

TEST_F(ProgramTest, PlatformThatCannotBeBuiltIsInTheSystemLog) {
  const std::string noMemory = "fwupdate: Allocation error occurred: std::bad_alloc\n";
  expectFailure(kPreloaded, "", "<11>" + noMemory, "");
  expectFailure(kPreloaded, "-e", "<11>" + noMemory, noMemory);
  expectFailure(kPreloaded + " FAILURE='No bus.'", "-e",
                "<11>fwupdate: General runtime error occurred: No bus.\n",
                "fwupdate: General runtime error occurred: No bus.\n");
}

TEST_F(ProgramTest, InterfaceThatCannotBeBuiltIsInTheSystemLog) {
  expectFailure("QT_QPA_PLATFORM=offscreen", "",
                "<13>fwupdate: Cleaning up firmware downloader.\n"
                "<11>fwupdate: General runtime error occurred: Failed to create NIB reference. "
                "<status=-10960 => kIBCarbonRuntimeCantFindNibFile; desc: The interface file could "
                "not be found>\n",
                "");
}

}  // namespace
