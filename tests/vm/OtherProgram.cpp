#include "OtherProgram.h"

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "UsbSysfs.h"

namespace {

std::string nodeOf(const std::string& serial) {
  const std::filesystem::path device = usbDevice(serial);
  std::array<char, 64> name;
  std::snprintf(name.data(), name.size(), "/dev/bus/usb/%03d/%03d",
                std::atoi(usbAttribute(device / "busnum").c_str()),
                std::atoi(usbAttribute(device / "devnum").c_str()));
  return name.data();
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
