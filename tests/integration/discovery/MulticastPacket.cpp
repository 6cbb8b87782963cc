#include "MulticastPacket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace {

constexpr std::uint16_t kMulticastPort = 5353;

void enterPeersNetwork() {
  std::string pid;
  std::ifstream("/run/private-network/peer") >> pid;
  const int network = open(("/proc/" + pid + "/ns/net").c_str(), O_RDONLY | O_CLOEXEC);
  if (network < 0 || setns(network, CLONE_NEWNET) != 0) _exit(1);
  close(network);
}

// From the multicast port, as only answers from there count.
bool sendFromPeer(const std::vector<std::uint8_t>& bytes) {
  const int sender = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in own{};
  own.sin_family = AF_INET;
  own.sin_port = htons(kMulticastPort);
  sockaddr_in all = own;
  inet_pton(AF_INET, "10.91.0.2", &own.sin_addr);
  inet_pton(AF_INET, "224.0.0.251", &all.sin_addr);
  const int timeToLive = 255;
  setsockopt(sender, IPPROTO_IP, IP_MULTICAST_TTL, &timeToLive, sizeof timeToLive);
  setsockopt(sender, IPPROTO_IP, IP_MULTICAST_IF, &own.sin_addr, sizeof own.sin_addr);
  return bind(sender, reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0 &&
         sendto(sender, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&all),
                sizeof all) == static_cast<ssize_t>(bytes.size());
}

}  // namespace

MulticastPacket::MulticastPacket(const std::string& serviceName, const std::string& host)
    : mService{serviceName, "_pdl-datastream", "_tcp", "local"},
      mHost{host, "local"},
      mPacket(0, dns::kFlagResponse | dns::kFlagAuthoritative) {
  const dns::Name type(mService.begin() + 1, mService.end());
  mPacket.addRecord(dns::Section::Answers,
                    {type, dns::kTypePtr, dns::kClassIn, 4500, {}, mService});
}

void MulticastPacket::addTxt(const std::vector<std::uint8_t>& wireForm) {
  add(mService, dns::kTypeTxt, wireForm);
}

void MulticastPacket::addLocationAndAddress() {
  add(mService, dns::kTypeSrv, {0, 0, 0, 0, 0x23, 0x8C}, mHost);
  add(mHost, dns::kTypeA, {10, 91, 0, 2});
}

void MulticastPacket::send() const {
  const pid_t child = fork();
  if (child == 0) {
    enterPeersNetwork();
    _exit(sendFromPeer(mPacket.bytes()) ? 0 : 1);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error("the packet cannot be sent");
  }
}

void MulticastPacket::add(const dns::Name& name, std::uint16_t type, const dns::Bytes& data,
                          const dns::Name& target) {
  mPacket.addRecord(dns::Section::Answers,
                    {name, type, dns::kClassIn | dns::kTopBit, 120, data, target});
}
