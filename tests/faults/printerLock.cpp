#include "printerLock.h"

#include <string>

#include "loopbackAddress.h"
#include "platform/posix/PosixDeviceLocks.h"

bool isLocked(std::uint16_t port) {
  std::string holder;
  const auto locks = platform::makePosixDeviceLocks();
  return locks->lock(loopbackAddress(port), platform::DeviceUse::Update, holder) == nullptr;
}
