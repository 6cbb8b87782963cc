// The machine and its user, as far as the host's C library and environment tell. Nobody is asked
// who could take long, as a directory of users on the network.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Redaction.h"

namespace platform {

// Distribution and kernel, a line each. `osRelease` is a file in the format of os-release(5).
std::vector<std::string> describeHost(const std::filesystem::path& osRelease = "/etc/os-release");

PersonalNames personalNames();

}  // namespace platform
