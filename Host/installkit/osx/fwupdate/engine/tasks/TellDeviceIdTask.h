// The last task of a query: hands on what the printer says of itself.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "AsyncTask.h"

class TellDeviceIdTask : public AsyncTask {
 public:
  TellDeviceIdTask(IoTransport& transport, const std::wstring& deviceId,
                   std::function<void(const std::wstring&)> known)
      : AsyncTask(transport), mDeviceId(deviceId), mKnown(std::move(known)) {}
  AsyncTaskResult operator()() override;

 private:
  const std::wstring& mDeviceId;
  std::function<void(const std::wstring&)> mKnown;
};
