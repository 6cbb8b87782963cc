// The cells of an update over USB that goes through a kernel: its bus, its drivers and libusb are
// the real ones, in a virtual machine, and the printer is a process of its own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Cell.h"

enum class KernelFault {
  OfThePrinter,      // `faults` are all that is wrong
  Pulled,            // the plug is pulled when `step` has begun; 0: before Download is pressed
  PulledUnnoticed,   // as Download is pressed, which the program has not heard of yet
  Quit,              // the user chooses Quit when `step` has begun
  ClaimedElsewhere,  // another program has the printer's interface
  ClaimedMeanwhile,  // another program takes it between two updates
  NotPermitted,      // the user has no right on the device
  ConfiguredLate,    // the system configures the device when the update has failed
};

struct KernelUsbCell : Cell {
  KernelFault fault = KernelFault::OfThePrinter;
  std::vector<std::string> faults;  // of the virtual printer, in its first conversation
  std::size_t firmwareSize = 28;
  unsigned burnSeconds = 0;

  // The program is held when this step of the update has begun, until the printer's journal says
  // `event`. From there on each side only reacts, and the whole log is known. No event: it is not
  // held.
  std::size_t step = 0;
  std::string event;

  // It does not return by itself, or is not the same printer when it does.
  bool needsAnotherPrinter() const;
};

const std::vector<KernelUsbCell>& kernelUsbCells();

// A log without what is a matter of chance: when the list hears of the end of a device, which call
// of the update meets it, and the number of a process.
Lines withoutChance(const Lines& log);
