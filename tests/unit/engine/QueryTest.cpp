// A query asks what a download asks first, hands on the answer, and ends there.
#include <memory>
#include <optional>
#include <stdexcept>

#include "AssertionLine.h"
#include "EngineFixture.h"
#include "FirmwareDownloader.h"
#include "RecordingTransport.h"

namespace {

using testing::ElementsAre;

class QueryTest : public EngineFixture {
 protected:
  QueryTest() {
    answerDownload(mRecord);
    mDownloader.emplace();
  }

  void start() {
    mDownloader->query(std::make_unique<RecordingTransport>(mRecord),
                       [this](const std::wstring& deviceId) {
                         mRecord.add("known");
                         mDeviceId = deviceId;
                       });
  }

  void resume(int times) {
    for (int i = 0; i < times; ++i) mDownloader->resume();
  }

  TransportRecord mRecord;
  std::wstring mDeviceId;
  std::optional<FirmwareDownloader> mDownloader;
};

TEST_F(QueryTest, AsksForTheDeviceIdAndWritesNothingElse) {
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  start();
  resume(5);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "write 34", "write 59", "read 16", "read 36",
                                          "known", "delete"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kUstatusOffText, kDeviceIdRequest));
  EXPECT_EQ(mDeviceId, std::wstring(L"MDL:KX350T;LIC:QT725013;FWVER:100;\0", 35));
}

TEST_F(QueryTest, DownloadMayFollow) {
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100};
  start();
  resume(5);
  mRecord.mCalls.clear();
  mDownloader->start(std::make_unique<RecordingTransport>(mRecord));
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect"));
}

TEST_F(QueryTest, TransportThatThrowsEndsItAsFailed) {
  mRecord.mOnCall["write 59"] = [] { throw std::runtime_error("Unable to write data"); };
  start();
  resume(2);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "write 34", "write 59", "DlNo", "delete"));
}

TEST_F(QueryTest, FailureOfTheTransportEndsItAsFailed) {
  start();
  mDownloader->stopTasks();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect", "DlNo", "delete"));
}

TEST_F(QueryTest, SecondQueryMeanwhileIsFatal) {
  start();
  EXPECT_DEATH(start(), assertionLine("mAsyncTaskQueue.empty()", "start",
                                      "Host/installkit/osx/fwupdate/AsyncTaskQueue", 358));
}

}  // namespace
