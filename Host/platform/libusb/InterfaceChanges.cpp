#include "platform/libusb/InterfaceChanges.h"

#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace platform {
namespace {

constexpr unsigned kKernelGroup = 1;

int openSocket() {
  const int descriptor =
      socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_KOBJECT_UEVENT);
  if (descriptor < 0) return -1;
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_groups = kKernelGroup;
  if (bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    return descriptor;
  }
  close(descriptor);
  return -1;
}

}  // namespace

bool isInterfaceChange(std::string_view message) {
  bool isChange = false;
  bool isInterface = false;
  while (!message.empty()) {
    const std::string_view field = message.substr(0, message.find('\0'));
    isChange = isChange || field == "ACTION=add" || field == "ACTION=remove";
    isInterface = isInterface || field == "DEVTYPE=usb_interface";
    message.remove_prefix(std::min(message.size(), field.size() + 1));
  }
  return isChange && isInterface;
}

InterfaceChanges::InterfaceChanges(RunLoop& runLoop, std::function<void()> changed)
    : mChanged(std::move(changed)), mSocket(openSocket()) {
  if (mSocket < 0) return;
  mWatch = runLoop.watch(mSocket, RunLoop::Interest::Readable, [this] { receive(); });
}

InterfaceChanges::~InterfaceChanges() {
  mWatch.reset();
  if (mSocket >= 0) close(mSocket);
}

void InterfaceChanges::receive() {
  bool isChange = false;
  std::array<char, 8192> message;
  for (;;) {
    const ssize_t size = recv(mSocket, message.data(), message.size(), 0);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno != ENOBUFS) break;
    // Messages that the kernel had no room for may have told of anything.
    isChange =
        isChange || size < 0 || isInterfaceChange({message.data(), static_cast<std::size_t>(size)});
  }
  if (isChange) mChanged();
}

}  // namespace platform
