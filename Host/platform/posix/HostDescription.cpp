#include "platform/posix/HostDescription.h"

#include <sys/utsname.h>

#include <cstdlib>
#include <fstream>

namespace platform {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// Empty when the file does not have it. Something else than a file could keep us waiting.
std::string distributionIn(const std::filesystem::path& osRelease) {
  constexpr std::string_view kKey = "PRETTY_NAME=";
  std::error_code none;
  if (!std::filesystem::is_regular_file(osRelease, none)) return {};
  std::ifstream file(osRelease);
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kKey)) continue;
    line.erase(0, kKey.size());
    if (line.size() >= 2 && line.front() == line.back() && (line[0] == '"' || line[0] == '\'')) {
      line = line.substr(1, line.size() - 2);
    }
    return line;
  }
  return {};
}

}  // namespace

std::vector<std::string> describeHost(const std::filesystem::path& osRelease) {
  std::vector<std::string> lines;
  const std::string distribution = distributionIn(osRelease);
  lines.push_back(distribution.empty() ? "distribution unknown" : distribution);
  utsname host{};
  if (uname(&host) == 0) {
    lines.push_back(std::string(host.sysname) + ' ' + host.release + ' ' + host.machine);
  }
  return lines;
}

PersonalNames personalNames() {
  utsname host{};
  const bool isKnown = uname(&host) == 0;
  return {variable("HOME"), variable("USER"), isKnown ? host.nodename : ""};
}

}  // namespace platform
