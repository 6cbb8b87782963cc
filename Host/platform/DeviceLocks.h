// Keeps two programs of this computer, or two runs of one, from sending to the same printer at a
// time, which would leave it with neither's firmware. Whoever is about to send takes the printer's
// lock first. Other computers do not know of it.
#pragma once

#include <memory>
#include <string>

#include "platform/Data.h"

namespace platform {

// Held until its destruction, and at the latest until its process ends, in whatever way.
class DeviceLock {
 public:
  virtual ~DeviceLock() = default;
};

class DeviceLocks {
 public:
  virtual ~DeviceLocks() = default;

  // The lock of the printer at an address (its record is described in platform/Network.h). Null
  // while another lock of it is held: `holder` then says by whom, "fwupdate (process 812)" or
  // "another program". Null without a holder where there is nothing to lock or no means to: nobody
  // is kept out then. Never waits.
  virtual std::unique_ptr<DeviceLock> lock(const Data& address, std::string& holder) = 0;
};

}  // namespace platform
