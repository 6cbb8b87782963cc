#include "OtherProgram.h"

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

int readNumber(const std::filesystem::path& file) {
  int number = 0;
  std::ifstream(file) >> number;
  return number;
}

std::string nodeOf(const std::string& serial) {
  namespace fs = std::filesystem;
  for (const fs::directory_entry& device : fs::directory_iterator("/sys/bus/usb/devices")) {
    std::string line;
    std::ifstream file(device.path() / "serial");
    if (!std::getline(file, line) || line != serial) continue;
    std::array<char, 64> name;
    std::snprintf(name.data(), name.size(), "/dev/bus/usb/%03d/%03d",
                  readNumber(device.path() / "busnum"), readNumber(device.path() / "devnum"));
    return name.data();
  }
  return {};
}

}  // namespace

OtherProgram::OtherProgram(const std::string& serial, unsigned interface)
    : mNode(open(nodeOf(serial).c_str(), O_RDWR | O_CLOEXEC)) {
  usbdevfs_disconnect_claim claim{};
  claim.interface = interface;
  if (ioctl(mNode, USBDEVFS_DISCONNECT_CLAIM, &claim) != 0) {
    throw std::runtime_error("cannot claim interface " + std::to_string(interface) + " of " +
                             serial);
  }
}

OtherProgram::~OtherProgram() { close(mNode); }
