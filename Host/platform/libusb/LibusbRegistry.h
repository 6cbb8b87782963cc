// The registry of USB devices on libusb and Linux's sysfs. main() owns it. Entries, names and
// properties come from what everybody may read; only opening a device needs a right on its node.
// Where the host has no USB, or libusb cannot use it, the registry is simply empty.
#pragma once

#include <memory>

#include "platform/UsbRegistry.h"

namespace platform {

// `runLoop` must outlive the registry and every object that it gave out. libusb's events are
// handled there.
std::unique_ptr<UsbRegistry> makeLibusbRegistry(RunLoop& runLoop);

}  // namespace platform
