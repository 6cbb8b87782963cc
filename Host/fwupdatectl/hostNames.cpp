#include "hostNames.h"

#include <arpa/inet.h>
#include <netdb.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

namespace {

constexpr std::size_t kLongestName = 253;
constexpr const char* kDigits = "0123456789";
constexpr const char* kHexadecimal = "0123456789abcdefABCDEF";
constexpr const char* kLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";

bool isNumber(const std::string& label) {
  const bool isHexadecimal = label.starts_with("0x") || label.starts_with("0X");
  return label.find_first_not_of(isHexadecimal ? kHexadecimal : kDigits, isHexadecimal ? 2 : 0) ==
         std::string::npos;
}

struct Free {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, Free>;

Addresses look(const std::string& host, int family, int& error) {
  addrinfo hints{};
  hints.ai_family = family;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  error = getaddrinfo(host.c_str(), nullptr, &hints, &list);
  return Addresses(error == 0 ? list : nullptr);
}

std::runtime_error failure(const std::string& host, int error) {
  const std::string name = "The host name \"" + host + "\"";
  int other = 0;
  if (look(host, AF_INET6, other)) {
    return std::runtime_error(name + " has IPv6 addresses only: printers are reached by IPv4.");
  }
  if (error == EAI_NONAME || error == EAI_NODATA)
    return std::runtime_error(name + " is not known.");
  return std::runtime_error(name + " cannot be looked up: " + gai_strerror(error) + ".");
}

}  // namespace

bool isHostName(const std::string& text) {
  if (text.empty() || text.size() > kLongestName || text.front() == '-' || text.front() == '.') {
    return false;
  }
  if (text.find_first_not_of(kLetters) != std::string::npos) return false;
  const std::string whole = text.back() == '.' ? text.substr(0, text.size() - 1) : text;
  return !isNumber(whole.substr(whole.rfind('.') + 1));
}

std::string resolvedAddress(const std::string& address) {
  const std::size_t colon = address.find(':');
  const std::string host = address.substr(0, colon);
  if (!isHostName(host)) return address;
  int error = 0;
  const Addresses found = look(host, AF_INET, error);
  if (!found) throw failure(host, error);
  sockaddr_in first{};
  std::copy_n(reinterpret_cast<const char*>(found->ai_addr), sizeof first,
              reinterpret_cast<char*>(&first));
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &first.sin_addr, text.data(), text.size());
  return text.data() + address.substr(colon);
}
