// Firmware files on disk, whole. Failures throw std::runtime_error with a text for the user.
#pragma once

#include <string>
#include <vector>

std::vector<char> readImageFile(const std::string& path);

// Leaves no incomplete file behind.
void writeImageFile(const std::string& path, const std::vector<char>& image);
