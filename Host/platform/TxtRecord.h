// The keys and values of a DNS-SD TXT record: what a printer says of itself on the network. The
// record comes from the network as it is; whatever it holds is read without harm.
//
// Wire form: strings of a length byte and that many bytes, each "KEY=VALUE". A string that begins
// with '=' has no key and is skipped, a length that reaches beyond the end ends the record. A
// string without '=' is a key with an empty value. Of several values of a key the first counts.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

class TxtRecord {
 public:
  explicit TxtRecord(std::span<const std::uint8_t> wireForm);

  // Bytes, which need not be text; nothing when there is no such key. Keys differ in letter case.
  std::optional<std::string_view> value(std::string_view key) const;

 private:
  void addString(std::string_view string);

  std::map<std::string, std::string, std::less<>> mValues;
};

}  // namespace platform
