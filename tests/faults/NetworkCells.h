// The cells of an update over TCP: what the virtual printer is told to do wrong, and when.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Cell.h"

// What is wrong with neither printer nor connection.
enum class Surrounding {
  Sound,
  WithdrawnBefore,  // the announcement goes before Download is pressed
  WithdrawnAsked,   // while the user is asked
  Withdrawn,        // while one of the update's eight messages is under way
  Unreachable,      // nobody answers at the address
  NoDescriptors,    // the process may open nothing more
};

struct NetworkCell : Cell {
  Surrounding surrounding = Surrounding::Sound;
  std::size_t step = 0;  // of Withdrawn, 1 to 8

  std::vector<std::string> faults;  // of the virtual printer, in its first conversation
  std::vector<std::string> options;
  std::size_t firmwareSize = 28;

  // The program is held where its log ends in this text, until the printer's journal says `event`.
  // From there on each side only reacts, and the whole log is known. No event: it is not held.
  std::string heldAt;
  std::string event;

  // In which pieces the printer's bytes arrive is a matter of time: the log here does not say it.
  bool inAnyPieces = false;
};

const std::vector<NetworkCell>& networkCells();

// Those in which the network does badly what a network may do. They need a kernel that does so on
// purpose, as the one of the virtual machine.
struct PoorNetworkCell : NetworkCell {
  std::vector<std::string> conditions;  // as tc-netem(8) has them
};
const std::vector<PoorNetworkCell>& poorNetworkCells();

// Those in which fwupdatectl is ended while a printer is silent: all printers at a time.
std::vector<NetworkCell> interruptedCells(Verdict verdict);

// All but the lines that tell in which pieces bytes came.
Lines withoutArrivals(const Lines& lines);
