#include "platform/posix/LogDaemon.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <syslog.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace platform {
namespace {

constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Its queue may have room for ten entries only, and whoever writes is faster than who reads.
constexpr timeval kPatience{.tv_sec = 1, .tv_usec = 0};

using Head = std::array<char, 64>;

// "<13>Nov 21 09:00:00 ", whatever the user's language.
int writeHead(int priority, Head& head) {
  const std::time_t now = std::time(nullptr);
  std::tm time{};
  ::localtime_r(&now, &time);
  return std::snprintf(head.data(), head.size(), "<%d>%s %2d %02d:%02d:%02d ", priority,
                       kMonths[static_cast<std::size_t>(time.tm_mon)], time.tm_mday, time.tm_hour,
                       time.tm_min, time.tm_sec);
}

iovec partOf(const char* text, std::size_t size) { return {const_cast<char*>(text), size}; }

}  // namespace

// One that was started anew has another socket.
void LogDaemon::send(int priority, const char* identity, const char* text) {
  Head head;
  const int headSize = writeHead(priority, head);
  std::array parts{partOf(head.data(), static_cast<std::size_t>(headSize)),
                   partOf(identity, std::strlen(identity)), partOf(": ", 2),
                   partOf(text, std::strlen(text))};
  msghdr entry{};
  entry.msg_iov = parts.data();
  entry.msg_iovlen = parts.size();
  for (int attempts = 0; attempts < 2; ++attempts) {
    if (!mSocket && !connect()) return;
    const int wait = mReads ? 0 : MSG_DONTWAIT;
    mReads = ::sendmsg(mSocket.get(), &entry, MSG_NOSIGNAL | wait) >= 0;
    if (mReads || errno == EAGAIN) return;
    disconnect();
  }
}

bool LogDaemon::connect() {
  mSocket = FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, _PATH_LOG);
  mReads = true;
  if (mSocket &&
      ::setsockopt(mSocket.get(), SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience) == 0 &&
      ::connect(mSocket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return true;
  }
  disconnect();
  return false;
}

}  // namespace platform
