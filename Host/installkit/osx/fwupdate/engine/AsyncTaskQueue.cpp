#include "AsyncTaskQueue.h"

#include <utility>

#include "AsyncTasks.h"
#include "platform/Assertion.h"

AsyncTaskQueue::AsyncTaskQueue() = default;
AsyncTaskQueue::~AsyncTaskQueue() = default;

void AsyncTaskQueue::start(std::unique_ptr<IoTransport> transport) {
  platform::assertAt(mAsyncTaskQueue.empty(), "mAsyncTaskQueue.empty()", "start",
                     "Host/installkit/osx/fwupdate/AsyncTaskQueue", 358);
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

void AsyncTaskQueue::stop() {
  mAsyncTaskQueue.clear();
  mAsyncTasks.reset();
}
