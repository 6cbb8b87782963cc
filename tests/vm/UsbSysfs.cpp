#include "UsbSysfs.h"

#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

const fs::path kDevices = "/sys/bus/usb/devices";

}  // namespace

std::string usbAttribute(const fs::path& attribute) {
  std::string line;
  std::ifstream file(attribute);
  std::getline(file, line);
  return line;
}

void setUsbAttribute(const fs::path& attribute, const std::string& value) {
  std::ofstream file(attribute);
  file << value << std::flush;
  if (!file) throw std::runtime_error(attribute.string() + " does not take " + value);
}

fs::path usbDevice(const std::string& serial) {
  for (const fs::directory_entry& device : fs::directory_iterator(kDevices)) {
    if (usbAttribute(device.path() / "serial") == serial) return device.path();
  }
  return {};
}

std::string kernelDriver(const std::string& serial) {
  const fs::path device = usbDevice(serial);
  if (device.empty()) return {};
  for (const fs::directory_entry& part : fs::directory_iterator(device)) {
    if (usbAttribute(part.path() / "bInterfaceClass") != "07") continue;
    std::error_code none;
    return fs::read_symlink(part.path() / "driver", none).filename().string();
  }
  return {};
}

void AuthorizingNobody::authorizeByDefault(const std::string& value) {
  for (const fs::directory_entry& device : fs::directory_iterator(kDevices)) {
    const fs::path attribute = device.path() / "authorized_default";
    if (fs::exists(attribute)) setUsbAttribute(attribute, value);
  }
}
