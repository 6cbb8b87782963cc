#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeBundle.h"
#include "FakeFiles.h"
#include "FirmwareLoader.h"
#include "Log.h"
#include "LogRecorder.h"

namespace {

using namespace std::string_literals;
using Operation = FakeFiles::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int kUntouched = 4711;
constexpr char kNoReference[] =
    "Failed to get file system reference from URL or load the firmware file.";

const std::wstring kDeviceId = L"MFG:Veltra;MDL:KX350T;LIC:QT725013;FWVER:100;";
const std::string kGoodTail =
    "KX\0"
    "00000200\0"
    "demo\0"
    "\x03\x11"s;
const std::string kGoodFile = "the firmware" + kGoodTail;

class FirmwareLoaderTest : public testing::Test {
 protected:
  FirmwareLoaderTest() {
    mFiles.addDirectory("/resources");
    mRecorder.statuses().define(2, "ENOENT", "No such file or directory");
    mRecorder.statuses().define(5, "EIO", "Input/output error");
    mRecorder.statuses().define(0, "noErr", "No error");
  }

  void addFile(const std::string& bytes) { mFiles.addFile("/resources/product.brand.bin", bytes); }

  bool load(const std::wstring& deviceId = kDeviceId) {
    return getFirmware(deviceId, mImage, mVersion);
  }

  // Loads a file that ends in `tail`: the load itself must succeed.
  unsigned int versionOfFileWith(const std::string& tail) {
    addFile(tail);
    EXPECT_TRUE(load());
    EXPECT_EQ(imageText(), tail);
    return mVersion;
  }

  std::string imageText() const { return {mImage.begin(), mImage.end()}; }

  void expectNothingLoaded() const {
    EXPECT_EQ(imageText(), "as before");
    EXPECT_EQ(mVersion, kUntouched);
  }

  void expectImageEmptied() const {
    EXPECT_THAT(mImage, IsEmpty());
    EXPECT_EQ(mVersion, kUntouched);
  }

  FakeBundle mBundle;
  FakeFiles mFiles;
  LogRecorder mRecorder{{.bundle = &mBundle, .files = &mFiles}};
  platform::FileBytes mImage{{'a', 's', ' ', 'b', 'e', 'f', 'o', 'r', 'e'}};
  unsigned int mVersion = kUntouched;
};

TEST_F(FirmwareLoaderTest, LoadsTheWholeFileAndItsVersion) {
  addFile(kGoodFile);
  EXPECT_TRUE(load());
  EXPECT_EQ(imageText(), kGoodFile);
  EXPECT_EQ(mVersion, 200u);
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "Firmware version in file: 00000200"}));
}

TEST_F(FirmwareLoaderTest, AsksTheFileSystemInOrderAndReadsOnce) {
  addFile(kGoodFile);
  load();
  EXPECT_THAT(mFiles.calls(),
              ElementsAre("checkDirectory /resources", "makeReference /resources/product.brand.bin",
                          "dataSize /resources/product.brand.bin",
                          "readWhole /resources/product.brand.bin 31"));
}

TEST_F(FirmwareLoaderTest, ImageStaysWhereItWasRead) {
  addFile(kGoodFile);
  mImage = {};
  load();
  EXPECT_EQ(mImage.data(), mFiles.destination());
}

TEST_F(FirmwareLoaderTest, DeviceIdWithoutLicIsOneWithAnEmptyLic) {
  mFiles.addFile("/resources/product.tarn.bin", kGoodFile);
  EXPECT_TRUE(load(L"MDL:KX350T;"));
  EXPECT_TRUE(load(L"MDL:KX350T;LIC:;"));
}

