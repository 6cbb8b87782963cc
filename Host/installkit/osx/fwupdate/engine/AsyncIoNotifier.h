// Told about the end of one asynchronous transfer. A transport implements it and hands it to the
// layer below; the notifier stays the transport's and outlives the transfer.
#pragma once

#include <string>

class AsyncIoNotifier {
 public:
  virtual ~AsyncIoNotifier() = default;

  // All requested bytes were transferred.
  virtual void complete() = 0;

  // `message` says why the transfer failed.
  virtual void failed(const std::string& message) = 0;
};
