#include "platform/TxtRecord.h"

#include <algorithm>
#include <cstddef>

namespace platform {

TxtRecord::TxtRecord(std::span<const std::uint8_t> wireForm) {
  while (!wireForm.empty()) {
    const std::size_t length = wireForm.front();
    wireForm = wireForm.subspan(1);
    if (length > wireForm.size()) return;
    std::string string(length, '\0');
    std::copy_n(wireForm.begin(), length, string.begin());
    addString(string);
    wireForm = wireForm.subspan(length);
  }
}

void TxtRecord::addString(std::string_view string) {
  const std::size_t keyLength = std::min(string.find('='), string.size());
  if (keyLength == 0) return;
  const std::size_t valueStart = std::min(keyLength + 1, string.size());
  mValues.emplace(string.substr(0, keyLength), string.substr(valueStart));
}

std::optional<std::string_view> TxtRecord::value(std::string_view key) const {
  const auto found = mValues.find(key);
  if (found == mValues.end()) return std::nullopt;
  return found->second;
}

}  // namespace platform