TEST_F(FirmwareLoaderTest, WithoutABundleNothingIsLoaded) {
  mBundle.remove();
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, "Could not find application bundle."}));
  EXPECT_THAT(mFiles.calls(), IsEmpty());
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, WithoutABundleSurfaceNothingIsLoaded) {
  const LogRecorder recorder({.files = &mFiles});
  EXPECT_FALSE(load());
  EXPECT_THAT(recorder.entries(), ElementsAre(LogEntry{3, "Could not find application bundle."}));
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, WithoutAResourcesDirectoryNothingIsLoaded) {
  mBundle.setResourcesDirectory(std::nullopt);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, "Bundle resources URL is null."}));
  EXPECT_THAT(mFiles.calls(), IsEmpty());
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, ResourcesDirectoryThatDoesNotExistIsLoggedWithoutStatus) {
  mBundle.setResourcesDirectory("/elsewhere");
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, kNoReference}));
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, DeviceIdWithoutModelLeavesTwoEntries) {
  for (const std::wstring& deviceId :
       {L"LIC:QT725013;FWVER:100;"s, L"MDL:;LIC:QT725013;"s, L"LIC:;MDL:KX350T"s, L""s}) {
    EXPECT_FALSE(load(deviceId));
    EXPECT_THAT(mRecorder.takeEntries(),
                ElementsAre(LogEntry{3,
                                     "No printer model found; cannot match a firmware file "
                                     "without a model."},
                            LogEntry{3, kNoReference}));
    expectNothingLoaded();
  }
}

TEST_F(FirmwareLoaderTest, PrinterWithoutAFileLeavesTwoEntries) {
  for (const std::wstring& deviceId : {L"MDL:KX350T;LIC:ZZ;"s, L"MDL:KX350T2;LIC:;"s,
                                       L"MDL:"s + std::wstring(5000, L'K') + L";"s}) {
    EXPECT_FALSE(load(deviceId));
    EXPECT_THAT(mRecorder.takeEntries(),
                ElementsAre(LogEntry{3, "Could not find a firmware file to download."},
                            LogEntry{3, kNoReference}));
    expectNothingLoaded();
  }
}

// Each step fails together with a later one: the earlier one is what is told.
TEST_F(FirmwareLoaderTest, BundleIsLookedForBeforeTheResources) {
  mBundle.remove();
  mBundle.setResourcesDirectory(std::nullopt);
  EXPECT_FALSE(load(L""));
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, "Could not find application bundle."}));
}

TEST_F(FirmwareLoaderTest, ResourcesAreLookedForBeforeTheModel) {
  mBundle.setResourcesDirectory(std::nullopt);
  EXPECT_FALSE(load(L""));
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, "Bundle resources URL is null."}));
}

TEST_F(FirmwareLoaderTest, ResourcesAreCheckedBeforeTheModel) {
  mBundle.setResourcesDirectory("/elsewhere");
  for (const std::wstring& deviceId : {L""s, L"MDL:KX350T;LIC:ZZ;"s}) {
    EXPECT_FALSE(load(deviceId));
    EXPECT_THAT(mRecorder.takeEntries(), ElementsAre(LogEntry{3, kNoReference}));
  }
}

TEST_F(FirmwareLoaderTest, FileIsChosenBeforeItIsLookedFor) {
  mFiles.fail(Operation::MakeReference, 5);
  EXPECT_FALSE(load(L"MDL:KX350T;LIC:ZZ;"));
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Could not find a firmware file to download."},
                          LogEntry{3, kNoReference}));
}

TEST_F(FirmwareLoaderTest, FileThatIsNotThereHasNoSize) {
  mFiles.fail(Operation::DataSize, 5);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Failed to make file system reference for firmware file. "
                                   "<status=2 => ENOENT; desc: No such file or directory>"}));
}

TEST_F(FirmwareLoaderTest, FileWithoutASizeIsNotRead) {
  addFile(kGoodFile);
  mFiles.fail(Operation::DataSize, 5);
  mFiles.fail(Operation::DataFork, 2);
  EXPECT_FALSE(load());
  EXPECT_EQ(mFiles.destination(), nullptr);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Failed to get file info. "
                                   "<status=5 => EIO; desc: Input/output error>"}));
}

TEST_F(FirmwareLoaderTest, FormatVersionIsCheckedBeforeTheFields) {
  EXPECT_EQ(versionOfFileWith("KX\0\x02\x00"s), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 2, expected 3"}));
}

TEST_F(FirmwareLoaderTest, MissingFileIsLoggedWithItsStatus) {
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Failed to make file system reference for firmware file. "
                                   "<status=2 => ENOENT; desc: No such file or directory>"}));
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, SizeThatCannotBeFoundOutIsLoggedWithItsStatus) {
  addFile(kGoodFile);
  mFiles.fail(Operation::DataSize, 5);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Failed to get file info. "
                                   "<status=5 => EIO; desc: Input/output error>"}));
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, EmptyFileIsNotLoaded) {
  addFile("");
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{3, "Firmware file is empty."}));
  expectNothingLoaded();
}

