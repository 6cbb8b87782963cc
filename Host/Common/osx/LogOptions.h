// Opens the system log under the program's name for as long as it lives. main() makes one before
// anything else is logged.
#pragma once

#include <string>

class LogOptions {
 public:
  // Under the executable's name, at most 32 characters and 32 bytes of it; with `mirror`, entries
  // also go to standard error. Where the name cannot be found out, the log is not opened, and the
  // host chooses the identity.
  explicit LogOptions(bool mirror);

  // Under the identity that was given the first time in this process: the host keeps a pointer to
  // it. `options` is passed on.
  LogOptions(const std::string& identity, int options);

  ~LogOptions();

  LogOptions(const LogOptions&) = delete;
  LogOptions& operator=(const LogOptions&) = delete;
};
