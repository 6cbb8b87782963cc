#include "AsyncTaskQueue.h"

#include <utility>

#include "AsyncTasks.h"
#include "QueryTasks.h"
#include "platform/Assertion.h"

namespace {

void assertEmpty(const AsyncTaskQueue& queue) {
  platform::assertAt(queue.empty(), "mAsyncTaskQueue.empty()", "start",
                     "Host/installkit/osx/fwupdate/AsyncTaskQueue", 358);
}

}  // namespace

AsyncTaskQueue::AsyncTaskQueue() = default;
AsyncTaskQueue::~AsyncTaskQueue() = default;

void AsyncTaskQueue::start(std::unique_ptr<IoTransport> transport) {
  assertEmpty(*this);
  mAsyncTasks = std::make_unique<AsyncTasks>(std::move(transport));
  AsyncTasks& tasks = *mAsyncTasks;
  mAsyncTaskQueue = {
      tasks.mConnect,
      tasks.mSuppressUstatus,
      tasks.mSendIeee1284Req,
      tasks.mWaitForAclResponse,
      tasks.mReadIeee1284Data,
      tasks.mHandleIeee1284Data,
      tasks.mStartFirmwareDownload,
      tasks.mWriteFirmware,
      tasks.mEndFirmwareDownload,
      tasks.mWaitForFirmwareBurnResponse,
      tasks.mHandleFirmwareBurnResponse,
  };
}

void AsyncTaskQueue::startQuery(std::unique_ptr<IoTransport> transport,
                                std::function<void(const std::wstring&)> known) {
  assertEmpty(*this);
  mQueryTasks = std::make_unique<QueryTasks>(std::move(transport), std::move(known));
  QueryTasks& tasks = *mQueryTasks;
  mAsyncTaskQueue = {
      tasks.mConnect,          tasks.mSuppressUstatus,
      tasks.mSendIeee1284Req,  tasks.mWaitForAclResponse,
      tasks.mReadIeee1284Data, tasks.mHandleIeee1284Data,
      tasks.mTellDeviceId,
  };
}

void AsyncTaskQueue::stop() {
  mAsyncTaskQueue.clear();
  mAsyncTasks.reset();
  mQueryTasks.reset();
}