TEST_F(FirmwareLoaderTest, MissingDataForkEmptiesTheImage) {
  addFile(kGoodFile);
  mFiles.fail(Operation::DataFork, 5);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Could not get data fork. "
                                   "<status=5 => EIO; desc: Input/output error>"}));
  expectImageEmptied();
}

TEST_F(FirmwareLoaderTest, FileThatCannotBeOpenedEmptiesTheImage) {
  addFile(kGoodFile);
  mFiles.fail(Operation::Open, 2);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3,
                                   "Could not open data fork. "
                                   "<status=2 => ENOENT; desc: No such file or directory>"}));
  expectImageEmptied();
}

TEST_F(FirmwareLoaderTest, FailedReadEmptiesTheImage) {
  addFile(std::string(4096, 'f'));
  mFiles.fail(Operation::Read, 5);
  mFiles.limitReads(1000);
  EXPECT_FALSE(load());
  EXPECT_THAT(
      mRecorder.entries(),
      ElementsAre(LogEntry{3, "File read failed. <status=5 => EIO; desc: Input/output error>"},
                  LogEntry{3, "Read 1000 of 4096 bytes"}));
  expectImageEmptied();
}

TEST_F(FirmwareLoaderTest, FailedReadOfEveryByteIsAFailureToo) {
  addFile(kGoodFile);
  mFiles.fail(Operation::Read, 5);
  mFiles.limitReads(kGoodFile.size());
  EXPECT_FALSE(load());
  EXPECT_EQ(mRecorder.entries().back(), (LogEntry{3, "Read 31 of 31 bytes"}));
  expectImageEmptied();
}

TEST_F(FirmwareLoaderTest, ShortReadWithoutAnErrorIsAFailure) {
  addFile(std::string(4096, 'f'));
  mFiles.limitReads(1000);
  EXPECT_FALSE(load());
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "File read failed. <status=0 => noErr; desc: No error>"},
                          LogEntry{3, "Read 1000 of 4096 bytes"}));
  expectImageEmptied();
}

TEST_F(FirmwareLoaderTest, NumbersAreDecimalWhateverTheStreamWasSetTo) {
  Log<3>() << std::hex;
  addFile(std::string(4096, 'f'));
  mFiles.limitReads(1000);
  load();
  EXPECT_EQ(mRecorder.entries().back(), (LogEntry{3, "Read 1000 of 4096 bytes"}));
}

TEST_F(FirmwareLoaderTest, OnlyTheLowHalfOfTheSizeIsUsed) {
  addFile(kGoodFile);
  mFiles.pretendSize("/resources/product.brand.bin", (std::uint64_t{7} << 32) + 31);
  EXPECT_TRUE(load());
  EXPECT_EQ(imageText(), kGoodFile);
  EXPECT_EQ(mVersion, 200u);
}

