#include "platform/libusb/DevicesReport.h"

#include <libusb-1.0/libusb.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <system_error>

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

std::string describeNode(const std::filesystem::path& nodes, const std::string& bus,
                         const std::string& device) {
  const std::filesystem::path node = nodes / threeDigits(bus) / threeDigits(device);
  struct stat state {};
  if (stat(node.c_str(), &state) != 0) return "no device node";
  std::array<char, 16> mode{};
  static_cast<void>(std::snprintf(mode.data(), mode.size(), "%04o", state.st_mode & 07777U));
  const bool mayOpen = access(node.c_str(), R_OK | W_OK) == 0;
  return std::string("device node ") + mode.data() + (mayOpen ? ", may be opened" : ", no right");
}

// A device's interfaces stand beside it: 1-2:1.0 belongs to 1-2.
std::string describeInterfaces(const std::filesystem::path& devices, const std::string& device) {
  std::vector<std::string> names;
  std::error_code none;
  for (const auto& each : std::filesystem::directory_iterator(devices, none)) {
    const std::string name = each.path().filename().string();
    if (name.starts_with(device + ':')) names.push_back(name);
  }
  std::ranges::sort(names);
  std::string text;
  for (const std::string& name : names) {
    const std::string driver = readSysfsDriver(devices / name);
    text += ", interface of class " + attribute(devices / name, "bInterfaceClass") + " with " +
            (driver.empty() ? "no driver" : "driver " + driver);
  }
  return text;
}

}  // namespace

std::string libusbVersion() {
  const libusb_version* const version = libusb_get_version();
  return std::to_string(version->major) + '.' + std::to_string(version->minor) + '.' +
         std::to_string(version->micro);
}

std::vector<std::string> describeUsbDevices(std::uint16_t vendor,
                                            const std::filesystem::path& devices,
                                            const std::filesystem::path& nodes) {
  std::array<char, 8> wanted{};
  static_cast<void>(std::snprintf(wanted.data(), wanted.size(), "%04x", vendor));
  std::vector<std::string> lines;
  std::error_code none;
  for (const auto& each : std::filesystem::directory_iterator(devices, none)) {
    const std::filesystem::path& device = each.path();
    if (attribute(device, "idVendor") != wanted.data()) continue;
    lines.push_back(std::string(wanted.data()) + ':' + attribute(device, "idProduct") + ", " +
                    describeNode(nodes, attribute(device, "busnum"), attribute(device, "devnum")) +
                    describeInterfaces(devices, device.filename().string()));
  }
  std::ranges::sort(lines);
  return lines;
}

}  // namespace platform
