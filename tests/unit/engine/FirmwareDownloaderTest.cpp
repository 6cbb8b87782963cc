#include <memory>
#include <optional>
#include <stdexcept>

#include "AssertionLine.h"
#include "EngineFixture.h"
#include "FirmwareDownloader.h"
#include "RecordingTransport.h"
#include "WatchedMemory.h"

using namespace platform::literals;

namespace {

using platform::OSStatus;
using testing::ElementsAre;
using testing::IsEmpty;

// Answers the controller's events as the application does, and puts the outcome commands into the
// record of the transport, where their order shows.
class FirmwareDownloaderTest : public EngineFixture {
 protected:
  FirmwareDownloaderTest() {
    answerDownload(mRecord);
    mEvents.takeCalls();
  }

  void throwFrom(const char* call) {
    mRecord.mOnCall[call] = [call] { throw std::runtime_error(call); };
  }

  void start() { mDownloader.start(std::make_unique<RecordingTransport>(mRecord)); }

  void resume(int times) {
    for (int i = 0; i < times; ++i) mDownloader.resume();
  }

  TransportRecord mRecord;
  FirmwareDownloader mDownloader;
};

TEST_F(FirmwareDownloaderTest, RunsTheFirstTaskInsideStart) {
  start();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect"));
}

TEST_F(FirmwareDownloaderTest, TakesADownloadToTheEnd) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  start();
  resume(9);
  EXPECT_THAT(mRecord.mCalls,
              ElementsAre("connect", "write 34", "write 59", "read 16", "read 36", "write 50",
                          "write 28", "write 9", "read 16 within 3000", "DlOk", "delete"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kUstatusOffText, kDeviceIdRequest, kBurnHeader200,
                                            kFirmware200, kUelText));
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(
          LogEntry{5, "Connecting to I/O transport..."},
          LogEntry{5, "Clearing unsolicited status updates..."},
          LogEntry{5, "Requesting IEEE 1284 device ID from the printer..."},
          LogEntry{5, "IEEE 1284 device ID request sent to printer, waiting for response..."},
          LogEntry{7, "ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1"},
          LogEntry{7, "ACL Response raw: 00 ac 00 06 00 01 00 24 00 00 00 00 00 00 00 00 "},
          LogEntry{5, "Reading IEEE 1284 device ID..."},
          LogEntry{5, "Validating IEEE 1284 device ID..."},
          LogEntry{5, "IEEE 1284 device ID is MDL:KX350T;LIC:QT725013;FWVER:100;"},
          LogEntry{5, "Choosing and loading a firmware file..."},
          LogEntry{5, "Firmware version in IEEE 1284 string: 100"},
          LogEntry{5, "Firmware version in file: 00000200"},
          LogEntry{5, "Writing new firmware to printer..."},
          LogEntry{5, "Finalising the firmware download..."},
          LogEntry{5,
                   "New firmware sent to printer, waiting for the printer to burn it to flash and "
                   "send response."},
          LogEntry{5, "This will take some time; using a timeout of 3000ms."},
          LogEntry{7, "ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=1"},
          LogEntry{7, "ACL Response raw: 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00 00 00 "},
          LogEntry{5, "Firmware download is complete, the printer will restart."}));
}

TEST_F(FirmwareDownloaderTest, OutcomeIsTheOnlyCommand) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  start();
  resume(9);
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlOk"));
}

TEST_F(FirmwareDownloaderTest, UpToDatePrinterEndsBeforeTheBurnHeader) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, bytes("\x00\x24MDL:KX350T;LIC:QT725013;FWVER:200;")};
  start();
  resume(5);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "write 34", "write 59", "read 16", "read 36",
                                          "DlUd", "delete"));
}

TEST_F(FirmwareDownloaderTest, MissingFirmwareEndsAsFailed) {
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  start();
  resume(5);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "write 34", "write 59", "read 16", "read 36",
                                          "DlNo", "delete"));
}

TEST_F(FirmwareDownloaderTest, RefusedBurnEndsAsFailed) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, std::string(16, '\0')};
  start();
  resume(9);
  EXPECT_THAT(mRecord.mCalls.back(), "delete");
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
}

