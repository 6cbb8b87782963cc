// Interfaces that the program has taken from the kernel's drivers, for the case that it ends
// without giving them back itself: by exit(), as a toolkit does that has lost its display, by
// abort(), or by a signal. The drivers then have them again, and the program ends as it would have.
// (A SIGKILL leaves no time for that; what it leaves is found at the next start.)
//
// One table for the process, as there is one end of it. At the end only system calls are made, no
// memory is allocated and nothing is freed, so that it may come at any moment.
#pragma once

#include <cstdint>

namespace platform {

// `node` is a descriptor of usbfs, which must stay open until the interface is dropped again. Where
// the table is full, the interface is not in it; it has room for more printers than a bus has
// places.
void giveBackAtExit(int node, std::uint8_t interface);
void dropFromExit(int node, std::uint8_t interface);

// Lets the kernel's driver have an interface that nobody has; does nothing to one that somebody
// has. May be called from a signal handler.
void connectKernelDriver(int node, std::uint8_t interface);

}  // namespace platform
