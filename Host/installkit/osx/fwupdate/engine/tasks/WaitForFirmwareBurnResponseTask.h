// Reads the response that the printer sends when it has burned the image to flash. The time it gets
// grows with the image: 3 seconds for every 64 KiB of it, begun or just completed.
#pragma once

#include "AclResponse.h"
#include "AsyncTask.h"
#include "platform/FileBytes.h"

class WaitForFirmwareBurnResponseTask : public AsyncTask {
 public:
  WaitForFirmwareBurnResponseTask(IoTransport& transport, const platform::FileBytes& image)
      : AsyncTask(transport), mImage(image) {}
  AsyncTaskResult operator()() override;

  const AclResponse& response() const { return mResponse; }

 private:
  const platform::FileBytes& mImage;
  AclResponse mResponse;
};
