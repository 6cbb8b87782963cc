// Loads the firmware file for the printer, and announces the image to the printer unless the
// printer already runs this firmware or a newer one.
#pragma once

#include <string>
#include <vector>

#include "AsyncTask.h"
#include "PjlAclRequestHeader.h"

class StartFirmwareDownloadTask : public AsyncTask {
 public:
  StartFirmwareDownloadTask(IoTransport& transport, const std::wstring& deviceId)
      : AsyncTask(transport), mDeviceId(deviceId) {}
  AsyncTaskResult operator()() override;

  const std::vector<char>& image() const { return mImage; }

 private:
  void sendFirmwareBurnCmdHeader();

  const std::wstring& mDeviceId;
  std::vector<char> mImage;
  PjlAclRequestHeader mHeader;
};
