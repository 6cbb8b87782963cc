#include "sealFirmware.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "FirmwareLoader.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"

std::vector<platform::SealedFile> sealFirmware() {
  std::vector<platform::SealedFile> sealed;
  const std::optional<std::filesystem::path> resources =
      platform::current().bundle->resourcesDirectory();
  if (!resources) return sealed;
  const auto now = std::chrono::system_clock::now();
  for (const std::wstring& name : firmwareFileNames()) {
    auto file = platform::SealedFile::read(*resources / name, now);
    if (file) sealed.push_back(*std::move(file));
  }
  return sealed;
}
