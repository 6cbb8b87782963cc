// The registry of USB devices on libusb and Linux's sysfs. main() owns it. Entries, names and
// properties come from what everybody may read; only opening a device needs a right on its node.
// Where the host has no USB, or libusb cannot use it, the registry is simply empty.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/DownloadObserver.h"
#include "platform/UsbRegistry.h"

namespace platform {

// To be told of downloads, too: after each, the kernel's drivers have the printers' interfaces, so
// that one can print. The program may keep an interface open all the while; its next use claims it
// again, and fails where somebody else has it by then.
class LibusbRegistry : public UsbRegistry, public DownloadObserver {};

// `runLoop` must outlive the registry and every object that it gave out. libusb's events are
// handled there from now on, since what is attached is followed whether or not anybody asks to be
// told; who asks names the loop for that himself, with UsbNotificationPort and UsbEventSource, and
// may do so much later. `logError`, which may be null, writes an entry at error level to the log:
// who has an interface that could not be claimed, and which driver does not take one back. The
// former is looked for within `searchTime`, since a window waits meanwhile.
std::unique_ptr<LibusbRegistry> makeLibusbRegistry(
    RunLoop& runLoop, std::function<void(const std::string& entry)> logError = {},
    std::chrono::milliseconds searchTime = std::chrono::milliseconds(30));

}  // namespace platform
