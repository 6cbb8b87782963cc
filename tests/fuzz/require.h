// What has to hold whatever the input is: ends the fuzzer when it does not, which is how it finds.
#pragma once

#include <cstdlib>

inline void require(bool holds) {
  if (!holds) std::abort();
}
