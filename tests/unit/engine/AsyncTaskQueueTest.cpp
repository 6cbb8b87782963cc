#include <memory>
#include <optional>

#include "AsyncTaskQueue.h"
#include "EngineFixture.h"
#include "RecordingTransport.h"

namespace {

using testing::ElementsAre;

class AsyncTaskQueueTest : public EngineFixture {
 protected:
  void start() { mQueue.start(std::make_unique<RecordingTransport>(mRecord)); }

  TransportRecord mRecord;
  AsyncTaskQueue mQueue;
};

TEST_F(AsyncTaskQueueTest, StartQueuesElevenTasks) {
  EXPECT_TRUE(mQueue.empty());
  start();
  int tasks = 0;
  for (; !mQueue.empty(); mQueue.pop()) ++tasks;
  EXPECT_EQ(tasks, 11);
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
}

TEST_F(AsyncTaskQueueTest, StopDeletesTheTransport) {
  start();
  mQueue.stop();
  EXPECT_TRUE(mQueue.empty());
  EXPECT_THAT(mRecord.mCalls, ElementsAre("delete"));
  mQueue.stop();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("delete"));
}

TEST_F(AsyncTaskQueueTest, NothingIsQueuedAnyMoreWhenTheTransportGoes) {
  std::optional<bool> wasEmpty;
  mRecord.mOnCall["delete"] = [&] { wasEmpty = mQueue.empty(); };
  start();
  mQueue.stop();
  EXPECT_EQ(wasEmpty, true);
}

}  // namespace
