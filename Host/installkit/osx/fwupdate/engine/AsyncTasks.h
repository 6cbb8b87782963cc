// The tasks of one download, and its transport. Built in one piece for each download, destroyed in
// one piece at its end. Tasks hand their results on by reference to the task that made them.
#pragma once

#include <memory>

#include "ConnectTask.h"
#include "EndFirmwareDownloadTask.h"
#include "HandleFirmwareBurnResponseTask.h"
#include "HandleIeee1284DataTask.h"
#include "IoTransport.h"
#include "ReadIeee1284DataTask.h"
#include "SendIeee1284ReqTask.h"
#include "StartFirmwareDownloadTask.h"
#include "SuppressUstatusTask.h"
#include "WaitForAclResponseTask.h"
#include "WaitForFirmwareBurnResponseTask.h"
#include "WriteFirmwareTask.h"

struct AsyncTasks {
  explicit AsyncTasks(std::unique_ptr<IoTransport> transport);

  ConnectTask mConnect;
  SuppressUstatusTask mSuppressUstatus;
  SendIeee1284ReqTask mSendIeee1284Req;
  WaitForAclResponseTask mWaitForAclResponse;
  ReadIeee1284DataTask mReadIeee1284Data;
  HandleIeee1284DataTask mHandleIeee1284Data;
  StartFirmwareDownloadTask mStartFirmwareDownload;
  WriteFirmwareTask mWriteFirmware;
  EndFirmwareDownloadTask mEndFirmwareDownload;
  WaitForFirmwareBurnResponseTask mWaitForFirmwareBurnResponse;
  HandleFirmwareBurnResponseTask mHandleFirmwareBurnResponse;

  // Last, so that it goes before the buffers that its pending operation may refer to.
  std::unique_ptr<IoTransport> mTransport;
};
