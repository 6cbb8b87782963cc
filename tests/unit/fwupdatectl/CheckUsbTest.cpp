#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "TemporaryDirectory.h"
#include "checkUsb.h"

namespace {

namespace fs = std::filesystem;

class CheckUsb : public testing::Test {
 protected:
  void write(const std::string& file, const std::string& text) const {
    fs::create_directories((mRoot.path() / file).parent_path());
    std::ofstream(mRoot.path() / file) << text << '\n';
  }

  // A printer whose node anybody may open, and whose interface nobody has.
  void attach() const {
    write("devices/1-2/idVendor", "3a71");
    write("devices/1-2/idProduct", "0c28");
    write("devices/1-2/busnum", "1");
    write("devices/1-2/devnum", "12");
    write("devices/1-2/manufacturer", "Veltra");
    write("devices/1-2/product", "KX350T\x1B[2J");
    write("devices/1-2/serial", "VX0042");
    write("devices/1-2:1.0/bInterfaceClass", "07");
    write("nodes/001/012", "");
  }

  void giveToDriver(const std::string& driver) const {
    fs::create_directory_symlink("../../drivers/" + driver,
                                 mRoot.path() / "devices/1-2:1.0/driver");
  }

  void installRule() const { write("rules/70-fwupdate.rules", "#"); }

  Findings check(bool isRoot = false) const {
    return checkUsb(isRoot, {mRoot.path() / "devices",
                             mRoot.path() / "nodes",
                             mRoot.path() / "proc",
                             {mRoot.path() / "none", mRoot.path() / "rules"}});
  }

  // Of the printer.
  Finding printer() const { return check().at(1); }

  TemporaryDirectory mRoot;
};

TEST_F(CheckUsb, RuleIsLookedForWhereverItMayBe) {
  installRule();
  const Finding rule = check().at(0);
  EXPECT_TRUE(rule.isWell);
  EXPECT_EQ(rule.text, "The rule " + (mRoot.path() / "rules/70-fwupdate.rules").string() +
                           " gives it to whoever sits here.");
}

TEST_F(CheckUsb, MissingRuleIsAProblemButForRoot) {
  const Finding rule = check().at(0);
  EXPECT_FALSE(rule.isWell);
  EXPECT_EQ(rule.text, "The rule 70-fwupdate.rules is not installed.");
  EXPECT_EQ(rule.nextStep,
            "Install the package fwupdate-common, or this file in /etc/udev/rules.d.");
  EXPECT_TRUE(check(true).at(0).isWell);
}

TEST_F(CheckUsb, NoPrinterIsNoProblem) {
  const Finding none = check().at(1);
  EXPECT_TRUE(none.isWell);
  EXPECT_EQ(none.text, "None is attached.");
}

TEST_F(CheckUsb, OtherDevicesOfTheMakerAreNotLookedAt) {
  attach();
  write("devices/1-2/idProduct", "0c29");
  EXPECT_EQ(printer().text, "None is attached.");
}

TEST_F(CheckUsb, PrinterOfTheKernelsDriverCanBeUsed) {
  attach();
  giveToDriver("usblp");
  EXPECT_TRUE(printer().isWell);
  EXPECT_EQ(printer().text, "You may open it, and nobody else uses it.");
  EXPECT_EQ(printer().subject, "USB printer Veltra KX350T\xEF\xBF\xBD[2J (VX0042)");
}

TEST_F(CheckUsb, NodeThatMayNotBeOpenedIsNamed) {
  attach();
  const fs::path node = mRoot.path() / "nodes/001/012";
  chmod(node.c_str(), 0);
  chmod(mRoot.path().c_str(), 0755);
  const auto sayAsNobody = [this] {
    constexpr uid_t kNobody = 65534;
    static_cast<void>(setuid(kNobody));
    const Finding found = printer();
    std::fputs((found.isWell ? "ok" : found.text).c_str(), stderr);
    std::_Exit(0);
  };
  EXPECT_EXIT(sayAsNobody(), testing::ExitedWithCode(0),
              testing::Eq("You are not permitted to open " + node.string() + " (mode 0000)."));
}

TEST_F(CheckUsb, PrinterWithoutANodeIsAProblem) {
  attach();
  fs::remove(mRoot.path() / "nodes/001/012");
  EXPECT_FALSE(printer().isWell);
  EXPECT_EQ(printer().text, "It has no device node.");
}

TEST_F(CheckUsb, PrinterWithoutAPrinterInterfaceIsAProblem) {
  attach();
  write("devices/1-2:1.0/bInterfaceClass", "ff");
  EXPECT_FALSE(printer().isWell);
  EXPECT_EQ(printer().text, "It offers no connection for printing.");
}

TEST_F(CheckUsb, ProgramThatHasThePrinterIsNamed) {
  attach();
  giveToDriver("usbfs");
  write("proc/812/comm", "ipp-usb");
  fs::create_directories(mRoot.path() / "proc/812/fd");
  fs::create_symlink(mRoot.path() / "nodes/001/012", mRoot.path() / "proc/812/fd/7");
  EXPECT_FALSE(printer().isWell);
  EXPECT_EQ(printer().text, "It is in use by ipp-usb (process 812).");
  EXPECT_EQ(printer().nextStep, "Close that, then try again.");
}

TEST_F(CheckUsb, ProgramThatNobodyCanNameIsAProblemAllTheSame) {
  attach();
  giveToDriver("usbfs");
  EXPECT_FALSE(printer().isWell);
  EXPECT_EQ(printer().text, "It is in use by another program.");
}

TEST_F(CheckUsb, AnotherDriverIsNamed) {
  attach();
  giveToDriver("usbtest");
  EXPECT_FALSE(printer().isWell);
  EXPECT_EQ(printer().text, "It is in use by the kernel driver usbtest.");
}

}  // namespace
