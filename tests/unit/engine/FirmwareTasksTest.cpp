#include <cstring>

#include "EndFirmwareDownloadTask.h"
#include "EngineFixture.h"
#include "HandleFirmwareBurnResponseTask.h"
#include "Log.h"
#include "RecordingTransport.h"
#include "StartFirmwareDownloadTask.h"
#include "WaitForFirmwareBurnResponseTask.h"
#include "WriteFirmwareTask.h"

namespace {

using testing::ElementsAre;

std::wstring deviceIdOfVersion(const wchar_t* version) {
  return std::wstring(L"MDL:KX350T;LIC:QT725013;FWVER:") + version + L";";
}

class FirmwareTasksTest : public EngineFixture {
 protected:
  AsyncTaskResult startWith(const std::wstring& deviceId) {
    StartFirmwareDownloadTask task(mTransport, deviceId);
    return task();
  }

  // The last entry of a wait for the burn of an image of that size, and the read it starts.
  std::string waitFor(std::size_t imageSize) {
    const platform::FileBytes image{std::vector<char>(imageSize)};
    WaitForFirmwareBurnResponseTask task(mTransport, image);
    EXPECT_EQ(task(), kTaskDone);
    return mLog.entries().back().text + " " + mRecord.mCalls.back();
  }

  AsyncTaskResult handle(const std::string& message) {
    AclResponse response;
    std::memcpy(static_cast<void*>(&response), message.data(), sizeof response);
    HandleFirmwareBurnResponseTask task(mTransport, response);
    return task();
  }

  TransportRecord mRecord;
  RecordingTransport mTransport{mRecord};
};

TEST_F(FirmwareTasksTest, OlderPrinterIsSentTheBurnHeader) {
  installFirmware(kFirmware200);
  EXPECT_EQ(startWith(deviceIdOfVersion(L"100")), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 50"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kBurnHeader200));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Choosing and loading a firmware file..."},
                                          LogEntry{5, "Firmware version in IEEE 1284 string: 100"},
                                          LogEntry{5, "Firmware version in file: 00000200"}));
}

TEST_F(FirmwareTasksTest, ImageIsTheWholeFile) {
  installFirmware(kFirmware200);
  const std::wstring deviceId = deviceIdOfVersion(L"100");
  StartFirmwareDownloadTask task(mTransport, deviceId);
  EXPECT_TRUE(task.image().empty());
  task();
  EXPECT_EQ(std::string(task.image().begin(), task.image().end()), kFirmware200);
}

TEST_F(FirmwareTasksTest, PrinterOfTheSameVersionIsUpToDate) {
  installFirmware(kFirmware200);
  EXPECT_EQ(startWith(deviceIdOfVersion(L"200")), kDownloadUpToDate);
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
  EXPECT_EQ(mLog.entries().back(), (LogEntry{5, "Firmware on the printer is already up-to-date."}));
}

TEST_F(FirmwareTasksTest, NewerPrinterIsUpToDate) {
  installFirmware(kFirmware200);
  EXPECT_EQ(startWith(deviceIdOfVersion(L"201")), kDownloadUpToDate);
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
}

TEST_F(FirmwareTasksTest, PrinterVersionIsComparedUnsigned) {
  installFirmware(kFirmware200);
  EXPECT_EQ(startWith(deviceIdOfVersion(L"-1")), kDownloadUpToDate);
}

TEST_F(FirmwareTasksTest, PrinterWithoutAVersionIsSentAnyFile) {
  installFirmware(
      bytes("\0"
            "00000001\0"
            "\0"
            "\x03\x0B"));
  EXPECT_EQ(startWith(L"MDL:KX350T;LIC:QT725013;"), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 50"));
}

TEST_F(FirmwareTasksTest, FileOfVersionZeroIsNeverSent) {
  installFirmware(bytes("FIRMWARE\x02\x00"));
  EXPECT_EQ(startWith(L"MDL:KX350T;LIC:QT725013;"), kDownloadUpToDate);
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
}

TEST_F(FirmwareTasksTest, MissingFileFailsTheDownload) {
  mLog.statuses().define(2, "ENOENT", "No such file or directory");
  EXPECT_EQ(startWith(deviceIdOfVersion(L"100")), kDownloadFailed);
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Choosing and loading a firmware file..."},
                          LogEntry{5, "Firmware version in IEEE 1284 string: 100"},
                          LogEntry{3,
                                   "Failed to make file system reference for firmware file. "
                                   "<status=2 => ENOENT; desc: No such file or directory>"},
                          LogEntry{3, "Failed to load firmware file."}));
}

