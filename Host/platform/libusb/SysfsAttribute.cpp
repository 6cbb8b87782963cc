#include "platform/libusb/SysfsAttribute.h"

#include <fstream>
#include <string>
#include <system_error>

namespace platform {

Text readSysfsAttribute(const std::filesystem::path& directory, const char* attribute) {
  std::ifstream file(directory / attribute, std::ios::binary);
  std::string text;
  // Up to the end: the kernel cuts strings at a zero itself. Unlike an iterator over the stream,
  // this does not throw when the device goes between the opening and the reading.
  std::getline(file, text, '\0');
  if (file.bad() || !file.is_open()) return {};
  if (text.ends_with('\n')) text.pop_back();
  return Text::fromUtf8(text);
}

std::string readSysfsDriver(const std::filesystem::path& interface) {
  std::error_code none;
  return std::filesystem::read_symlink(interface / "driver", none).filename().string();
}

}  // namespace platform
