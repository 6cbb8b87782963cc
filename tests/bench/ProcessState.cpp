#include "ProcessState.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

// The number behind "KEY:" in a status file.
std::uint64_t numberIn(const std::filesystem::path& status, const std::string& key) {
  std::ifstream file(status);
  for (std::string word; file >> word;) {
    std::uint64_t number = 0;
    if (word == key + ":" && file >> number) return number;
  }
  throw std::runtime_error("no " + key + " in " + status.string());
}

// The first number of schedstat is the time on a processor in nanoseconds.
double cpuMillisecondsOf(const std::filesystem::path& thread) {
  std::ifstream file(thread / "schedstat");
  double nanoseconds = 0;
  if (!(file >> nanoseconds))
    throw std::runtime_error("cannot read schedstat of " + thread.string());
  return nanoseconds / 1e6;
}

}  // namespace

ProcessState ProcessState::of(pid_t process) {
  const auto directory = std::filesystem::path("/proc") / std::to_string(process);
  ProcessState state;
  state.residentMiB = static_cast<double>(numberIn(directory / "status", "VmRSS")) / 1024;
  state.peakMiB = static_cast<double>(numberIn(directory / "status", "VmHWM")) / 1024;
  for (const auto& thread : std::filesystem::directory_iterator(directory / "task")) {
    state.cpuMilliseconds += cpuMillisecondsOf(thread.path());
    state.wakeups += numberIn(thread.path() / "status", "voluntary_ctxt_switches");
  }
  return state;
}

}  // namespace bench
