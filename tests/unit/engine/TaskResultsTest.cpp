// How the controller acts on what its tasks answer, whatever they do.
#include <memory>
#include <new>
#include <stdexcept>

#include "DownloadAnnouncement.h"
#include "EngineFixture.h"
#include "FirmwareDownloader.h"
#include "IoKitException.h"
#include "RecordingObserver.h"
#include "RecordingTransport.h"
#include "ScriptedTasks.h"
#include "WatchedMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TaskResultsTest : public EngineFixture {
 protected:
  TaskResultsTest() { taskScript() = TaskScript(); }

  void answer(const std::string& task, AsyncTaskResult result) {
    taskScript().mAnswers[task] = [result] { return result; };
  }

  template <typename Exception>
  void raise(const std::string& task, const Exception& exception) {
    taskScript().mAnswers[task] = [exception]() -> AsyncTaskResult { throw exception; };
  }

  void answerAll(AsyncTaskResult result) {
    for (const char* task : kTasks) answer(task, result);
  }

  void start() { mDownloader.start(std::make_unique<RecordingTransport>(mRecord)); }

  bool isRunning() const { return mRecord.mCalls.empty(); }

  static constexpr const char* kTasks[] = {"ConnectTask",
                                           "SuppressUstatusTask",
                                           "SendIeee1284ReqTask",
                                           "WaitForAclResponseTask",
                                           "ReadIeee1284DataTask",
                                           "HandleIeee1284DataTask",
                                           "StartFirmwareDownloadTask",
                                           "WriteFirmwareTask",
                                           "EndFirmwareDownloadTask",
                                           "WaitForFirmwareBurnResponseTask",
                                           "HandleFirmwareBurnResponseTask"};

  TransportRecord mRecord;
  FirmwareDownloader mDownloader;
};

TEST_F(TaskResultsTest, DoneWaitsForAResumeBeforeTheNextTask) {
  start();
  EXPECT_THAT(taskScript().mRan, ElementsAre("ConnectTask"));
  mDownloader.resume();
  EXPECT_THAT(taskScript().mRan, ElementsAre("ConnectTask", "SuppressUstatusTask"));
}

TEST_F(TaskResultsTest, RunsTheTasksInTheirOrder) {
  start();
  for (int i = 0; i < 10; ++i) mDownloader.resume();
  EXPECT_THAT(taskScript().mRan, testing::ElementsAreArray(kTasks));
}

TEST_F(TaskResultsTest, DoneByTheLastTaskEndsWithoutAnOutcome) {
  start();
  for (int i = 0; i < 9; ++i) mDownloader.resume();
  EXPECT_TRUE(isRunning());
  mDownloader.resume();
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(mEvents.commands(), IsEmpty());
}

TEST_F(TaskResultsTest, ContinueRunsTheNextTaskAtOnce) {
  answer("ConnectTask", kTaskDoneContinue);
  start();
  EXPECT_THAT(taskScript().mRan, ElementsAre("ConnectTask", "SuppressUstatusTask"));
  EXPECT_TRUE(isRunning());
}

TEST_F(TaskResultsTest, ContinueByTheLastTaskEndsWithoutAnOutcome) {
  answerAll(kTaskDoneContinue);
  start();
  EXPECT_THAT(taskScript().mRan, testing::ElementsAreArray(kTasks));
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(mEvents.commands(), IsEmpty());
}

TEST_F(TaskResultsTest, AnnouncedDownloadWithoutAnOutcomeEndsAsFailed) {
  std::vector<std::string> told;
  RecordingObserver observer([&told](const std::string& call) { told.push_back(call); });
  platform::Platform observed = platform::current();
  observed.downloadObserver = &observer;
  const platform::PlatformScope scope(observed);
  answerAll(kTaskDoneContinue);
  const DownloadAnnouncement announcement(mDownloader, platform::Text(), platform::Text());
  start();
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(told, ElementsAre("began <null> (<null>)", "ended Failed"));
}

