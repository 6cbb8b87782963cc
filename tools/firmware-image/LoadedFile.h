// A firmware file as the updater takes it: loaded by the updater's own code, so that what is said
// about the file is what the updater does with it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/FileBytes.h"

struct LoadedFile {
  std::uint64_t size = 0;             // of the file
  platform::FileBytes image;          // what a printer would get of it
  unsigned int version = 0;           // 0 when the platform ID is malformed
  std::vector<std::string> problems;  // what is wrong with the platform ID, in the updater's words
};

// Throws std::runtime_error, with the reason in the updater's words, when the updater cannot load
// the file.
LoadedFile loadAsTheUpdater(const std::string& path);
