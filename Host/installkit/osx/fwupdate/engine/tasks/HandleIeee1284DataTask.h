// Turns the device ID's bytes into text. The length that counts is the one that the response
// announced; the ID's own two length bytes are skipped. An ID without any byte behind them is
// fatal.
#pragma once

#include <string>
#include <vector>

#include "AsyncTask.h"

class HandleIeee1284DataTask : public AsyncTask {
 public:
  HandleIeee1284DataTask(IoTransport& transport, const std::vector<char>& data)
      : AsyncTask(transport), mData(data) {}
  AsyncTaskResult operator()() override;

  const std::wstring& deviceId() const { return mDeviceId; }

 private:
  const std::vector<char>& mData;
  std::wstring mDeviceId;
};
