// What the kernel knows about a running process, read from /proc.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace bench {

struct ProcessState {
  // Throws std::runtime_error when there is no such process.
  static ProcessState of(pid_t process);

  double residentMiB = 0;
  double peakMiB = 0;          // the most that was ever resident
  double cpuMilliseconds = 0;  // of all its threads
  std::uint64_t wakeups = 0;   // times that a thread went to sleep of its own accord, likewise
};

}  // namespace bench
