// Opens the transport.
#pragma once

#include "AsyncTask.h"

class ConnectTask : public AsyncTask {
 public:
  explicit ConnectTask(IoTransport& transport) : AsyncTask(transport) {}
  AsyncTaskResult operator()() override;
};
