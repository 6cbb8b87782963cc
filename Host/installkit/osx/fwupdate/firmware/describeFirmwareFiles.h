// The firmware files that the program comes with, a line each, for a report to whoever helps:
// whether they are there, how long they are, and their versions. Only the end of each file is read,
// since that takes no time. Used by main().
#pragma once

#include <filesystem>
#include <string>
#include <vector>

std::vector<std::string> describeFirmwareFiles(const std::filesystem::path& directory);
