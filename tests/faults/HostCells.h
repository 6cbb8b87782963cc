// The cells in which a service of the computer fails while a printer on the network is updated: the
// system bus, the Avahi daemon on it, the system log.
#pragma once

#include <cstddef>
#include <vector>

#include "Cell.h"

enum class HostFault {
  BusStopped,
  BusRestarted,     // with what stands on it
  BusFrozen,        // it answers nobody
  DaemonStopped,    // of Avahi
  DaemonRestarted,  // and tells of the printer anew
  LogStopped,
  LogRestarted,
  LogFrozen,   // it reads nothing, and takes nothing more
  LogMissing,  // it is not there when the program starts, nor later
  LogLate,     // it is not there when the program starts
};

struct HostCell : Cell {
  HostFault fault = HostFault::BusStopped;
  std::size_t step = 0;  // of networkSteps()
};

const std::vector<HostCell>& hostCells();
