// Told about the end of one asynchronous request. A transport implements it and hands it to the
// layer below; the notifier stays the transport's, and must be there until it is told or the layer
// below has let go of the request. Being told must not throw: nobody could handle it.
#pragma once

#include <string>

class AsyncIoNotifier {
 public:
  virtual ~AsyncIoNotifier() = default;

  // The request is done. A read has all its bytes; a printer may have taken less than was written.
  virtual void complete() = 0;

  // `message` says why the request failed.
  virtual void failed(const std::string& message) = 0;
};
