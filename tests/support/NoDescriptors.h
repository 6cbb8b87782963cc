// For its own lifetime, the process may open nothing more. Where the sanitizers look on, they may:
// they ask by a pipe whether memory can be read.
#pragma once

#include <sys/resource.h>

class NoDescriptors {
 public:
  NoDescriptors();
  ~NoDescriptors();
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  rlimit mBefore{};
};
