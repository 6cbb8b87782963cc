// Bytes that stand for firmware where there is none. They begin with a notice that says so, for
// whoever opens the file, and go on with noise, so that a byte lost or doubled on the way shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The same size and seed always give the same bytes.
std::vector<char> makeDemoData(std::size_t size, std::uint64_t seed);
