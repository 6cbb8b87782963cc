#include "platform/Assertion.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

void assertionFailed(const char* expression, const char* function, const char* file,
                     int line) noexcept {
  (void)std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n", expression,
                     function, file, line);
  (void)std::fflush(stderr);
  std::abort();
}

}  // namespace platform
