// Reads the device ID that follows a valid response. Any other response, also one that announces no
// bytes, is fatal: the printer is not one that this program may write to.
#pragma once

#include <vector>

#include "AclResponse.h"
#include "AsyncTask.h"

class ReadIeee1284DataTask : public AsyncTask {
 public:
  ReadIeee1284DataTask(IoTransport& transport, const AclResponse& response)
      : AsyncTask(transport), mResponse(response) {}
  AsyncTaskResult operator()() override;

  // The device ID with the two length bytes before it.
  const std::vector<char>& data() const { return mData; }

 private:
  const AclResponse& mResponse;
  std::vector<char> mData;
};
