// Attributes of a device in sysfs, which everybody may read. They come and go with the device, so
// that reading one can fail at any moment.
#pragma once

#include <filesystem>

#include "platform/Text.h"

namespace platform {

// The attribute's text without the line end; null when there is none, as for a string that the
// device lacks, when it cannot be read, or when it is not UTF-8.
Text readSysfsAttribute(const std::filesystem::path& directory, const char* attribute);

}  // namespace platform
