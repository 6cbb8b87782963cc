// The steps of an update over TCP: what comes before its first message, and each of the eight
// messages until it is over; and what is logged of them when all goes well, but for the arrival of
// bytes, in whatever pieces they come.
#pragma once

#include <cstddef>
#include <vector>

#include "Cell.h"

inline const Lines kNetworkPrinterChosen{
    "5 Downloading firmware to Bonjour printer: Office(127.0.0.1)"};

struct NetworkStep {
  const char* during;  // in words
  Lines log;           // up to where the next one is under way
};

// The one that begins with Download, and then the eight messages.
const std::vector<NetworkStep>& networkSteps();

// A good update, with `inserted` where `step` is under way.
Lines goodUpdate(std::size_t step, const Lines& inserted);
