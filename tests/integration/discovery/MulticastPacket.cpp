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

constexpr std::size_t kHeaderSize = 12;
constexpr std::uint16_t kTypeA = 1;
constexpr std::uint16_t kTypePtr = 12;
constexpr std::uint16_t kTypeTxt = 16;
constexpr std::uint16_t kTypeSrv = 33;
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
    : mHost(host), mBytes{0, 0, 0x84, 0, 0, 0, 0, 0, 0, 0, 0, 0} {
  mType = mBytes.size();
  for (const char* label : {"_pdl-datastream", "_tcp", "local"}) addLabel(label);
  addNumber(0, 1);
  addNumber(kTypePtr, 2);
  addNumber(1, 2);
  addNumber(4500, 4);
  addNumber(0, 2);
  mData = mService = mBytes.size();
  addLabel(serviceName);
  addPointer(mType);
  endRecord();
}

void MulticastPacket::addTxt(const std::vector<std::uint8_t>& wireForm) {
  beginRecord(mService, kTypeTxt);
  mBytes.insert(mBytes.end(), wireForm.begin(), wireForm.end());
  endRecord();
}

void MulticastPacket::addLocationAndAddress() {
  beginRecord(mService, kTypeSrv);
  addNumber(0, 4);
  addNumber(9100, 2);
  const std::size_t host = mBytes.size();
  addLabel(mHost);
  addLabel("local");
  addNumber(0, 1);
  endRecord();

  beginRecord(host, kTypeA);
  mBytes.insert(mBytes.end(), {10, 91, 0, 2});
  endRecord();
}

void MulticastPacket::send() const {
  const pid_t child = fork();
  if (child == 0) {
    enterPeersNetwork();
    _exit(sendFromPeer(mBytes) ? 0 : 1);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error("the packet cannot be sent");
  }
}

void MulticastPacket::addLabel(const std::string& label) {
  addNumber(label.size(), 1);
  mBytes.insert(mBytes.end(), label.begin(), label.end());
}

void MulticastPacket::addNumber(std::size_t number, std::size_t size) {
  while (size-- > 0) mBytes.push_back(static_cast<std::uint8_t>(number >> 8 * size & 0xFF));
}

void MulticastPacket::addPointer(std::size_t target) { addNumber(0xC000 | target, 2); }

void MulticastPacket::beginRecord(std::size_t owner, std::uint16_t type) {
  addPointer(owner);
  addNumber(type, 2);
  addNumber(0x8001, 2);
  addNumber(120, 4);
  addNumber(0, 2);
  mData = mBytes.size();
}

// Fills in the length of the data and counts the record.
void MulticastPacket::endRecord() {
  const std::size_t length = mBytes.size() - mData;
  mBytes[mData - 2] = static_cast<std::uint8_t>(length >> 8);
  mBytes[mData - 1] = static_cast<std::uint8_t>(length & 0xFF);
  constexpr std::size_t kAnswerCount = 7;
  static_assert(kAnswerCount < kHeaderSize);
  ++mBytes[kAnswerCount];
}
