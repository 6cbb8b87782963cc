// The check of the firmware files: whether each that a printer may get is there, and sound.
#pragma once

#include <filesystem>
#include <optional>

#include "Finding.h"

// Loads each as a download does. `directory` is none where the program does not find its own files.
Findings checkFirmware(const std::optional<std::filesystem::path>& directory);
