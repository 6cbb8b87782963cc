#include "platform/posix/PosixDeviceLocks.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/Network.h"
#include "platform/ProcessName.h"
#include "platform/posix/FileDescriptor.h"

namespace platform {
namespace {

constexpr char kUnknown[] = "another program";

class SocketLock final : public DeviceLock {
 public:
  explicit SocketLock(FileDescriptor socket) : mSocket(std::move(socket)) {}

 private:
  FileDescriptor mSocket;
};

// "fwupdate/10.0.0.5:9100"; empty for what no connection can be made to.
std::string nameFor(const Data& record) {
  constexpr std::size_t kFamily = 1, kPort = 2, kAddress = 4, kSize = 16;
  if (record == nullptr || record->size() < kSize || (*record)[kFamily] != kAddressFamilyIPv4) {
    return {};
  }
  std::array<char, INET_ADDRSTRLEN> host{};
  inet_ntop(AF_INET, record->data() + kAddress, host.data(), host.size());
  const int port = (*record)[kPort] << 8 | (*record)[kPort + 1];
  return std::string("fwupdate/") + host.data() + ":" + std::to_string(port);
}

class SocketName {
 public:
  explicit SocketName(std::string_view name) {
    mAddress.sun_family = AF_UNIX;
    std::memcpy(&mAddress.sun_path[1], name.data(), name.size());  // which fits: see nameFor()
    mSize = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&mAddress); }
  socklen_t size() const { return mSize; }

 private:
  sockaddr_un mAddress{};
  socklen_t mSize = 0;
};

FileDescriptor makeSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// False when the name is free by now.
bool findHolder(const SocketName& name, std::string& holder) {
  holder = kUnknown;
  const FileDescriptor socket = makeSocket();
  if (::connect(socket.get(), name.get(), name.size()) != 0) return errno != ECONNREFUSED;
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 &&
      credentials.pid > 0) {
    holder = describeProcess(credentials.pid);
  }
  return true;
}

class PosixDeviceLocks final : public DeviceLocks {
 public:
  std::unique_ptr<DeviceLock> lock(const Data& address, std::string& holder) override {
    holder.clear();
    const std::string name = nameFor(address);
    if (name.empty()) return nullptr;
    const SocketName socketName(name);
    for (int attempts = 0; attempts < 2; ++attempts) {
      FileDescriptor socket = makeSocket();
      if (::bind(socket.get(), socketName.get(), socketName.size()) == 0) {
        // So that others can ask whose it is.
        ::listen(socket.get(), SOMAXCONN);
        holder.clear();
        return std::make_unique<SocketLock>(std::move(socket));
      }
      if (errno != EADDRINUSE) {
        holder.clear();
        return nullptr;
      }
      if (findHolder(socketName, holder)) return nullptr;
    }
    return nullptr;
  }
};

}  // namespace

std::unique_ptr<DeviceLocks> makePosixDeviceLocks() { return std::make_unique<PosixDeviceLocks>(); }

}  // namespace platform
