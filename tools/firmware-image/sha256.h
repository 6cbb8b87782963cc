// The fingerprint by which people compare two images.
#pragma once

#include <span>
#include <string>

// In lower-case hexadecimal, as sha256sum prints it.
std::string sha256(std::span<const char> bytes);
