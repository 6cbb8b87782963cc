#include "platform/libusb/InterfaceHolders.h"

#include <dirent.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/ProcessName.h"
#include "platform/libusb/SysfsAttribute.h"

namespace fs = std::filesystem;

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

constexpr std::size_t kMaxPrograms = 3;

// A process's number; nothing for the other things in /proc.
std::optional<int> processNumber(const std::string& name) {
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto [stop, error] = std::from_chars(name.data(), end, number);
  if (error != std::errc() || stop != end || number <= 0) return std::nullopt;
  return number;
}

// Whether the process has the node open. Links only are read, never what they lead to, which may be
// on a file server that does not answer.
bool hasOpen(const fs::path& process, std::string_view node, Clock::time_point deadline) {
  const Directory descriptors(opendir((process / "fd").c_str()));
  if (!descriptors) return false;
  std::array<char, 64> file;  // more than a node's name needs
  while (const dirent* const each = readdir(descriptors.get())) {
    const ssize_t size =
        readlinkat(dirfd(descriptors.get()), each->d_name, file.data(), file.size());
    if (size > 0 && std::string_view(file.data(), static_cast<std::size_t>(size)) == node) {
      return true;
    }
    if (Clock::now() >= deadline) return false;
  }
  return false;
}

std::vector<InterfaceHolder> findPrograms(std::string_view node, const fs::path& processes,
                                          Clock::time_point deadline) {
  std::vector<InterfaceHolder> found;
  std::error_code error;
  fs::directory_iterator entry(processes, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (found.size() == kMaxPrograms || Clock::now() >= deadline) break;
    const std::optional<int> number = processNumber(entry->path().filename().string());
    if (!number || *number == getpid() || !hasOpen(entry->path(), node, deadline)) continue;
    const std::string name = programName(entry->path());
    if (!name.empty()) found.push_back({InterfaceHolder::Kind::Program, name, *number});
  }
  return found;
}

}  // namespace

std::vector<InterfaceHolder> findInterfaceHolders(const fs::path& interface, std::string_view node,
                                                  std::chrono::milliseconds limit,
                                                  const fs::path& processes) {
  const std::string driver = readSysfsDriver(interface);
  if (!driver.empty() && driver != kUserSpaceDriver) {
    return {{InterfaceHolder::Kind::KernelDriver, driver, 0}};
  }
  std::vector<InterfaceHolder> found = findPrograms(node, processes, Clock::now() + limit);
  if (found.empty()) found.push_back({InterfaceHolder::Kind::UnknownProgram, "", 0});
  return found;
}

std::string describe(const InterfaceHolder& holder) {
  const std::string start = "The printer's interface is in use by ";
  switch (holder.kind) {
    case InterfaceHolder::Kind::KernelDriver:
      return start + "the kernel driver " + holder.name + ".";
    case InterfaceHolder::Kind::Program:
      return start + holder.name + " (process " + std::to_string(holder.process) + ").";
    default:
      return start + "another program.";
  }
}

}  // namespace platform
