// Results of systemd's library: 0 or more, or a negated errno.
#pragma once

#include <system_error>

namespace platform {

// Throws std::system_error with `what` for a failure.
inline void checkSystemd(int result, const char* what) {
  if (result < 0) throw std::system_error(-result, std::generic_category(), what);
}

}  // namespace platform
