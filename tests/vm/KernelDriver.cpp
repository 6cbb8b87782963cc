#include "KernelDriver.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

std::string firstLine(const fs::path& path) {
  std::string line;
  std::ifstream file(path);
  std::getline(file, line);
  return line;
}

}  // namespace

std::string kernelDriver(const std::string& serial) {
  for (const fs::directory_entry& device : fs::directory_iterator("/sys/bus/usb/devices")) {
    if (firstLine(device.path() / "serial") != serial) continue;
    for (const fs::directory_entry& part : fs::directory_iterator(device.path())) {
      if (firstLine(part.path() / "bInterfaceClass") != "07") continue;
      std::error_code none;
      return fs::read_symlink(part.path() / "driver", none).filename().string();
    }
  }
  return {};
}
