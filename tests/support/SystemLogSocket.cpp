#include "SystemLogSocket.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>

using platform::FileDescriptor;

namespace {

// "<11>Nov 21 09:00:00 fwupdate: text" without the time.
std::string withoutTime(const std::string& entry) {
  constexpr std::size_t kTimeLength = std::char_traits<char>::length("Nov 21 09:00:00 ");
  const std::size_t timeBegin = entry.find('>') + 1;
  return entry.size() < timeBegin + kTimeLength ? entry
                                                : std::string(entry).erase(timeBegin, kTimeLength);
}

}  // namespace

FileDescriptor takeLogDaemonsPlace() {
  if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return {};
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
      ::mount("tmpfs", "/dev", "tmpfs", 0, nullptr) != 0) {
    return {};
  }
  return listenAsLogDaemon();
}

FileDescriptor listenAsLogDaemon() {
  FileDescriptor daemon(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "/dev/log");
  ::unlink(address.sun_path);
  if (::bind(daemon.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return {};
  }
  return daemon;
}

std::optional<std::string> receiveLogEntry(const FileDescriptor& daemon) {
  std::array<char, 4096> buffer;
  const ssize_t count = ::recv(daemon.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (count < 0) return std::nullopt;
  return withoutTime(std::string(buffer.data(), static_cast<std::size_t>(count)));
}
