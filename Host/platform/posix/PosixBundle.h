// The installed program as the file system shows it.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/Bundle.h"

namespace platform {

// The bundle of the running executable.
std::unique_ptr<Bundle> makePosixBundle();

// The bundle of another executable; an empty path is one that could not be found out.
std::unique_ptr<Bundle> makePosixBundle(std::filesystem::path executable);

}  // namespace platform
