// Reads the response to the device-ID request.
#pragma once

#include "AclResponse.h"
#include "AsyncTask.h"

class WaitForAclResponseTask : public AsyncTask {
 public:
  explicit WaitForAclResponseTask(IoTransport& transport) : AsyncTask(transport) {}
  AsyncTaskResult operator()() override;

  const AclResponse& response() const { return mResponse; }

 private:
  AclResponse mResponse;
};
