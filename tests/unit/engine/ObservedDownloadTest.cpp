// What the observer of downloads hears, and when: in one record with what reaches the transport and
// with the outcome's command.
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "DownloadAnnouncement.h"
#include "EngineFixture.h"
#include "FirmwareDownloader.h"
#include "RecordingObserver.h"
#include "RecordingTransport.h"

namespace {

using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;

class ObservedDownloadTest : public EngineFixture {
 protected:
  ObservedDownloadTest() {
    answerDownload(mRecord);
    mDownloader.emplace();
  }

  platform::Platform withObserver() {
    platform::Platform platform = platform::current();
    platform.downloadObserver = &mObserver;
    return platform;
  }

  void start() {
    const DownloadAnnouncement announcement(*mDownloader, Text::fromUtf8("Office"),
                                            Text::fromUtf8("10.0.0.5"));
    mDownloader->start(std::make_unique<RecordingTransport>(mRecord));
  }

  void resume(int times) {
    for (int i = 0; i < times; ++i) mDownloader->resume();
  }

  std::vector<std::string> takeCalls() { return std::exchange(mRecord.mCalls, {}); }

  TransportRecord mRecord;
  RecordingObserver mObserver{[this](const std::string& call) { mRecord.add(call); }};
  platform::PlatformScope mScope{withObserver()};
  std::optional<FirmwareDownloader> mDownloader;
};

TEST_F(ObservedDownloadTest, SuccessFromBeginningToEnd) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  mRecord.mOnCall["write 28"] = [this] { mRecord.mProgress(11); };
  start();
  resume(6);
  mRecord.mProgress(28);
  resume(3);
  EXPECT_THAT(takeCalls(),
              ElementsAre("began Office (10.0.0.5)",                                         //
                          "Connecting", "connect",                                           //
                          "AskingForVersion", "write 34", "write 59", "read 16", "read 36",  //
                          "ChoosingFirmware", "versions 100 200", "write 50",                //
                          "SendingFirmware", "handed over 0 of 28", "write 28",              //
                          "handed over 11 of 28", "handed over 28 of 28", "write 9",         //
                          "BurningFirmware within 3000", "read 16 within 3000",              //
                          "ended Succeeded", "DlOk", "delete"));
}

TEST_F(ObservedDownloadTest, PrinterThatIsUpToDate) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, bytes("\x00\x24MDL:KX350T;LIC:QT725013;FWVER:200;")};
  start();
  resume(5);
  EXPECT_THAT(takeCalls(),
              ElementsAre("began Office (10.0.0.5)", "Connecting", "connect", "AskingForVersion",
                          "write 34", "write 59", "read 16", "read 36", "ChoosingFirmware",
                          "versions 200 200", "ended UpToDate", "DlUd", "delete"));
}

TEST_F(ObservedDownloadTest, MissingFirmwareHasNoVersion) {
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  start();
  resume(4);
  takeCalls();
  resume(1);
  EXPECT_THAT(takeCalls(), ElementsAre("ChoosingFirmware", "ended Failed", "DlNo", "delete"));
}

TEST_F(ObservedDownloadTest, RefusedBurnEndsAsFailed) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, std::string(16, '\0')};
  start();
  resume(8);
  takeCalls();
  resume(1);
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed", "DlNo", "delete"));
}

TEST_F(ObservedDownloadTest, FirstTaskThatThrowsEndsInsideTheStart) {
  mRecord.mOnCall["connect"] = [] { throw std::runtime_error("no way there"); };
  start();
  EXPECT_THAT(takeCalls(), ElementsAre("began Office (10.0.0.5)", "Connecting", "connect",
                                       "ended Failed", "DlNo", "delete"));
}

TEST_F(ObservedDownloadTest, ImageThatCannotBeSentIsNotComplete) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  mRecord.mOnCall["write 28"] = [this] {
    mRecord.mProgress(11);
    throw std::runtime_error("Unable to write data");
  };
  start();
  resume(5);
  takeCalls();
  resume(1);
  EXPECT_THAT(takeCalls(), ElementsAre("SendingFirmware", "handed over 0 of 28", "write 28",
                                       "handed over 11 of 28", "ended Failed", "DlNo", "delete"));
}

