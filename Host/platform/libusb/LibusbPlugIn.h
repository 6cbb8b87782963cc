// The way from an entry to its I/O object.
#pragma once

#include <memory>

#include "platform/libusb/RegistryObjects.h"

namespace platform {

std::unique_ptr<UsbPlugIn> makeLibusbPlugIn(std::shared_ptr<ObjectTable> objects,
                                            std::shared_ptr<RegistryEntry> entry);

}  // namespace platform
