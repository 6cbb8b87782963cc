#include "platform/posix/PosixNetwork.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixStreamSocket.h"

namespace platform {
namespace {

// `error` says why there is none.
FileDescriptor openSocket(int& error) {
  FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
  error = socket ? 0 : errno;
  // Each message is one send, and its answer is waited for: holding a short one back only delays.
  const int noDelay = 1;
  if (socket) ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
  return socket;
}

class PosixNetwork : public Network {
 public:
  explicit PosixNetwork(RunLoop& runLoop) : mRunLoop(runLoop) {}

  std::unique_ptr<StreamSocket> createStreamSocket(unsigned long callbackTypes,
                                                   StreamSocket::Callout callout,
                                                   void* info) override {
    int error = 0;
    FileDescriptor socket = openSocket(error);
    return std::make_unique<PosixStreamSocket>(mRunLoop, std::move(socket), error, callbackTypes,
                                               callout, info);
  }

  Text numericAddress(int family, std::span<const std::uint8_t> address) override {
    std::array<char, INET6_ADDRSTRLEN> text;
    const bool isIPv4 = family == kAddressFamilyIPv4 && address.size() >= sizeof(in_addr);
    const bool isIPv6 = family == kAddressFamilyIPv6 && address.size() >= sizeof(in6_addr);
    if (!isIPv4 && !isIPv6) return Text();
    const int hostFamily = isIPv4 ? AF_INET : AF_INET6;
    if (::inet_ntop(hostFamily, address.data(), text.data(), text.size()) == nullptr) {
      return Text();
    }
    return Text::fromUtf8(text.data());
  }

 private:
  RunLoop& mRunLoop;
};

}  // namespace

std::unique_ptr<Network> makePosixNetwork(RunLoop& runLoop) {
  return std::make_unique<PosixNetwork>(runLoop);
}

}  // namespace platform
