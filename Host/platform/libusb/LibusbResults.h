// What libusb's results are called on the surface. The one place where they are translated.
#pragma once

#include <libusb-1.0/libusb.h>

#include "platform/UsbRegistry.h"

namespace platform {

// Of a call: LIBUSB_SUCCESS or an LIBUSB_ERROR code.
IOReturn resultOfCall(int libusbResult);

// Of a request to clear a stall.
IOReturn resultOfClearHalt(int libusbResult);

// Of a system call that failed: an errno.
IOReturn resultOfErrno(int error);

// Of a transfer that has ended. All bytes arrived by the end of the time is no time-out.
IOReturn resultOfTransfer(const libusb_transfer& transfer);

}  // namespace platform
