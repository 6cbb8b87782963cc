// The cells in which nothing is wrong with printer or connection, but with what surrounds them: the
// announcement that goes, an address that nobody has, a process that may open nothing.
#pragma once

#include <vector>

#include "NetworkCells.h"

std::vector<NetworkCell> surroundingCells();
