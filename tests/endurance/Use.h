// What this process has of the machine at a moment.
#pragma once

#include <cstddef>

struct Use {
  static Use now();

  std::size_t heap = 0;      // bytes that were allocated and not freed
  std::size_t resident = 0;  // bytes of memory, whatever for
  std::size_t descriptors = 0;
  std::size_t threads = 0;
  double cpuSeconds = 0;  // since the process began
};
