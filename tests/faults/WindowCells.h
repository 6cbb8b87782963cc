// The cells in which the window program as it is installed is ended, asked for a second download,
// or loses a service of the computer, while it updates a network printer: a process of its own on a
// desktop of its own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Cell.h"

enum class WindowFault {
  Closed,           // by the main window's own button, and that is meant
  QuitByMenu,       // by the mouse, and that is meant
  QuitByKey,        // while it sends, when nothing is asked
  Terminated,       // SIGTERM
  Killed,           // SIGKILL
  AnotherDownload,  // by every button, menu entry and key there is
  BusEnds,          // the system's, and the Avahi daemon with it
  DaemonEnds,       // of Avahi
  DaemonRestarts,
};

struct WindowCell : Cell {
  WindowFault fault = WindowFault::Closed;
  std::vector<std::string> faults;  // of the virtual printer, in its first conversation
  std::size_t firmwareSize = 28;
  int exitStatus = 0;
};

const std::vector<WindowCell>& windowCells();

// What a log says of the update itself, without the priorities: neither in which pieces bytes came,
// nor what becomes of the list meanwhile.
Lines ofTheUpdate(const Lines& log);