TEST_F(FirmwareLoaderTest, SizeWithoutALowHalfIsAnImageOfNoBytes) {
  addFile(kGoodFile);
  mFiles.pretendSize("/resources/product.brand.bin", std::uint64_t{1} << 32);
  EXPECT_TRUE(load());
  EXPECT_THAT(mImage, IsEmpty());
  EXPECT_EQ(mVersion, 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 0, expected 3"}));
}

TEST_F(FirmwareLoaderTest, WrongPlatformIdVersionKeepsTheImageWithVersionZero) {
  EXPECT_EQ(versionOfFileWith("KX\0"
                              "00000200\0"
                              "demo\0"
                              "\x02\x11"s),
            0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 2, expected 3"}));
}

TEST_F(FirmwareLoaderTest, PlatformIdVersionIsUnsigned) {
  EXPECT_EQ(versionOfFileWith("\xFF\x00"s), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 255, expected 3"}));
}

TEST_F(FirmwareLoaderTest, FileOfOneByteHasPlatformIdVersionZero) {
  EXPECT_EQ(versionOfFileWith("\x03"), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 0, expected 3"}));
}

TEST_F(FirmwareLoaderTest, WrongNumberOfFieldsKeepsTheImageWithVersionZero) {
  EXPECT_EQ(versionOfFileWith("KX\0"
                              "00000200\0"
                              "\x03\x0C"s),
            0u);
  EXPECT_EQ(versionOfFileWith("KX\0"
                              "00000200\0"
                              "a\0b\0"
                              "\x03\x10"s),
            0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid number of platform ID fields: got 2, expected 3"},
                          LogEntry{3, "Invalid number of platform ID fields: got 4, expected 3"}));
}

// Formatting stays set in the log.
TEST_F(FirmwareLoaderTest, NumbersOfAMalformedBlockAreDecimalWhateverWasLoggedBefore) {
  Log<3>() << std::hex;
  EXPECT_EQ(versionOfFileWith("\xFF\x00"s), 0u);
  Log<3>() << std::hex;
  EXPECT_EQ(versionOfFileWith(std::string(12, '\0') + "\x03\x0C"), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid platform ID version: got 255, expected 3"},
                          LogEntry{3, "Invalid number of platform ID fields: got 12, expected 3"}));
}

TEST_F(FirmwareLoaderTest, BlockOfNoBytesHasNoFields) {
  EXPECT_EQ(versionOfFileWith("KX\0"
                              "00000200\0"
                              "demo\0"
                              "\x03\x00"s),
            0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid number of platform ID fields: got 0, expected 3"}));
}

TEST_F(FirmwareLoaderTest, BlockThatIsLongerThanTheFileHasNoFields) {
  EXPECT_EQ(versionOfFileWith("KX\0"
                              "00000200\0"
                              "demo\0"
                              "\x03\x12"s),
            0u);
  EXPECT_EQ(versionOfFileWith("\x03\xFF"), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{3, "Invalid number of platform ID fields: got 0, expected 3"},
                          LogEntry{3, "Invalid number of platform ID fields: got 0, expected 3"}));
}

TEST_F(FirmwareLoaderTest, VersionIsTheFirstEightBytesOfALongerField) {
  EXPECT_EQ(versionOfFileWith("ABC\0"
                              "00000123XYZ\0"
                              "Q\0"
                              "\x03\x12"s),
            123u);
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "Firmware version in file: 00000123"}));
}

TEST_F(FirmwareLoaderTest, ShortVersionFieldEndsAtItsZero) {
  EXPECT_EQ(versionOfFileWith("A\0"
                              "12\0"
                              "Q\0"
                              "\x03\x07"s),
            12u);
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "Firmware version in file: 12"}));
}

TEST_F(FirmwareLoaderTest, VersionWithoutDigitsIsZero) {
  EXPECT_EQ(versionOfFileWith("A\0"
                              "demo\0"
                              "Q\0"
                              "\x03\x09"s),
            0u);
  EXPECT_EQ(versionOfFileWith("A\0\0\0\x03\x04"s), 0u);
}

TEST_F(FirmwareLoaderTest, VersionMayCarryASign) {
  EXPECT_EQ(versionOfFileWith("A\0"
                              "+0000012\0"
                              "Q\0"
                              "\x03\x0D"s),
            12u);
  EXPECT_EQ(versionOfFileWith("A\0"
                              "-0000001\0"
                              "Q\0"
                              "\x03\x0D"s),
            4294967295u);
}

TEST_F(FirmwareLoaderTest, VersionMayBeginWithBlanks) {
  EXPECT_EQ(versionOfFileWith("A\0"
                              "     200\0"
                              "Q\0"
                              "\x03\x0D"s),
            200u);
}

TEST_F(FirmwareLoaderTest, VersionThatIsNotUtf8IsZero) {
  EXPECT_EQ(versionOfFileWith("A\0"
                              "0000012\xE4\0"
                              "Q\0"
                              "\x03\x0D"s),
            0u);
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "Firmware version in file: <null>"}));
}

}  // namespace
