// Writes the firmware image behind its announcement.
#pragma once

#include "AsyncTask.h"
#include "platform/FileBytes.h"

class WriteFirmwareTask : public AsyncTask {
 public:
  WriteFirmwareTask(IoTransport& transport, const platform::FileBytes& image)
      : AsyncTask(transport), mImage(image) {}
  AsyncTaskResult operator()() override;

 private:
  const platform::FileBytes& mImage;
};
