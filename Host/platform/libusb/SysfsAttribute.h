// What sysfs says of a device, which everybody may read. It comes and goes with the device, so
// that reading it can fail at any moment.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/Text.h"

namespace platform {

// The attribute's text without the line end; null when there is none, as for a string that the
// device lacks, when it cannot be read, or when it is not UTF-8.
Text readSysfsAttribute(const std::filesystem::path& directory, const char* attribute);

// What the kernel calls a program that has claimed an interface: its driver.
inline constexpr std::string_view kUserSpaceDriver = "usbfs";

// The name of the kernel's driver that has the interface; empty when none has.
std::string readSysfsDriver(const std::filesystem::path& interface);

}  // namespace platform