TEST_F(TaskResultsTest, NotDoneRunsTheSameTaskAgain) {
  answer("ConnectTask", kTaskNotDone);
  start();
  mDownloader.resume();
  EXPECT_THAT(taskScript().mRan, ElementsAre("ConnectTask", "ConnectTask"));
  EXPECT_TRUE(isRunning());
  EXPECT_THAT(mEvents.commands(), IsEmpty());
}

TEST_F(TaskResultsTest, OutcomesEndTheDownload) {
  answer("ConnectTask", kDownloadSucceeded);
  start();
  answer("ConnectTask", kDownloadUpToDate);
  start();
  answer("ConnectTask", kDownloadFailed);
  start();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlOk", "DlUd", "DlNo"));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("delete", "delete", "delete"));
}

TEST_F(TaskResultsTest, AnyOtherCodeWithTheTopBitEndsAsFailed) {
  for (const std::uint32_t code : {0x80000000u, 0x80000001u, 0x80000006u, 0xFFFFFFFFu}) {
    answer("ConnectTask", static_cast<AsyncTaskResult>(code));
    start();
    EXPECT_THAT(mEvents.takeCommands(), ElementsAre("DlNo")) << std::hex << code;
    EXPECT_THAT(mRecord.mCalls, ElementsAre("delete")) << std::hex << code;
    mRecord.mCalls.clear();
  }
}

TEST_F(TaskResultsTest, AnyOtherCodeTellsFailureAndKeepsTheTask) {
  for (const std::uint32_t code : {3u, 0x7FFFFFFFu}) {
    answer("ConnectTask", static_cast<AsyncTaskResult>(code));
    taskScript().mRan.clear();
    mRecord.mCalls.clear();
    start();
    mDownloader.resume();
    EXPECT_TRUE(isRunning()) << std::hex << code;
    EXPECT_THAT(taskScript().mRan, ElementsAre("ConnectTask", "ConnectTask")) << std::hex << code;
    mDownloader.stopTasks();
    EXPECT_THAT(mEvents.takeCommands(), ElementsAre("DlNo", "DlNo", "DlNo")) << std::hex << code;
  }
}

TEST_F(TaskResultsTest, IoKitErrorEndsAsFailed) {
  raise("ConnectTask", IoKitException("Failed to open device.", 0xe00002c5));
  start();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{3,
                                   "I/O Kit error occurred during async task: Failed to open "
                                   "device. [return value = 0xe00002c5]"}));
}

TEST_F(TaskResultsTest, RuntimeErrorEndsAsFailed) {
  raise("ConnectTask", std::runtime_error("Unable to write data"));
  start();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{
                  3, "General runtime error occurred during async task: Unable to write data"}));
}

TEST_F(TaskResultsTest, ExhaustedMemoryEndsAsFailed) {
  raise("ConnectTask", std::bad_alloc());
  start();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{3, "Allocation error occurred during async task: std::bad_alloc"}));
}

TEST_F(TaskResultsTest, ExceptionOfALaterTaskEndsAsFailed) {
  raise("HandleFirmwareBurnResponseTask", std::runtime_error("late"));
  start();
  for (int i = 0; i < 10; ++i) mDownloader.resume();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(isRunning());
}

TEST_F(TaskResultsTest, AnyOtherExceptionLeavesTheController) {
  raise("ConnectTask", std::logic_error("misuse"));
  EXPECT_THAT([&] { start(); }, testing::ThrowsMessage<std::logic_error>("misuse"));
  EXPECT_TRUE(isRunning());
  EXPECT_THAT(mEvents.commands(), IsEmpty());
  EXPECT_THAT(mLog.entries(), IsEmpty());
}

TEST_F(TaskResultsTest, DownloadThatCannotBeBuiltDeletesItsTransport) {
  auto transport = std::make_unique<RecordingTransport>(mRecord);
  {
    const FailingAllocation failing;
    EXPECT_THROW(mDownloader.start(std::move(transport)), std::bad_alloc);
  }
  EXPECT_THAT(mRecord.mCalls, ElementsAre("delete"));
  EXPECT_THAT(mEvents.commands(), IsEmpty());

  mRecord.mCalls.clear();
  start();
  EXPECT_TRUE(isRunning());
}

}  // namespace
