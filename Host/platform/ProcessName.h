// What a process of this computer is called, as far as this user may know it. A program chooses its
// name itself, and the process may vanish meanwhile; neither is an error.
#pragma once

#include <filesystem>
#include <string>

namespace platform {

// Printable ASCII. Empty when there is no such process. `process` is its directory, "/proc/812".
std::string programName(const std::filesystem::path& process);

// "fwupdate (process 812)"; "another program" when the process has no name here.
std::string describeProcess(int process);

}  // namespace platform