TEST_F(FirmwareTasksTest, PrinterWithoutAModelFailsTheDownload) {
  installFirmware(kFirmware200);
  EXPECT_EQ(startWith(L"LIC:QT725013;FWVER:100;"), kDownloadFailed);
  EXPECT_EQ(mLog.entries().back(), (LogEntry{3, "Failed to load firmware file."}));
}

TEST_F(FirmwareTasksTest, WritesTheImageInOneOperationFromWhereItLies) {
  const platform::FileBytes image{{'\x01', '\x02', '\x03'}};
  WriteFirmwareTask task(mTransport, image);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 3"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre("\x01\x02\x03"));
  EXPECT_EQ(mRecord.mLastBuffer, image.data());
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Writing new firmware to printer..."}));
}

TEST_F(FirmwareTasksTest, EndsWithAUel) {
  EndFirmwareDownloadTask task(mTransport);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 9"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kUelText));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Finalising the firmware download..."}));
}

TEST_F(FirmwareTasksTest, TimeoutGrowsWithTheImage) {
  const std::string entry = "This will take some time; using a timeout of ";
  EXPECT_EQ(waitFor(1), entry + "3000ms. read 16 within 3000");
  EXPECT_EQ(waitFor(65535), entry + "3000ms. read 16 within 3000");
  EXPECT_EQ(waitFor(65536), entry + "6000ms. read 16 within 6000");
  EXPECT_EQ(waitFor(131072), entry + "9000ms. read 16 within 9000");
  EXPECT_EQ(waitFor(1000000), entry + "48000ms. read 16 within 48000");
}

TEST_F(FirmwareTasksTest, WaitSaysWhatItWaitsFor) {
  waitFor(1000000);
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{5,
                           "New firmware sent to printer, waiting for the printer to burn it to "
                           "flash and send response."},
                  LogEntry{5, "This will take some time; using a timeout of 48000ms."}));
}

TEST_F(FirmwareTasksTest, TimeoutIsDecimalWhateverTheLogWasLeftIn) {
  Log<5>() << std::hex;
  EXPECT_EQ(waitFor(1000000),
            "This will take some time; using a timeout of 48000ms. read 16 within 48000");
}

TEST_F(FirmwareTasksTest, WaitClearsTheResponseBeforeEachRead) {
  const platform::FileBytes image{std::vector<char>(1)};
  mRecord.mReplies = {kBurnResponse};
  WaitForFirmwareBurnResponseTask task(mTransport, image);
  task();
  EXPECT_TRUE(task.response().responseIsValid(15));
  task();
  EXPECT_EQ(mRecord.mLastReadBufferBefore, std::string(16, '\0'));
}

TEST_F(FirmwareTasksTest, ValidBurnReplyEndsAsSucceeded) {
  EXPECT_EQ(handle(kBurnResponse), kDownloadSucceeded);
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{7, "ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=1"},
                  LogEntry{7, "ACL Response raw: 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00 00 00 "},
                  LogEntry{5, "Firmware download is complete, the printer will restart."}));
}

TEST_F(FirmwareTasksTest, BurnReplyWithStatusTwoEndsAsFailed) {
  EXPECT_EQ(handle(bytes("\0\xAC\0\x0F\0\x02\0\0\0\0\0\0\0\0\0\0")), kDownloadFailed);
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{7, "ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=2"},
                  LogEntry{7, "ACL Response raw: 00 ac 00 0f 00 02 00 00 00 00 00 00 00 00 00 00 "},
                  LogEntry{3, "The firmware download failed on the printer."}));
}

TEST_F(FirmwareTasksTest, BurnReplyOfAnotherPrefixEndsAsFailed) {
  EXPECT_EQ(handle(bytes("\xAC\0\0\x0F\0\x01\0\0\0\0\0\0\0\0\0\0")), kDownloadFailed);
}

TEST_F(FirmwareTasksTest, BurnReplyToAnotherCommandEndsAsFailed) {
  EXPECT_EQ(handle(kDeviceIdResponse), kDownloadFailed);
}

}  // namespace
