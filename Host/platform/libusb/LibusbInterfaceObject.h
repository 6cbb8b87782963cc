// The interface object of the surface: open, its pipes, asynchronous transfers.
#pragma once

#include <cstddef>
#include <memory>

#include "platform/UsbRegistry.h"
#include "platform/libusb/AttachedDevice.h"

namespace platform {

// `index` counts the interfaces in the device's description.
std::unique_ptr<UsbInterfaceObject> makeLibusbInterfaceObject(
    std::shared_ptr<AttachedDevice> device, std::size_t index);

}  // namespace platform
