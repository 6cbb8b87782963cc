#include "OtherProgram.h"

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "UsbSysfs.h"

namespace {

std::string nodeOf(const std::string& serial) {
  const std::filesystem::path device = usbDevice(serial);
  std::array<char, 64> name;
  std::snprintf(name.data(), name.size(), "/dev/bus/usb/%03d/%03d",
                std::stoi(usbAttribute(device / "busnum")),
                std::stoi(usbAttribute(device / "devnum")));
  return name.data();
}

int openNode(const std::string& serial) { return open(nodeOf(serial).c_str(), O_RDWR | O_CLOEXEC); }

void claim(int node, unsigned interface) {
  usbdevfs_disconnect_claim claim{};
  claim.interface = interface;
  if (ioctl(node, USBDEVFS_DISCONNECT_CLAIM, &claim) != 0) {
    throw std::runtime_error("cannot claim interface " + std::to_string(interface));
  }
}

}  // namespace

OtherProgram::OtherProgram(const std::string& serial, unsigned interface)
    : mNode(openNode(serial)) {
  claim(mNode, interface);
}

OtherProgram::~OtherProgram() { close(mNode); }

OtherProcess::OtherProcess(const std::string& name, const std::string& serial, int interface)
    : mNumber(-1) {
  int ready[2];
  if (pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  mNumber = fork();
  if (mNumber == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NAME, name.c_str());
    try {
      const int node = openNode(serial);
      if (interface >= 0) claim(node, static_cast<unsigned>(interface));
      static_cast<void>(write(ready[1], "y", 1));
    } catch (const std::exception&) {
      _exit(1);
    }
    for (;;) pause();
  }
  close(ready[1]);
  char isReady = 'n';
  const ssize_t size = read(ready[0], &isReady, 1);
  close(ready[0]);
  if (size != 1) throw std::runtime_error("the other process could not have " + serial);
}

OtherProcess::~OtherProcess() {
  kill(mNumber, SIGKILL);
  waitpid(mNumber, nullptr, 0);
}
