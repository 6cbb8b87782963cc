// The installed program, found from where its executable stands; and the double.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "FakeBundle.h"
#include "FakeLocalizedStrings.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixBundle.h"

namespace {

using platform::Bundle;
using platform::makePosixBundle;
using platform::Text;
using std::filesystem::path;

class PosixBundleTest : public testing::Test {
 protected:
  // <prefix>/bin/fwupdate, which need not exist.
  std::unique_ptr<Bundle> installed() const {
    return makePosixBundle(prefix() / "bin" / "fwupdate");
  }
  path prefix() const { return mDirectory.path(); }

  TemporaryDirectory mDirectory;
};

// What holds for an installed program, whoever tells of it.
void expectInstalledProgram(const Bundle& bundle, const path& resources) {
  EXPECT_TRUE(bundle.exists());
  EXPECT_EQ(bundle.resourcesDirectory(), resources);
  EXPECT_EQ(bundle.executableName().utf8(), "fwupdate");
}

TEST_F(PosixBundleTest, IsThePrefixOfTheExecutable) {
  std::filesystem::create_directories(prefix() / "share" / "fwupdate");
  expectInstalledProgram(*installed(), prefix() / "share" / "fwupdate");
}

TEST(FakeBundleTest, IsAnInstalledProgramAtFirst) {
  expectInstalledProgram(FakeBundle(), "/resources");
}

TEST_F(PosixBundleTest, WithoutAShareDirectoryHasNoResources) {
  EXPECT_TRUE(installed()->exists());
  EXPECT_EQ(installed()->resourcesDirectory(), std::nullopt);
}

TEST_F(PosixBundleTest, DoesNotLookIntoTheShareDirectory) {
  std::filesystem::create_directory(prefix() / "share");
  EXPECT_EQ(installed()->resourcesDirectory(), prefix() / "share" / "fwupdate");
}

TEST_F(PosixBundleTest, ExecutableOutsideABinDirectoryHasItsNameOnly) {
  std::filesystem::create_directories(prefix() / "share" / "fwupdate");
  for (const char* place : {"sbin", "bin.old", "share"}) {
    const auto bundle = makePosixBundle(prefix() / place / "fwupdate");
    EXPECT_TRUE(bundle->exists());
    EXPECT_EQ(bundle->resourcesDirectory(), std::nullopt);
    EXPECT_EQ(bundle->executableName().utf8(), "fwupdate");
  }
}

TEST_F(PosixBundleTest, UnknownExecutableHasNoBundleAndNoName) {
  const auto bundle = makePosixBundle(path());
  EXPECT_FALSE(bundle->exists());
  EXPECT_EQ(bundle->resourcesDirectory(), std::nullopt);
  EXPECT_TRUE(bundle->executableName().isNull());
}

TEST_F(PosixBundleTest, NameThatIsNotTextIsNull) {
  EXPECT_TRUE(makePosixBundle("/usr/bin/fw\xE4")->executableName().isNull());
}

TEST_F(PosixBundleTest, OfTheRunningProgramIsFoundByTheHost) {
  const path executable = std::filesystem::read_symlink("/proc/self/exe");
  const auto bundle = makePosixBundle();
  EXPECT_EQ(bundle->executableName().utf8(), executable.filename().string());
  EXPECT_TRUE(bundle->exists());
}

TEST(FakeBundleTest, IsWhatATestMakesOfIt) {
  FakeBundle bundle;
  bundle.remove();
  bundle.setResourcesDirectory(std::nullopt);
  bundle.setExecutableName(Text());
  EXPECT_FALSE(bundle.exists());
  EXPECT_EQ(bundle.resourcesDirectory(), std::nullopt);
  EXPECT_TRUE(bundle.executableName().isNull());
}

TEST(FakeLocalizedStringsTest, UntranslatedKeyIsItsOwnText) {
  FakeLocalizedStrings strings;
  strings.define("USB_PRINTER_CONFIRMATION", "Update this printer?");
  const auto textFor = [&](const char* key) {
    return std::string(strings.localizedString(Text::fromUtf8(key)).utf8());
  };
  EXPECT_EQ(textFor("USB_PRINTER_CONFIRMATION"), "Update this printer?");
  EXPECT_EQ(textFor("NETWORK_PRINTER_CONFIRMATION"), "NETWORK_PRINTER_CONFIRMATION");
  EXPECT_EQ(strings.askedFor(),
            (std::vector<std::string>{"USB_PRINTER_CONFIRMATION", "NETWORK_PRINTER_CONFIRMATION"}));
}

}  // namespace
