#include "MulticastSockets.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace crowd {
namespace {

constexpr std::uint16_t kMulticastPort = 5353;
constexpr int kHopLimit = 255;

// A thousand printers have a thousand buffers, the crowd has one.
constexpr int kBufferSize = 32 * 1024 * 1024;

void check(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
}

template <typename Value>
void set(int socket, int level, int option, const Value& value, const char* what) {
  check(setsockopt(socket, level, option, &value, sizeof value), what);
}

template <typename Address>
std::string bytesOf(const Address& address) {
  std::string bytes(sizeof address, '\0');
  std::memcpy(bytes.data(), &address, sizeof address);
  return bytes;
}

int openSocket(int family, const std::string& link) {
  const int opened = socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  check(opened, "socket");
  set(opened, SOL_SOCKET, SO_REUSEADDR, 1, "SO_REUSEADDR");
  set(opened, SOL_SOCKET, SO_REUSEPORT, 1, "SO_REUSEPORT");
  check(setsockopt(opened, SOL_SOCKET, SO_BINDTODEVICE, link.data(),
                   static_cast<socklen_t>(link.size())),
        "SO_BINDTODEVICE");
  for (const int option : {SO_RCVBUFFORCE, SO_SNDBUFFORCE}) {
    setsockopt(opened, SOL_SOCKET, option, &kBufferSize, sizeof kBufferSize);
  }
  return opened;
}

int openIPv4(const std::string& link, unsigned index, std::string& everybody) {
  const int opened = openSocket(AF_INET, link);
  ip_mreqn group{};
  inet_pton(AF_INET, "224.0.0.251", &group.imr_multiaddr);
  group.imr_ifindex = static_cast<int>(index);
  set(opened, IPPROTO_IP, IP_ADD_MEMBERSHIP, group, "IP_ADD_MEMBERSHIP");
  set(opened, IPPROTO_IP, IP_MULTICAST_IF, group, "IP_MULTICAST_IF");
  set(opened, IPPROTO_IP, IP_MULTICAST_TTL, kHopLimit, "IP_MULTICAST_TTL");
  set(opened, IPPROTO_IP, IP_TTL, kHopLimit, "IP_TTL");
  set(opened, IPPROTO_IP, IP_MULTICAST_LOOP, 0, "IP_MULTICAST_LOOP");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(kMulticastPort);
  check(bind(opened, reinterpret_cast<const sockaddr*>(&address), sizeof address), "bind");
  address.sin_addr = group.imr_multiaddr;
  everybody = bytesOf(address);
  return opened;
}

int openIPv6(const std::string& link, unsigned index, std::string& everybody) {
  const int opened = openSocket(AF_INET6, link);
  set(opened, IPPROTO_IPV6, IPV6_V6ONLY, 1, "IPV6_V6ONLY");
  ipv6_mreq group{};
  inet_pton(AF_INET6, "ff02::fb", &group.ipv6mr_multiaddr);
  group.ipv6mr_interface = index;
  set(opened, IPPROTO_IPV6, IPV6_JOIN_GROUP, group, "IPV6_JOIN_GROUP");
  set(opened, IPPROTO_IPV6, IPV6_MULTICAST_IF, static_cast<int>(index), "IPV6_MULTICAST_IF");
  set(opened, IPPROTO_IPV6, IPV6_MULTICAST_HOPS, kHopLimit, "IPV6_MULTICAST_HOPS");
  set(opened, IPPROTO_IPV6, IPV6_UNICAST_HOPS, kHopLimit, "IPV6_UNICAST_HOPS");
  set(opened, IPPROTO_IPV6, IPV6_MULTICAST_LOOP, 0, "IPV6_MULTICAST_LOOP");
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_port = htons(kMulticastPort);
  check(bind(opened, reinterpret_cast<const sockaddr*>(&address), sizeof address), "bind");
  address.sin6_addr = group.ipv6mr_multiaddr;
  address.sin6_scope_id = index;
  everybody = bytesOf(address);
  return opened;
}

// The port has the same place in both kinds of address.
bool isFromMulticastPort(const sockaddr_storage& address) {
  sockaddr_in start;
  std::memcpy(&start, &address, sizeof start);
  return start.sin_port == htons(kMulticastPort);
}

}  // namespace

MulticastSockets::MulticastSockets(const std::vector<std::string>& links) {
  for (std::size_t link = 0; link < links.size(); ++link) {
    const unsigned index = if_nametoindex(links[link].c_str());
    if (index == 0) throw std::system_error(errno, std::generic_category(), links[link]);
    for (const auto open : {openIPv4, openIPv6}) {
      Place place{link, -1, {}};
      place.socket = open(links[link], index, place.everybody);
      mPlaces.push_back(place);
    }
  }
}

MulticastSockets::~MulticastSockets() {
  for (const Place& place : mPlaces) close(place.socket);
}

std::vector<std::size_t> MulticastSockets::places() const {
  std::vector<std::size_t> links;
  for (const Place& place : mPlaces) links.push_back(place.link);
  return links;
}

std::vector<int> MulticastSockets::descriptors() const {
  std::vector<int> descriptors;
  for (const Place& place : mPlaces) descriptors.push_back(place.socket);
  return descriptors;
}

void MulticastSockets::receive(std::size_t place, const Heard& heard) const {
  static thread_local std::vector<std::uint8_t> buffer(65536);
  for (;;) {
    sockaddr_storage from{};
    socklen_t size = sizeof from;
    const ssize_t count = recvfrom(mPlaces[place].socket, buffer.data(), buffer.size(),
                                   MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&from), &size);
    if (count < 0) return;
    const Asker asker{bytesOf(from).substr(0, size), isFromMulticastPort(from)};
    heard(asker, std::span(buffer).first(static_cast<std::size_t>(count)));
  }
}

void MulticastSockets::send(const Datagram& datagram) const {
  const Place& place = mPlaces[datagram.place];
  const std::string& to = datagram.to ? datagram.to->address : place.everybody;
  sockaddr_storage address{};
  std::memcpy(&address, to.data(), to.size());
  sendto(place.socket, datagram.bytes.data(), datagram.bytes.size(), 0,
         reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(to.size()));
}

}  // namespace crowd
