#include "NoDescriptors.h"

#include <unistd.h>

namespace {

rlimit descriptorLimit() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  return limit;
}

}  // namespace

NoDescriptors::NoDescriptors() : mBefore(descriptorLimit()) {
  const rlimit none{0, mBefore.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
}

NoDescriptors::~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &mBefore); }

#ifdef __SANITIZE_ADDRESS__
// In the place of the C library's, for the sanitizers: the program makes its pipes by pipe2(2).
extern "C" int pipe(int* ends) noexcept {
  const rlimit now = descriptorLimit();
  const rlimit all{now.rlim_max, now.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &all);
  const int result = ::pipe2(ends, 0);
  ::setrlimit(RLIMIT_NOFILE, &now);
  return result;
}
#endif
