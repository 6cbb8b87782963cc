#include "Target.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <vector>

#include "hostNames.h"

namespace {

constexpr std::uint16_t kRawPort = 9100;
constexpr std::size_t kRecordSize = 16;
constexpr std::uint8_t kFamilyIPv4 = 2;
constexpr std::size_t kFamily = 1, kPort = 2, kAddress = 4;

std::optional<std::uint16_t> portIn(const std::string& text) {
  std::uint16_t port = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, port);
  if (error != std::errc() || stop != end || port == 0) return std::nullopt;
  return port;
}

std::uint16_t portFrom(const std::string& text) {
  const std::optional<std::uint16_t> port = portIn(text);
  if (!port) {
    throw std::invalid_argument("\"" + text + "\" is no port: give a number from 1 to 65535");
  }
  return *port;
}

}  // namespace

std::string completeAddress(const std::string& text) {
  if (std::ranges::count(text, ':') > 1) {
    throw std::invalid_argument("\"" + text +
                                "\" is an IPv6 address: printers are reached by IPv4");
  }
  const std::size_t colon = text.find(':');
  const std::string host = text.substr(0, colon);
  in_addr parsed{};
  if (inet_pton(AF_INET, host.c_str(), &parsed) != 1 && !isHostName(host)) {
    throw std::invalid_argument("\"" + host +
                                "\" is no IPv4 address, like 10.0.0.5, and no host name");
  }
  const std::uint16_t port =
      colon == std::string::npos ? kRawPort : portFrom(text.substr(colon + 1));
  return host + ":" + std::to_string(port);
}

platform::Data addressRecord(const std::string& address) {
  if (address.empty()) {
    throw std::runtime_error("The printer has IPv6 addresses only: printers are reached by IPv4.");
  }
  const std::size_t colon = address.find(':');
  const std::optional<std::uint16_t> port = portIn(address.substr(colon + 1));
  if (!port) throw std::runtime_error("The printer announces no port that can be connected to.");
  std::vector<std::uint8_t> record(kRecordSize);
  record[0] = kRecordSize;
  record[kFamily] = kFamilyIPv4;
  record[kPort] = static_cast<std::uint8_t>(*port >> 8);
  record[kPort + 1] = static_cast<std::uint8_t>(*port);
  if (inet_pton(AF_INET, address.substr(0, colon).c_str(), record.data() + kAddress) != 1) {
    throw std::runtime_error("\"" + address + "\" is no IPv4 address with a port.");
  }
  return platform::makeData(std::move(record));
}

std::string addressText(const platform::Data& record) {
  if (record == nullptr || record->size() < kRecordSize || (*record)[kFamily] != kFamilyIPv4) {
    return {};
  }
  std::array<char, INET_ADDRSTRLEN> host{};
  if (inet_ntop(AF_INET, record->data() + kAddress, host.data(), host.size()) == nullptr) return {};
  const int port = (*record)[kPort] << 8 | (*record)[kPort + 1];
  return std::string(host.data()) + ":" + std::to_string(port);
}
