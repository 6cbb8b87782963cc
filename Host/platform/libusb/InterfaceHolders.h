// Who has a USB interface that this program cannot have: the kernel says which driver, and
// /proc/PID/fd which programs have the device open, as far as this user may read it. Knows no
// library; what it reads may be forged, vanish while it is read, or not be readable at all, and
// that is no error.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct InterfaceHolder {
  enum class Kind { KernelDriver, Program, UnknownProgram };

  Kind kind;
  std::string name;  // printable ASCII; empty for an unknown program
  int process;       // of a program, or 0
};

// `interface` is the interface's directory in sysfs, `node` the device's node. All programs that
// have the device open, since the kernel does not tell which of them has the interface; but at most
// three, and not this one. One that is unknown where none can be found within `limit`.
std::vector<InterfaceHolder> findInterfaceHolders(const std::filesystem::path& interface,
                                                  std::string_view node,
                                                  std::chrono::milliseconds limit,
                                                  const std::filesystem::path& processes = "/proc");

// A sentence for the log.
std::string describe(const InterfaceHolder& holder);

}  // namespace platform
