// Whatever the network sends as a TXT record is read without harm: a value is that of the first
// string with its key, and strings end where the first one is longer than what is left. Most inputs
// are made of whole strings.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "platform/TxtRecord.h"

namespace {

using Strings = std::vector<std::string>;

// The strings of a record up to the first that is cut off.
Strings stringsOf(const std::uint8_t* data, std::size_t size) {
  Strings strings;
  for (std::size_t at = 0; at < size && data[at] < size - at; at += 1 + data[at]) {
    strings.emplace_back(data + at + 1, data + at + 1 + data[at]);
  }
  return strings;
}

// The value of a key as the strings say it; nothing where none does.
std::optional<std::string> valueIn(const Strings& strings, const std::string& key) {
  for (const std::string& string : strings) {
    if (key.empty() || string.substr(0, string.find('=')) != key) continue;
    return string.size() > key.size() ? string.substr(key.size() + 1) : "";
  }
  return std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::TxtRecord record(std::span(data, size));
  const Strings strings = stringsOf(data, size);
  for (const std::string key : {"usb_MFG", "usb_MDL", "a", ""}) {
    const auto value = record.value(key);
    if (value != valueIn(strings, key)) std::abort();
    if (value) platform::Text::fromUtf8(*value);
  }
  return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  std::minstd_rand random(seed);
  Strings strings = stringsOf(data, size);
  if (strings.empty() || random() % 4 == 0) return LLVMFuzzerMutate(data, size, most);

  const auto chosen = static_cast<std::ptrdiff_t>(random() % strings.size());
  std::string& string = strings[static_cast<std::size_t>(chosen)];
  switch (random() % 4) {
    case 0:
      strings.insert(strings.begin() + chosen, std::string(string));
      break;
    case 1:
      std::swap(string, strings.front());
      break;
    case 2:
      strings.erase(strings.begin() + chosen);
      break;
    default: {
      std::array<std::uint8_t, 255> bytes{};
      std::copy(string.begin(), string.end(), bytes.begin());
      string.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(LLVMFuzzerMutate(
                                                       bytes.data(), string.size(), bytes.size())));
    }
  }

  std::size_t end = 0;
  for (const std::string& each : strings) {
    if (end + 1 + each.size() > most) break;
    data[end++] = static_cast<std::uint8_t>(each.size());
    std::copy(each.begin(), each.end(), data + end);
    end += each.size();
  }
  return end;
}
