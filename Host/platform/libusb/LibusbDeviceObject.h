// The device object of the surface: open, re-enumerate, find interfaces.
#pragma once

#include <memory>

#include "platform/libusb/RegistryObjects.h"

namespace platform {

std::unique_ptr<UsbDeviceObject> makeLibusbDeviceObject(std::shared_ptr<ObjectTable> objects,
                                                        std::shared_ptr<DeviceEntry> entry);

}  // namespace platform
