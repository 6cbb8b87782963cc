// Whether a program of this computer has the lock of the printer at that port of this computer.
#pragma once

#include <cstdint>

bool isLocked(std::uint16_t port);
