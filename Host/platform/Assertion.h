// Assertions that stay active in the shipped program. A failed one prints
//   Assertion failed: (EXPRESSION), function FUNCTION, file PATH, line N.
// on standard error and aborts.
#pragma once

namespace platform {

[[noreturn]] void assertionFailed(const char* expression, const char* function, const char* file,
                                  int line) noexcept;

// For assertions whose place is part of the message that support staff know.
inline void assertAt(bool holds, const char* expression, const char* function, const char* file,
                     int line) noexcept {
  if (!holds) assertionFailed(expression, function, file, line);
}

}  // namespace platform
