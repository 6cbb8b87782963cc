// The tasks of one query, and its transport: those with which a download asks the printer for its
// device ID, and one that hands it on. None that sends firmware is among them.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ConnectTask.h"
#include "HandleIeee1284DataTask.h"
#include "IoTransport.h"
#include "ReadIeee1284DataTask.h"
#include "SendIeee1284ReqTask.h"
#include "SuppressUstatusTask.h"
#include "TellDeviceIdTask.h"
#include "WaitForAclResponseTask.h"

struct QueryTasks {
  QueryTasks(std::unique_ptr<IoTransport> transport,
             std::function<void(const std::wstring&)> known);

  ConnectTask mConnect;
  SuppressUstatusTask mSuppressUstatus;
  SendIeee1284ReqTask mSendIeee1284Req;
  WaitForAclResponseTask mWaitForAclResponse;
  ReadIeee1284DataTask mReadIeee1284Data;
  HandleIeee1284DataTask mHandleIeee1284Data;
  TellDeviceIdTask mTellDeviceId;

  // Last, so that it goes before the buffers that its pending operation may refer to.
  std::unique_ptr<IoTransport> mTransport;
};
