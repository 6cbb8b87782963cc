#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "TemporaryDirectory.h"
#include "platform/libusb/InterfaceHolders.h"

namespace fs = std::filesystem;
using testing::ElementsAre;

namespace {

constexpr const char* kNode = "/dev/bus/usb/001/005";

// A sysfs and a /proc of the test's own. The interface is with usbfs unless the test says more.
class InterfaceHoldersTest : public testing::Test {
 protected:
  InterfaceHoldersTest() {
    fs::create_directories(mInterface);
    fs::create_directories(mProcesses / "sys");
    setDriver("usbfs");
  }

  void setDriver(const std::string& name) {
    fs::remove(mInterface / "driver");
    fs::create_symlink("../../bus/usb/drivers/" + name, mInterface / "driver");
  }

  // A process with these files open.
  fs::path addProcess(const std::string& number, const std::string& name,
                      const std::vector<std::string>& files = {"/dev/null", kNode}) {
    const fs::path process = mProcesses / number;
    fs::create_directories(process / "fd");
    std::ofstream(process / "comm", std::ios::binary) << name << '\n';
    for (std::size_t i = 0; i < files.size(); ++i) {
      fs::create_symlink(files[i], process / "fd" / std::to_string(i));
    }
    return process;
  }

  std::vector<std::string> holders(
      std::chrono::milliseconds limit = std::chrono::minutes(1)) const {
    std::vector<std::string> sentences;
    for (const auto& each : platform::findInterfaceHolders(mInterface, kNode, limit, mProcesses)) {
      sentences.push_back(platform::describe(each));
    }
    return sentences;
  }

  TemporaryDirectory mDirectory;
  fs::path mInterface = mDirectory.path() / "1-2:1.1";
  fs::path mProcesses = mDirectory.path() / "proc";
};

constexpr const char* kUnknown = "The printer's interface is in use by another program.";

TEST_F(InterfaceHoldersTest, AKernelDriverIsNamedAndNobodyElse) {
  setDriver("usblp");
  addProcess("612", "ipp-usb");
  EXPECT_THAT(holders(),
              ElementsAre("The printer's interface is in use by the kernel driver usblp."));
}

TEST_F(InterfaceHoldersTest, AProgramIsNamedWithItsProcess) {
  addProcess("1", "init", {"/dev/null"});
  addProcess("612", "ipp-usb");
  addProcess("613", "cupsd", {"/dev/bus/usb/001/006", "/dev/bus/usb/001/0055"});
  EXPECT_THAT(holders(),
              ElementsAre("The printer's interface is in use by ipp-usb (process 612)."));
}

// It may have let go of the interface, and be about to come back.
TEST_F(InterfaceHoldersTest, AProgramIsNamedAlsoWhereNoDriverIs) {
  fs::remove(mInterface / "driver");
  addProcess("612", "ipp-usb");
  EXPECT_THAT(holders(),
              ElementsAre("The printer's interface is in use by ipp-usb (process 612)."));
}

TEST_F(InterfaceHoldersTest, OfManyProgramsThreeAreNamed) {
  for (const char* const number : {"20", "30", "40", "50"}) addProcess(number, "usb");
  const std::vector<std::string> found = holders();
  EXPECT_THAT(found, testing::SizeIs(3));
  EXPECT_THAT(found, testing::Each(testing::MatchesRegex(
                         "The printer's interface is in use by usb \\(process [2345]0\\)\\.")));
}

TEST_F(InterfaceHoldersTest, AProgramThatHasTheDeviceOpenTwiceIsNamedOnce) {
  addProcess("612", "ipp-usb", {kNode, kNode});
  EXPECT_THAT(holders(), testing::SizeIs(1));
}

TEST_F(InterfaceHoldersTest, ThisProgramIsNotItsOwnObstacle) {
  addProcess(std::to_string(getpid()), "fwupdate");
  EXPECT_THAT(holders(), ElementsAre(kUnknown));
}

TEST_F(InterfaceHoldersTest, WhoseFilesMayNotBeReadIsUnknown) {
  const fs::path files = addProcess("612", "ipp-usb", {}) / "fd";
  fs::remove(files);
  std::ofstream(files) << "no directory: root may read all that are";
  EXPECT_THAT(holders(), ElementsAre(kUnknown));
}

TEST_F(InterfaceHoldersTest, AProcessThatVanishesIsSkipped) {
  fs::remove(addProcess("20", "gone") / "comm");
  fs::create_directories(mProcesses / "30");
  addProcess("40", "usb");
  EXPECT_THAT(holders(), ElementsAre("The printer's interface is in use by usb (process 40)."));
}

TEST_F(InterfaceHoldersTest, WithoutProcessesItIsAnotherProgram) {
  EXPECT_THAT(holders(), ElementsAre(kUnknown));
  fs::remove_all(mProcesses);
  EXPECT_THAT(holders(), ElementsAre(kUnknown));
}

TEST_F(InterfaceHoldersTest, WithoutTimeItIsAnotherProgram) {
  addProcess("612", "ipp-usb");
  EXPECT_THAT(holders(std::chrono::milliseconds(0)), ElementsAre(kUnknown));
}

TEST_F(InterfaceHoldersTest, WhatIsNoProcessIsNotLookedAt) {
  for (const char* const name : {"0", "-5", "12a", "99999999999", "self"}) addProcess(name, "usb");
  EXPECT_THAT(holders(), ElementsAre(kUnknown));
}

TEST_F(InterfaceHoldersTest, ANameCannotCommandATerminal) {
  addProcess("612", "\x1B[2J\n\xE2\x80\xAE\xFFq\x7F~");
  EXPECT_THAT(holders(),
              ElementsAre("The printer's interface is in use by ?[2J?????q?~ (process 612)."));
}

TEST_F(InterfaceHoldersTest, ANameThatTheKernelCutComesFromTheProgramsFile) {
  fs::create_symlink("/usr/libexec/printer-settings-daemon",
                     addProcess("612", "printer-setting") / "exe");
  EXPECT_THAT(
      holders(),
      ElementsAre("The printer's interface is in use by printer-settings-daemon (process 612)."));
}

TEST_F(InterfaceHoldersTest, AFileThatWasReplacedMeanwhileKeepsItsName) {
  fs::create_symlink("/usr/libexec/printer-settings-daemon (deleted)",
                     addProcess("612", "printer-setting") / "exe");
  EXPECT_THAT(
      holders(),
      ElementsAre("The printer's interface is in use by printer-settings-daemon (process 612)."));
}

// As a script's name and its interpreter's file.
TEST_F(InterfaceHoldersTest, AFileOfAnotherNameDoesNotCount) {
  fs::create_symlink("/usr/bin/python3.11", addProcess("612", "printer-setting") / "exe");
  EXPECT_THAT(holders(),
              ElementsAre("The printer's interface is in use by printer-setting (process 612)."));
}

TEST_F(InterfaceHoldersTest, AProgramWithoutANameGoesByItsFile) {
  fs::create_symlink("/usr/sbin/scand", addProcess("612", "") / "exe");
  EXPECT_THAT(holders(), ElementsAre("The printer's interface is in use by scand (process 612)."));
}

}  // namespace
