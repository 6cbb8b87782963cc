// Loads the firmware file for the printer, and announces the image to the printer unless the
// printer already runs this firmware or a newer one.
#pragma once

#include <string>

#include "AsyncTask.h"
#include "PjlAclRequestHeader.h"
#include "platform/FileBytes.h"

class StartFirmwareDownloadTask : public AsyncTask {
 public:
  StartFirmwareDownloadTask(IoTransport& transport, const std::wstring& deviceId)
      : AsyncTask(transport), mDeviceId(deviceId) {}
  AsyncTaskResult operator()() override;

  const platform::FileBytes& image() const { return mImage; }

 private:
  void sendFirmwareBurnCmdHeader();

  const std::wstring& mDeviceId;
  platform::FileBytes mImage;
  PjlAclRequestHeader mHeader;
};
