// Takes out of a text what is about a person or one machine: the home directory, the names of the
// user and of this computer, serial numbers that the text itself names as such, and hardware
// addresses. What is left is for others to read.
#pragma once

#include <string>

namespace platform {

// Each may be empty, and then hides nothing.
struct PersonalNames {
  std::string home;
  std::string user;
  std::string computer;
};

// Whole words only, so that a user named "lp" takes nothing out of "help".
std::string redacted(const std::string& text, const PersonalNames& names);

}  // namespace platform
