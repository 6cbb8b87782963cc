#include "platform/libusb/DevicesReport.h"

#include <libusb-1.0/libusb.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <system_error>
#include <tuple>

#include "platform/libusb/SysfsAttribute.h"

namespace platform {
namespace {

std::string attribute(const std::filesystem::path& directory, const char* name) {
  return std::string(readSysfsAttribute(directory, name).utf8());
}

// "007" for "7", as the nodes of buses and devices are named.
std::string threeDigits(const std::string& number) {
  return std::string(number.size() < 3 ? 3 - number.size() : 0, '0') + number;
}

void readNode(ReportedUsbDevice& device) {
  struct stat state {};
  if (stat(device.node.c_str(), &state) != 0) return;
  std::array<char, 16> mode{};
  static_cast<void>(std::snprintf(mode.data(), mode.size(), "%04o", state.st_mode & 07777U));
  device.mode = mode.data();
  device.mayBeOpened = access(device.node.c_str(), R_OK | W_OK) == 0;
}

// A device's interfaces stand beside it: 1-2:1.0 belongs to 1-2.
std::vector<ReportedUsbDevice::Interface> interfacesOf(const std::filesystem::path& device) {
  std::vector<ReportedUsbDevice::Interface> interfaces;
  std::error_code none;
  for (const auto& each : std::filesystem::directory_iterator(device.parent_path(), none)) {
    const std::filesystem::path& directory = each.path();
    if (!directory.filename().string().starts_with(device.filename().string() + ':')) continue;
    interfaces.push_back(
        {directory, attribute(directory, "bInterfaceClass"), readSysfsDriver(directory)});
  }
  std::ranges::sort(interfaces, {}, &ReportedUsbDevice::Interface::directory);
  return interfaces;
}

ReportedUsbDevice readDevice(const std::filesystem::path& directory,
                             const std::filesystem::path& nodes) {
  ReportedUsbDevice device;
  device.vendor = attribute(directory, "idVendor");
  device.product = attribute(directory, "idProduct");
  device.name = attribute(directory, "manufacturer") + ' ' + attribute(directory, "product");
  device.serial = attribute(directory, "serial");
  device.node = nodes / threeDigits(attribute(directory, "busnum")) /
                threeDigits(attribute(directory, "devnum"));
  readNode(device);
  device.interfaces = interfacesOf(directory);
  return device;
}

std::string describe(const ReportedUsbDevice& device) {
  std::string text = device.vendor + ':' + device.product + ", ";
  if (device.mode.empty()) {
    text += "no device node";
  } else {
    text += "device node " + device.mode + (device.mayBeOpened ? ", may be opened" : ", no right");
  }
  for (const ReportedUsbDevice::Interface& each : device.interfaces) {
    text += ", interface of class " + each.usbClass + " with " +
            (each.driver.empty() ? "no driver" : "driver " + each.driver);
  }
  return text;
}

}  // namespace

std::string libusbVersion() {
  const libusb_version* const version = libusb_get_version();
  return std::to_string(version->major) + '.' + std::to_string(version->minor) + '.' +
         std::to_string(version->micro);
}

std::vector<ReportedUsbDevice> findUsbDevices(std::uint16_t vendor,
                                              const std::filesystem::path& devices,
                                              const std::filesystem::path& nodes) {
  std::array<char, 8> wanted{};
  static_cast<void>(std::snprintf(wanted.data(), wanted.size(), "%04x", vendor));
  std::vector<ReportedUsbDevice> found;
  std::error_code none;
  for (const auto& each : std::filesystem::directory_iterator(devices, none)) {
    if (attribute(each.path(), "idVendor") != wanted.data()) continue;
    found.push_back(readDevice(each.path(), nodes));
  }
  std::ranges::sort(found, {}, [](const ReportedUsbDevice& device) {
    return std::tie(device.vendor, device.product, device.node);
  });
  return found;
}

std::vector<std::string> describeUsbDevices(std::uint16_t vendor,
                                            const std::filesystem::path& devices,
                                            const std::filesystem::path& nodes) {
  std::vector<std::string> lines;
  for (const ReportedUsbDevice& device : findUsbDevices(vendor, devices, nodes)) {
    lines.push_back(describe(device));
  }
  return lines;
}

}  // namespace platform