TEST_F(FirmwareDownloaderTest, ConnectThatThrowsEndsInsideStart) {
  mRecord.mOnCall["connect"] = [] { throw std::runtime_error("Unable to connect to socket"); };
  start();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Connecting to I/O transport..."},
                          LogEntry{3,
                                   "General runtime error occurred during async task: Unable to "
                                   "connect to socket"}));
}

TEST_F(FirmwareDownloaderTest, StartsAgainAfterTheEnd) {
  mRecord.mOnCall["connect"] = [] { throw std::runtime_error("no"); };
  start();
  mRecord.mOnCall.clear();
  start();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete", "connect"));
}

TEST_F(FirmwareDownloaderTest, StoppingTellsFailureWhileTheTransportExists) {
  start();
  mDownloader.stopTasks();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));
}

TEST_F(FirmwareDownloaderTest, StoppingAgainTellsFailureAgain) {
  start();
  mDownloader.stopTasks();
  mDownloader.stopTasks();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete", "DlNo"));
}

TEST_F(FirmwareDownloaderTest, FailureThatCannotBeToldEndsTheDownload) {
  throwFrom("connect");
  throwFrom("DlNo");
  EXPECT_THAT([&] { start(); }, testing::ThrowsMessage<std::runtime_error>("DlNo"));
  ASSERT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));

  mRecord.mOnCall.clear();
  start();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete", "connect"));
}

TEST_F(FirmwareDownloaderTest, SuccessThatCannotBeToldEndsTheDownload) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  throwFrom("DlOk");
  start();
  resume(8);
  mRecord.mCalls.clear();
  EXPECT_THAT([&] { resume(1); }, testing::ThrowsMessage<std::runtime_error>("DlOk"));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("DlOk", "delete"));
}

TEST_F(FirmwareDownloaderTest, UpToDateThatCannotBeToldEndsTheDownload) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, bytes("\x00\x24MDL:KX350T;LIC:QT725013;FWVER:200;")};
  throwFrom("DlUd");
  start();
  resume(4);
  mRecord.mCalls.clear();
  EXPECT_THAT([&] { resume(1); }, testing::ThrowsMessage<std::runtime_error>("DlUd"));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("DlUd", "delete"));
}

TEST_F(FirmwareDownloaderTest, StopThatCannotBeToldEndsTheDownload) {
  start();
  throwFrom("DlNo");
  EXPECT_THAT([&] { mDownloader.stopTasks(); }, testing::ThrowsMessage<std::runtime_error>("DlNo"));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));
}

TEST_F(FirmwareDownloaderTest, TransportGoesBeforeTheMemoryOfItsOperation) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  start();
  resume(6);
  ASSERT_EQ(mRecord.mCalls.back(), "write 28");
  const WatchedBlock image(mRecord.mLastBuffer);
  std::optional<bool> imageWasThere;
  mRecord.mOnCall["delete"] = [&] { imageWasThere = !image.isFreed(); };
  mDownloader.stopTasks();
  EXPECT_EQ(imageWasThere, true);
  EXPECT_TRUE(image.isFreed());
}

TEST_F(FirmwareDownloaderTest, TellsEachOutcomeByItsCommand) {
  mDownloader.failed();
  mDownloader.upToDate();
  mDownloader.succeeded();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo", "DlUd", "DlOk"));
}

TEST_F(FirmwareDownloaderTest, DestructionDropsTheDownloadWithoutAnOutcome) {
  {
    FirmwareDownloader downloader;
    downloader.start(std::make_unique<RecordingTransport>(mRecord));
    mLog.takeEntries();
  }
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "delete"));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Cleaning up firmware downloader."}));
}

TEST_F(FirmwareDownloaderTest, PostsAResumeForItself) {
  start();
  mDownloader.enqueueResume();
  EXPECT_THAT(mEvents.calls(), ElementsAre("create FwDl 1", "set ----", "post FwDl 1"));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect"));
  EXPECT_TRUE(mEvents.deliverNext());
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "write 34"));
}

TEST_F(FirmwareDownloaderTest, PostedFailureEndsTheDownload) {
  start();
  mDownloader.notifyAsyncFailure();
  EXPECT_THAT(mEvents.calls(), ElementsAre("create FwDl 2", "set ----", "post FwDl 2"));
  EXPECT_TRUE(mEvents.deliverNext());
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));
}

