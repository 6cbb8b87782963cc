#include "AsyncTasks.h"

#include <utility>

AsyncTasks::AsyncTasks(std::unique_ptr<IoTransport> transport)
    : mConnect(*transport),
      mSuppressUstatus(*transport),
      mSendIeee1284Req(*transport),
      mWaitForAclResponse(*transport),
      mReadIeee1284Data(*transport, mWaitForAclResponse.response()),
      mHandleIeee1284Data(*transport, mReadIeee1284Data.data()),
      mStartFirmwareDownload(*transport, mHandleIeee1284Data.deviceId()),
      mWriteFirmware(*transport, mStartFirmwareDownload.image()),
      mEndFirmwareDownload(*transport),
      mWaitForFirmwareBurnResponse(*transport, mStartFirmwareDownload.image()),
      mHandleFirmwareBurnResponse(*transport, mWaitForFirmwareBurnResponse.response()),
      mTransport(std::move(transport)) {}
