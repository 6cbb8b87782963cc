// The strings that describe a USB device, read from the registry. Reading them takes no right on
// the device.
#pragma once

#include <string>

#include "platform/UsbRegistry.h"

enum UsbStringId : int {
  UsbProductName = 0,
  UsbVendorName = 1,
  UsbSerialNumber = 2,
};

// Empty when the entry has no such string, or when registryText() has nothing of it.
std::string getUsbString(platform::io_service_t service, UsbStringId id);
