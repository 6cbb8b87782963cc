#include "QueryTasks.h"

#include <utility>

QueryTasks::QueryTasks(std::unique_ptr<IoTransport> transport,
                       std::function<void(const std::wstring&)> known)
    : mConnect(*transport),
      mSuppressUstatus(*transport),
      mSendIeee1284Req(*transport),
      mWaitForAclResponse(*transport),
      mReadIeee1284Data(*transport, mWaitForAclResponse.response()),
      mHandleIeee1284Data(*transport, mReadIeee1284Data.data()),
      mTellDeviceId(*transport, mHandleIeee1284Data.deviceId(), std::move(known)),
      mTransport(std::move(transport)) {}
