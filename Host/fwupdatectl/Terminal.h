// What the terminal at a descriptor can show, if there is one.
#pragma once

#include <cstddef>
#include <string>

// One on which the cursor can be moved, and colors be set.
bool isCapableTerminal(int descriptor);

struct TerminalSize {
  std::size_t rows = 24;
  std::size_t columns = 80;
};

// As it is now. A terminal that does not know its own has the size of the first ones.
TerminalSize sizeOfTerminal(int descriptor);

// Whether the terminal is this program's: not while it runs in the background of a shell.
bool isInForeground(int descriptor);

// Colors for what went well and what did not. None where nobody sees them, and where the
// environment asks for none: NO_COLOR with any value but the empty one.
class Paint {
 public:
  // For what is written to `descriptor`.
  explicit Paint(int descriptor);

  std::string good(const std::string& text) const { return in("32", text); }
  std::string bad(const std::string& text) const { return in("31", text); }

 private:
  std::string in(const char* color, const std::string& text) const;

  bool mIsOn;
};
