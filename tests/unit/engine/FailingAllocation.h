// Replaces the allocation of the program that it is linked into with one that can be made to fail.
#pragma once

#include <cstddef>

// The next allocation of exactly this size throws std::bad_alloc.
void failNextAllocationOf(std::size_t size);
