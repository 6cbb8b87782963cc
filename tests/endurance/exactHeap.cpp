#include "exactHeap.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

void restartWithExactHeap(char** argv) {
  constexpr const char* kTunables = "GLIBC_TUNABLES";
  if (std::getenv(kTunables) != nullptr) return;
  setenv(kTunables, "glibc.malloc.tcache_count=0", 1);
  execv("/proc/self/exe", argv);
  std::perror("/proc/self/exe");
  std::_Exit(EXIT_FAILURE);
}
