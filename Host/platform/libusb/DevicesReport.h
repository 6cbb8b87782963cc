// The attached USB devices of one maker, a line each, for a report to whoever helps: what they are,
// who has their interfaces, and whether this user may open them. Everybody may read it; a device
// that goes meanwhile is left out.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace platform {

std::string libusbVersion();

// The directories are for tests.
std::vector<std::string> describeUsbDevices(
    std::uint16_t vendor, const std::filesystem::path& devices = "/sys/bus/usb/devices",
    const std::filesystem::path& nodes = "/dev/bus/usb");

}  // namespace platform
