// An update by the engine alone, as the program makes it.
#pragma once

#include <cstdint>
#include <filesystem>

#include "NetworkEngine.h"

namespace bench {

class EngineUpdate : private NetworkEngine {
 public:
  // `resources` has the firmware files.
  explicit EngineUpdate(const std::filesystem::path& resources);

  // Updates the printer at a port of 127.0.0.1. Throws std::runtime_error when that fails.
  void run(std::uint16_t port);
};

}  // namespace bench
