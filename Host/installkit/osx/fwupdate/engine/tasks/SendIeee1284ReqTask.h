// Asks the printer for its IEEE 1284 device ID.
#pragma once

#include "AsyncTask.h"
#include "PjlSimpleAclRequest.h"

class SendIeee1284ReqTask : public AsyncTask {
 public:
  explicit SendIeee1284ReqTask(IoTransport& transport) : AsyncTask(transport) {}
  AsyncTaskResult operator()() override;

 private:
  PjlSimpleAclRequest mRequest;
};
