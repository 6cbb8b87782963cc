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
bool findHolder(const FileDescriptor& socket, const SocketName& name, std::string& holder) {
  holder = kUnknown;
  if (::connect(socket.get(), name.get(), name.size()) != 0) return errno != ECONNREFUSED;
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 &&
      credentials.pid > 0) {
    holder = describeProcess(credentials.pid);
  }
  return true;
}

// A name, as soon as nobody else has it.
class OwnName {
 public:
  enum class Result { Taken, InUse, Impossible };

  Result take(const SocketName& name) {
    FileDescriptor socket = makeSocket();
    if (::bind(socket.get(), name.get(), name.size()) != 0) {
      return errno == EADDRINUSE ? Result::InUse : Result::Impossible;
    }
    // So that others can ask whose it is.
    ::listen(socket.get(), SOMAXCONN);
    mSocket = std::move(socket);
    return Result::Taken;
  }

 private:
  FileDescriptor mSocket;
};

class SocketLock final : public DeviceLock {
 public:
  SocketLock(OwnName update, const std::string& name)
      : mUpdate(std::move(update)), mTalkName(name + "/talk") {}

  bool isGranted(std::string& holder) override {
    holder.clear();
    if (!mIsGranted) mIsGranted = mTalk.take(mTalkName) != OwnName::Result::InUse;
    if (!mIsGranted) findHolder(makeSocket(), mTalkName, holder);
    return mIsGranted;
  }

 private:
  OwnName mUpdate;  // nobody's where nothing is updated
  SocketName mTalkName;
  OwnName mTalk;
  bool mIsGranted = false;
};

class PosixDeviceLocks final : public DeviceLocks {
 public:
  std::unique_ptr<DeviceLock> lock(const Data& address, DeviceUse use,
                                   std::string& holder) override {
    holder.clear();
    const std::string name = nameFor(address);
    if (name.empty()) return nullptr;
    const SocketName updateName(name);
    OwnName update;
    if (use == DeviceUse::Question) {
      const FileDescriptor socket = makeSocket();
      if (!socket || findHolder(socket, updateName, holder)) return nullptr;
      holder.clear();
      return std::make_unique<SocketLock>(std::move(update), name);
    }
    for (int attempts = 0; attempts < 2; ++attempts) {
      const OwnName::Result result = update.take(updateName);
      if (result == OwnName::Result::Taken) {
        holder.clear();
        return std::make_unique<SocketLock>(std::move(update), name);
      }
      if (result == OwnName::Result::Impossible) {
        holder.clear();
        return nullptr;
      }
      if (findHolder(makeSocket(), updateName, holder)) return nullptr;
    }
    return nullptr;
  }
};

}  // namespace

std::unique_ptr<DeviceLocks> makePosixDeviceLocks() { return std::make_unique<PosixDeviceLocks>(); }

}  // namespace platform
