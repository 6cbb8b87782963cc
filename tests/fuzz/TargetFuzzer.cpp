// An address that somebody gives, or a file of addresses does, is one that can be connected to or
// is refused with a reason; what a process is told of a printer is what its parent said.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "JsonLines.h"
#include "Target.h"
#include "platform/Text.h"
#include "require.h"

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// "10.0.0.5": four numbers up to 255 without leading zeros. Their bytes, if it is one.
bool isDotted(const std::string& host, std::array<int, 4>& numbers) {
  std::string shown;
  std::size_t at = 0;
  for (int& number : numbers) {
    number = 0;
    for (int digits = 0; digits < 3 && at < host.size() && isDigit(host[at]); ++digits, ++at) {
      number = number * 10 + (host[at] - '0');
    }
    if (number > 255) return false;
    shown += (shown.empty() ? "" : ".") + std::to_string(number);
    if (at < host.size() && host[at] == '.') ++at;
  }
  return shown == host;
}

void checkAddress(const std::string& address) {
  const std::size_t colon = address.find(':');
  require(colon != std::string::npos && colon == address.rfind(':') && colon > 0);
  const std::string host = address.substr(0, colon);
  const int port = std::stoi(address.substr(colon + 1));
  require(port >= 1 && port <= 65535 && std::to_string(port) == address.substr(colon + 1));
  require(completeAddress(address) == address);

  std::array<int, 4> numbers{};
  if (!isDotted(host, numbers)) {
    require(std::ranges::any_of(host, [](char c) { return !isDigit(c) && c != '.'; }));
    return;
  }
  const platform::Data record = addressRecord(address);
  require(record->size() == 16 && (*record)[0] == 16 && (*record)[1] == 2);
  require((*record)[2] * 256 + (*record)[3] == port);
  for (std::size_t i = 0; i < 4; ++i) require((*record)[4 + i] == numbers[i]);
  require(addressText(record) == address);
}

void checkOrder(const std::string& text) {
  for (const auto connection : {Target::Connection::Usb, Target::Connection::Network}) {
    Target target;
    target.connection = connection;
    target.name = text;
    (connection == Target::Connection::Usb ? target.serial : target.address) = text;
    const std::string order =
        toJson(target).dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
    const Target told = targetFromJson(nlohmann::ordered_json::parse(order));
    require(told.connection == connection && told.serial.empty() == target.serial.empty());
    if (platform::Text::fromUtf8(text).isNull()) continue;
    require(told.name == text && told.serial == target.serial && told.address == target.address);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  std::string address;
  try {
    address = completeAddress(text);
  } catch (const std::invalid_argument& refusal) {
    require(*refusal.what() != '\0');
  }
  if (!address.empty()) checkAddress(address);
  checkOrder(text);
  return 0;
}