TEST_F(FirmwareDownloaderTest, EventsCarryTheControllerThatPostedThem) {
  FirmwareDownloader other;
  other.postEvent(2);
  void* object = nullptr;
  EXPECT_EQ(mEvents.nextQueued().getParameter("----"_4cc, object), platform::noErr);
  EXPECT_EQ(object, &other);
}

TEST_F(FirmwareDownloaderTest, EventThatCannotBeMadeIsOnlyLogged) {
  mLog.statuses().define(-9870, "eventParameterNotFoundErr", "The event has no such parameter.");
  mEvents.fail(FakeEvents::Operation::CreateEvent, -9870);
  mDownloader.enqueueResume();
  EXPECT_THAT(mEvents.calls(), ElementsAre("create FwDl 1"));
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{3,
                           "Failed to create or post FirmwareDownloader event. <status=-9870 => "
                           "eventParameterNotFoundErr; desc: The event has no such parameter.>"}));
}

TEST_F(FirmwareDownloaderTest, EventThatTakesNoParameterIsOnlyLogged) {
  mEvents.fail(FakeEvents::Operation::SetParameter, 12);
  mDownloader.notifyAsyncFailure();
  EXPECT_THAT(mEvents.calls(), ElementsAre("create FwDl 2", "set ----"));
  EXPECT_EQ(mEvents.queued(), 0u);
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{
          3, "Failed to create or post FirmwareDownloader event. <status=12 => ; desc: >"}));
}

TEST_F(FirmwareDownloaderTest, EventThatTakesNoParameterIsReleasedBeforeTheLogEntry) {
  struct WatchingEvents : FakeEvents {
    OSStatus createEvent(platform::FourCharCode eventClass, std::uint32_t kind,
                         std::unique_ptr<platform::Event>& event) override {
      const OSStatus status = FakeEvents::createEvent(eventClass, kind, event);
      mCreated.emplace(event.get());
      return status;
    }
    std::optional<WatchedBlock> mCreated;
  } events;
  struct AskingLog : FakeSystemLog {
    explicit AskingLog(const WatchingEvents& asked) : mAsked(asked) {}
    void write(int, const char*) override { mReleased.push_back(mAsked.mCreated->isFreed()); }
    const WatchingEvents& mAsked;
    std::vector<bool> mReleased;
  } log(events);
  events.fail(FakeEvents::Operation::SetParameter, 12);
  platform::Platform watching = platform::current();
  watching.events = &events;
  watching.systemLog = &log;
  const platform::PlatformScope scope(watching);
  mDownloader.enqueueResume();
  EXPECT_THAT(log.mReleased, ElementsAre(true));
}

TEST_F(FirmwareDownloaderTest, EventThatCannotBePostedIsNotNoticed) {
  mEvents.fail(FakeEvents::Operation::Post, 12);
  mDownloader.enqueueResume();
  EXPECT_EQ(mEvents.queued(), 0u);
  EXPECT_THAT(mLog.entries(), IsEmpty());
}

using FirmwareDownloaderDeathTest = FirmwareDownloaderTest;

TEST_F(FirmwareDownloaderDeathTest, StartWhileADownloadRunsIsFatal) {
  start();
  EXPECT_DEATH(start(), assertionLine("mAsyncTaskQueue.empty()", "start",
                                      "Host/installkit/osx/fwupdate/AsyncTaskQueue", 358));
}

TEST_F(FirmwareDownloaderDeathTest, ResumeWithoutADownloadIsFatal) {
  EXPECT_DEATH(mDownloader.resume(),
               assertionLine("!mAsyncTaskQueue.empty()", "resume",
                             "Host/installkit/osx/fwupdate/FirmwareDownloader", 51));
}

TEST_F(FirmwareDownloaderDeathTest, ResumeThatComesAfterTheEndIsFatal) {
  start();
  mDownloader.enqueueResume();
  mDownloader.stopTasks();
  EXPECT_DEATH(mEvents.deliverNext(),
               assertionLine("!mAsyncTaskQueue.empty()", "resume",
                             "Host/installkit/osx/fwupdate/FirmwareDownloader", 51));
}

}  // namespace
