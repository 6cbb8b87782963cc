#include "describeFirmwareFiles.h"

#include <algorithm>
#include <fstream>
#include <span>
#include <system_error>

#include "FirmwareLoader.h"
#include "PlatformIdBlock.h"

namespace {

// As long as a block can be, with what follows it.
constexpr std::uintmax_t kLongestEnd = 257;

std::string describe(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return "missing";
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  std::vector<char> end(std::min(size, kLongestEnd));
  std::ifstream file(path, std::ios::binary);
  file.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
  if (error || !file.read(end.data(), static_cast<std::streamsize>(end.size()))) {
    return "cannot be read";
  }
  const PlatformIdBlock block{std::span<const char>(end)};
  const std::string length = std::to_string(size) + " bytes, ";
  if (block.version() != PlatformIdBlock::kExpectedVersion ||
      block.fieldCount() != PlatformIdBlock::kExpectedFields || block.firmwareVersion().isNull()) {
    return length + "malformed";
  }
  return length + "version " + std::to_string(block.firmwareVersion().intValue());
}

}  // namespace

std::vector<std::string> describeFirmwareFiles(const std::filesystem::path& directory) {
  std::vector<std::string> lines;
  for (const std::filesystem::path name : firmwareFileNames()) {
    lines.push_back(name.string() + ": " + describe(directory / name));
  }
  return lines;
}
