// The eight steps of an update over USB, each a transfer or several, and what is logged of them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Cell.h"

struct UsbStep {
  const char* during;  // in words
  const char* before;
  const char* name;  // the message, as the printer calls it; null when the printer speaks
  const char* call;
  int milliseconds;       // that the program waits
  Lines begun;            // what is logged when it begins
  const char* untouched;  // where the printer stands when nothing of it has arrived
  const char* halfway;    // when half of it has
  Afterwards afterwards;  // what it is like then
};

// Of step N at N - 1.
const std::vector<UsbStep>& usbSteps();

inline const Lines kUsbTransportGone{"5 Cleaning up USB transport."};

// What comes in, in one packet and wholly asked for.
Lines packet(int bytes);

// What is logged when the printer's answer to a step is in.
Lines answered(std::size_t step);

// The log up to where a step has begun.
Lines upTo(std::size_t step);
