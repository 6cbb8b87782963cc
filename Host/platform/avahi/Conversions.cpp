#include "platform/avahi/Conversions.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/Network.h"

namespace platform {
namespace {

constexpr std::size_t kIPv4RecordSize = 16;
constexpr std::size_t kIPv6RecordSize = 28;
constexpr std::size_t kPortOffset = 2;
constexpr std::size_t kIPv4AddressOffset = 4;
constexpr std::size_t kIPv6AddressOffset = 8;
constexpr std::size_t kIPv6ScopeOffset = 24;

std::vector<std::uint8_t> emptyRecord(std::size_t size, int family, std::uint16_t port) {
  std::vector<std::uint8_t> record(size);
  record[0] = static_cast<std::uint8_t>(size);
  record[1] = static_cast<std::uint8_t>(family);
  record[kPortOffset] = static_cast<std::uint8_t>(port >> 8);
  record[kPortOffset + 1] = static_cast<std::uint8_t>(port & 0xFF);
  return record;
}

bool isLinkLocal(const AvahiIPv6Address& address) {
  return address.address[0] == 0xFE && (address.address[1] & 0xC0) == 0x80;
}

}  // namespace

Data addressRecord(const AvahiAddress& address, std::uint16_t port, AvahiIfIndex interface) {
  if (address.proto == AVAHI_PROTO_INET) {
    auto record = emptyRecord(kIPv4RecordSize, kAddressFamilyIPv4, port);
    // Already in network order.
    std::memcpy(&record[kIPv4AddressOffset], &address.data.ipv4.address, 4);
    return makeData(std::move(record));
  }
  if (address.proto == AVAHI_PROTO_INET6) {
    auto record = emptyRecord(kIPv6RecordSize, kAddressFamilyIPv6, port);
    std::memcpy(&record[kIPv6AddressOffset], address.data.ipv6.address, 16);
    const std::uint32_t scope =
        isLinkLocal(address.data.ipv6) ? static_cast<std::uint32_t>(interface) : 0;
    std::memcpy(&record[kIPv6ScopeOffset], &scope, sizeof scope);
    return makeData(std::move(record));
  }
  return nullptr;
}

Data txtRecord(AvahiStringList* strings) {
  std::vector<std::uint8_t> bytes(avahi_string_list_serialize(strings, nullptr, 0));
  bytes.resize(avahi_string_list_serialize(strings, bytes.data(), bytes.size()));
  return makeData(std::move(bytes));
}

}  // namespace platform
