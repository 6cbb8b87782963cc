// The record of a socket's address on this computer: see platform/Network.h.
#pragma once

#include <cstdint>

#include "platform/Data.h"

inline platform::Data loopbackAddress(std::uint16_t port) {
  return platform::makeData({16, 2, static_cast<std::uint8_t>(port >> 8),
                             static_cast<std::uint8_t>(port), 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                             0});
}
