// Makes the printer's answer to the burn command the outcome of the download.
#pragma once

#include "AclResponse.h"
#include "AsyncTask.h"

class HandleFirmwareBurnResponseTask : public AsyncTask {
 public:
  HandleFirmwareBurnResponseTask(IoTransport& transport, const AclResponse& response)
      : AsyncTask(transport), mResponse(response) {}
  AsyncTaskResult operator()() override;

 private:
  const AclResponse& mResponse;
};
