// The first step from a registry entry to its I/O object, for UsbDevice and UsbInterface. The
// caller owns the plug-in, and lets it go as soon as it has the object.
#pragma once

#include <memory>

#include "platform/UsbRegistry.h"

// Never null. Throws IoKitException.
std::unique_ptr<platform::UsbPlugIn> createPlugIn(platform::io_service_t service,
                                                  platform::UsbRegistry::ClientType type);
