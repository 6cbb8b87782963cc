// A firmware file of the size that the measurements are made with, in a directory where the engine
// finds it.
#pragma once

#include <cstdint>
#include <filesystem>

namespace bench {

inline constexpr std::uint64_t kFirmwareSize = 32 << 20;
inline constexpr char kFirmwareName[] = "product.brand.bin";

// Throws std::runtime_error when it cannot be made.
std::filesystem::path makeFirmware(const std::filesystem::path& directory);

// A copy of the program and its resources below `prefix`, with that firmware instead of its own;
// the path of the program.
std::filesystem::path installWithFirmware(const std::filesystem::path& prefix);

}  // namespace bench
