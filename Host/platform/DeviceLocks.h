// Keeps two programs of this computer, or two runs of one, from talking to the same printer at a
// time, which would leave it with neither's firmware. Whoever is about to talk takes the printer's
// lock first. Other computers do not know of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Data.h"

namespace platform {

// What a printer is wanted for. A question is over in seconds, so that its end is waited for; that
// of an update is not.
enum class DeviceUse : std::uint8_t { Question, Update };

// Held until its destruction, and at the latest until its process ends, in whatever way.
class DeviceLock {
 public:
  virtual ~DeviceLock() = default;

  // Whether nobody else talks to the printer: false while somebody else asks it something, who is
  // `holder` then. To be asked again until it is true, and stays so. Never waits.
  virtual bool isGranted(std::string& holder) = 0;
};

class DeviceLocks {
 public:
  virtual ~DeviceLocks() = default;

  // The lock of the printer at an address (its record is described in platform/Network.h). Null
  // while somebody else updates it: `holder` then says who, "fwupdate (process 812)" or "another
  // program". Null without a holder where there is nothing to lock or no means to: nobody is kept
  // out then. Who waits for an update's lock to be granted keeps new questions away. Never waits.
  virtual std::unique_ptr<DeviceLock> lock(const Data& address, DeviceUse use,
                                           std::string& holder) = 0;
};

}  // namespace platform
