#include "FirmwareLoader.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

#include "Branding.h"
#include "ErrorMessage.h"
#include "Log.h"
#include "PlatformIdBlock.h"
#include "StrUtils.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/Platform.h"
#include "platform/Text.h"

namespace {

using std::filesystem::path;

void logError(const char* message) { Log<3>() << message << std::flush; }

void logError(const char* message, platform::OSStatus status) {
  Log<3>() << buildErrorMessage(message, status) << std::flush;
}

std::optional<path> findResources() {
  const platform::Bundle* const bundle = platform::current().bundle;
  if (bundle == nullptr || !bundle->exists()) {
    logError("Could not find application bundle.");
    return std::nullopt;
  }
  std::optional<path> resources = bundle->resourcesDirectory();
  if (!resources) logError("Bundle resources URL is null.");
  return resources;
}

// Finds the file `name` in `directory` and its size; false after logging why not.
bool findFile(const path& directory, const std::wstring& name, path& file, std::uint32_t& size) {
  platform::Files& files = *platform::current().files;
  const std::u16string fileName = platform::Text::fromWide(name).utf16();
  if (const auto status = files.makeReference(directory, fileName, file)) {
    logError("Failed to make file system reference for firmware file.", status);
    return false;
  }
  std::uint64_t dataSize = 0;
  if (const auto status = files.dataSize(file, dataSize)) {
    logError("Failed to get file info.", status);
    return false;
  }
  if (dataSize == 0) {
    logError("Firmware file is empty.");
    return false;
  }
  // A printer takes the length of an image in 32 bits.
  size = static_cast<std::uint32_t>(dataSize);
  return true;
}

// Reads the first `size` bytes of `file`; false after logging why not, and `image` is then empty.
bool readFile(const path& file, std::uint32_t size, platform::FileBytes& image) {
  using Step = platform::WholeRead::Step;
  const platform::WholeRead read = platform::current().files->readWhole(file, size, image);
  if (read.status == platform::noErr && read.actual == size) return true;
  switch (read.step) {
    case Step::DataFork:
      logError("Could not get data fork.", read.status);
      break;
    case Step::Open:
      logError("Could not open data fork.", read.status);
      break;
    case Step::Read:
      logError("File read failed.", read.status);
      Log<3>() << std::dec << "Read " << read.actual << " of " << size << " bytes" << std::flush;
      break;
  }
  image.clear();
  return false;
}

// The version that the image records about itself; 0, after logging why, when it is malformed.
unsigned int extractVersionFromImage(std::span<const char> image) {
  const PlatformIdBlock block(image);
  if (block.version() != PlatformIdBlock::kExpectedVersion) {
    Log<3>() << std::dec << "Invalid platform ID version: got " << block.version() << ", expected "
             << PlatformIdBlock::kExpectedVersion << std::flush;
    return 0;
  }
  if (block.fieldCount() != PlatformIdBlock::kExpectedFields) {
    Log<3>() << std::dec << "Invalid number of platform ID fields: got " << block.fieldCount()
             << ", expected " << PlatformIdBlock::kExpectedFields << std::flush;
    return 0;
  }
  const platform::Text version = block.firmwareVersion();
  Log<5>() << "Firmware version in file: " << version << std::flush;
  return static_cast<unsigned int>(version.intValue());
}

}  // namespace

bool getFirmware(const std::wstring& deviceId, platform::FileBytes& image,
                 unsigned int& fileVersion) {
  static constexpr char kNoReference[] =
      "Failed to get file system reference from URL or load the firmware file.";
  const std::optional<path> resources = findResources();
  if (!resources) return false;
  if (platform::current().files->checkDirectory(*resources) != platform::noErr) {
    logError(kNoReference);
    return false;
  }
  const std::wstring fileName = chooseFirmwareFile(deviceId);
  if (fileName.empty()) {
    logError(kNoReference);
    return false;
  }
  return loadFirmwareFile(*resources, fileName, image, fileVersion);
}

std::wstring chooseFirmwareFile(const std::wstring& deviceId) {
  std::wstring model;
  std::wstring lic;
  StrUtils::GetIEEE1284KeyValue(deviceId, L"MDL", model);
  StrUtils::GetIEEE1284KeyValue(deviceId, L"LIC", lic);
  if (model.empty()) {
    logError("No printer model found; cannot match a firmware file without a model.");
    return std::wstring();
  }
  const std::wstring& fileName = Branding::getMatchingFirmwareFile(model, lic);
  if (fileName.empty()) logError("Could not find a firmware file to download.");
  return fileName;
}

std::set<std::wstring> firmwareFileNames() {
  if (Branding::sFirmwareSpecList.empty()) Branding::buildFirmwareSpecList();
  std::set<std::wstring> names;
  for (const auto& spec : Branding::sFirmwareSpecList) names.insert(spec.fileName);
  return names;
}

bool loadFirmwareFile(const path& directory, const std::wstring& name, platform::FileBytes& image,
                      unsigned int& fileVersion) {
  path file;
  std::uint32_t size = 0;
  if (!findFile(directory, name, file, size) || !readFile(file, size, image)) return false;
  fileVersion = extractVersionFromImage(image);
  return true;
}

unsigned int extractVersionFromIeee1284Id(const std::wstring& deviceId) {
  std::wstring value;
  if (!StrUtils::GetIEEE1284KeyValue(deviceId, L"FWVER", value)) return 0;
  const platform::Text version = platform::Text::fromWide(value);
  Log<5>() << "Firmware version in IEEE 1284 string: " << version << std::flush;
  return static_cast<unsigned int>(version.intValue());
}
