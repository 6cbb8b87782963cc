// The check of what USB printers need: the right to open them, and nobody else who has them.
#pragma once

#include <filesystem>
#include <vector>

#include "Finding.h"

// Where a Linux system keeps what is looked at. Other values are for tests.
struct UsbPlaces {
  std::filesystem::path devices = "/sys/bus/usb/devices";
  std::filesystem::path nodes = "/dev/bus/usb";
  std::filesystem::path processes = "/proc";
  std::vector<std::filesystem::path> rules{"/etc/udev/rules.d", "/run/udev/rules.d",
                                           "/usr/lib/udev/rules.d", "/lib/udev/rules.d"};
};

// First the rule that gives people at this machine their right, then each printer that is attached.
// Root needs no rule.
Findings checkUsb(bool isRoot, const UsbPlaces& places = {});
