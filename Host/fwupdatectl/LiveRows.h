// The last rows of what a program writes to a terminal, drawn again in place as they change.
//
// The cursor rests at the start of the first one. A terminal that changes its size may break rows
// in two, join them or push them off its screen, but it keeps the cursor with the place that it
// stands at: what is below can be erased by whoever does not know how high it has become.
#pragma once

#include <ostream>
#include <string>
#include <vector>

class LiveRows {
 public:
  explicit LiveRows(std::ostream& terminal) : mTerminal(terminal) {}

  // In the place of the last ones. Not more rows than the terminal has. What is too long for a row
  // ends with it.
  void draw(const std::vector<std::string>& rows);

  // Leaves the cursor at the start of an empty row.
  void erase();

 private:
  std::ostream& mTerminal;
  std::string mDrawn;
};
