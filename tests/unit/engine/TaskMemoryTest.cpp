// Tasks hand memory to the transport and return; the transport uses it later.
#include <memory>

#include "EngineFixture.h"
#include "FirmwareDownloader.h"
#include "LateTransport.h"

namespace {

using testing::ElementsAre;

class TaskMemoryTest : public EngineFixture {
 protected:
  void complete(int times) {
    for (int i = 0; i < times; ++i) {
      mRecord.complete();
      mDownloader.resume();
    }
  }

  LateRecord mRecord;
  FirmwareDownloader mDownloader;
};

TEST_F(TaskMemoryTest, StaysValidUntilEachOperationIsComplete) {
  installFirmware(kFirmware200);
  mRecord.mReplies = {kDeviceIdResponse, kDeviceId100, kBurnResponse};
  mDownloader.start(std::make_unique<LateTransport>(mRecord));
  complete(9);
  EXPECT_THAT(mRecord.mSent, ElementsAre(kUstatusOffText, kDeviceIdRequest, kBurnHeader200,
                                         kFirmware200, kUelText));
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlOk"));
}

}  // namespace
