// The cells in which the connection holds and the printer's answers are late, cut, too long or
// wrong.
#pragma once

#include <vector>

#include "NetworkCells.h"

std::vector<NetworkCell> replyCells();
