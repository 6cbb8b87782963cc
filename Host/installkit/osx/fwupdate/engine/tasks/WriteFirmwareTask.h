// Writes the firmware image behind its announcement.
#pragma once

#include <vector>

#include "AsyncTask.h"

class WriteFirmwareTask : public AsyncTask {
 public:
  WriteFirmwareTask(IoTransport& transport, const std::vector<char>& image)
      : AsyncTask(transport), mImage(image) {}
  AsyncTaskResult operator()() override;

 private:
  const std::vector<char>& mImage;
};