TEST_F(ObservedDownloadTest, OnlyTheImageTellsItsProgress) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  std::vector<std::string> told;
  for (const char* write : {"write 34", "write 59", "write 50", "write 28", "write 9"}) {
    mRecord.mOnCall[write] = [&told, this, write] {
      if (mRecord.mProgress) told.emplace_back(write);
    };
  }
  start();
  resume(9);
  EXPECT_THAT(told, ElementsAre("write 28"));
}

TEST_F(ObservedDownloadTest, EachPhaseBeginsWhenTheLogHasToldOfIt) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  std::vector<std::string> before;
  for (const char* phase : {"Connecting", "AskingForVersion", "ChoosingFirmware", "SendingFirmware",
                            "BurningFirmware within 3000"}) {
    mRecord.mOnCall[phase] = [&before, this] { before.push_back(mLog.lines().back()); };
  }
  start();
  resume(9);
  EXPECT_THAT(before, ElementsAre("5 Connecting to I/O transport...",
                                  "5 Clearing unsolicited status updates...",
                                  "5 Choosing and loading a firmware file...",
                                  "5 Writing new firmware to printer...",
                                  "5 This will take some time; using a timeout of 3000ms."));
}

TEST_F(ObservedDownloadTest, FailureOfATransferEndsItOnce) {
  start();
  takeCalls();
  mDownloader->notifyAsyncFailure();
  EXPECT_TRUE(mEvents.deliverNext());
  mDownloader->stopTasks();
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed", "DlNo", "delete", "DlNo"));
}

TEST_F(ObservedDownloadTest, EndComesAlsoWhereItsCommandCannotBeTold) {
  start();
  takeCalls();
  mRecord.mOnCall["DlNo"] = [] { throw std::runtime_error("no sheet"); };
  EXPECT_THROW(mDownloader->stopTasks(), std::runtime_error);
  mDownloader.reset();
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed", "DlNo", "delete"));
}

TEST_F(ObservedDownloadTest, DroppedDownloadEndsAsFailed) {
  start();
  takeCalls();
  mDownloader.reset();
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed", "delete"));
}

TEST_F(ObservedDownloadTest, ControllerThatDropsNothingIsSilent) {
  mDownloader.reset();
  EXPECT_THAT(takeCalls(), IsEmpty());
}

// Nobody catches it on its way to the end of the program.
TEST_F(ObservedDownloadTest, TaskThatThrowsSomethingElseEndsWithItsController) {
  start();
  takeCalls();
  mRecord.mOnCall["write 34"] = [] { throw std::logic_error("unforeseen"); };
  EXPECT_THROW(resume(1), std::logic_error);
  EXPECT_THAT(takeCalls(), ElementsAre("AskingForVersion", "write 34"));
  mDownloader.reset();
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed", "delete"));
}

TEST_F(ObservedDownloadTest, TransportThatCannotBeMadeEndsIt) {
  {
    const DownloadAnnouncement announcement(*mDownloader, Text::fromUtf8("Office"), Text());
    EXPECT_THAT(takeCalls(), ElementsAre("began Office (<null>)"));
  }
  EXPECT_THAT(takeCalls(), ElementsAre("ended Failed"));
}

TEST_F(ObservedDownloadTest, NextDownloadIsTold) {
  mRecord.mOnCall["connect"] = [] { throw std::runtime_error("no way there"); };
  start();
  takeCalls();
  mRecord.mOnCall.clear();
  start();
  EXPECT_THAT(takeCalls(), ElementsAre("began Office (10.0.0.5)", "Connecting", "connect"));
}

TEST_F(ObservedDownloadTest, BurnMayTakeAsLongAsItsTimeOut) {
  installFirmware(std::string(131072 - kFirmware200.size(), 'F') + kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  start();
  resume(7);
  takeCalls();
  resume(1);
  EXPECT_THAT(takeCalls(), ElementsAre("BurningFirmware within 9000", "read 16 within 9000"));
}

TEST_F(ObservedDownloadTest, NobodyNeedsToWatch) {
  platform::Platform unwatched = platform::current();
  unwatched.downloadObserver = nullptr;
  const platform::PlatformScope scope(unwatched);
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  start();
  resume(9);
  EXPECT_THAT(takeCalls(),
              ElementsAre("connect", "write 34", "write 59", "read 16", "read 36", "write 50",
                          "write 28", "write 9", "read 16 within 3000", "DlOk", "delete"));
}

}  // namespace
