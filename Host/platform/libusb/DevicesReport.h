// The attached USB devices of one maker, for a report to whoever helps: what they are, who has
// their interfaces, and whether this user may open them. Everybody may read it; a device that goes
// meanwhile is left out.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace platform {

std::string libusbVersion();

struct ReportedUsbDevice {
  struct Interface {
    std::filesystem::path directory;  // in sysfs
    std::string usbClass;             // "07"
    std::string driver;               // of the kernel; empty for none
  };

  std::string vendor;  // "3a71"
  std::string product;
  std::string name;  // the maker's and the product's, and the serial number: as the device says
  std::string serial;
  std::filesystem::path node;
  std::string mode;  // of the node: "0664"; empty when there is no node
  bool mayBeOpened = false;
  std::vector<Interface> interfaces;
};

// By vendor, product and node. The directories are for tests.
std::vector<ReportedUsbDevice> findUsbDevices(
    std::uint16_t vendor, const std::filesystem::path& devices = "/sys/bus/usb/devices",
    const std::filesystem::path& nodes = "/dev/bus/usb");

// The same, a line each, without names and numbers.
std::vector<std::string> describeUsbDevices(
    std::uint16_t vendor, const std::filesystem::path& devices = "/sys/bus/usb/devices",
    const std::filesystem::path& nodes = "/dev/bus/usb");

}  // namespace platform
