// One cell of the fault matrix: something that goes wrong at one point of an update, and all that
// comes of it. Tests hold the program to it, and docs/fault-matrix.md is written from it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// How the update ends, as the program sees it.
enum class Verdict {
  Updated,
  UpToDate,
  Failed,
  Waits,        // it does not end; the user quits
  Aborts,       // the program ends itself by an assertion
  NotStarted,   // nothing begins
  Quits,        // the user quits meanwhile
  Interrupted,  // fwupdatectl is told to end
  Killed,       // the program is ended by SIGKILL
};

// What the printer is like afterwards.
enum class Afterwards {
  Untouched,    // nothing that it understands has reached it
  Asked,        // it was asked what it is, and no more
  Unfinished,   // it has part of the firmware, or all but its end, and drops that
  Refusing,     // it has everything, and did not take it
  Unannounced,  // it has the new firmware, and the program does not know
  Updated,
};

struct Cell {
  std::string table;  // the section of the document
  std::string when;
  std::string what;
  Verdict verdict = Verdict::Updated;
  Afterwards afterwards = Afterwards::Updated;
  Lines log;  // "PRIORITY TEXT", from the start of the update to its end

  // Where the conversation stood when it ended, as the printer saw it. Empty: there was none.
  std::string position;

  std::string assertion;  // on standard error, when it aborts
};

std::string nameOf(const Cell& cell);
