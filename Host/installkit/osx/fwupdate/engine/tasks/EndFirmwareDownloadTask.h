// Closes the job behind the image.
#pragma once

#include "AsyncTask.h"

class EndFirmwareDownloadTask : public AsyncTask {
 public:
  explicit EndFirmwareDownloadTask(IoTransport& transport) : AsyncTask(transport) {}
  AsyncTaskResult operator()() override;
};
