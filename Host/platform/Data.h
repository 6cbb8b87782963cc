// An immutable block of bytes that its holders share, and possibly null: TXT records, socket
// addresses, bytes that arrived on a connection.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

using Data = std::shared_ptr<const std::vector<std::uint8_t>>;

inline Data makeData(std::vector<std::uint8_t> bytes) {
  return std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
}

}  // namespace platform
