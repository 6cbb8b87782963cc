// Remembers the ends of the USB transfers that it was given to as refCon.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "platform/UsbRegistry.h"

// The end of a transfer.
struct TransferEnd {
  platform::IOReturn result;
  std::size_t bytes;

  bool operator==(const TransferEnd&) const = default;
};

void PrintTo(const TransferEnd& end, std::ostream* stream);

class TransferRecorder {
 public:
  static void ended(void* refCon, platform::IOReturn result, void* arg0);

  const std::vector<TransferEnd>& ends() const { return mEnds; }

 private:
  std::vector<TransferEnd> mEnds;
};
