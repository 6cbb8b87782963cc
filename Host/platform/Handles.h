// References to what the toolkit owns. A reference whose object is gone is harmless: the operation
// that gets it fails.
#pragma once

#include <cstdint>

namespace platform {

enum class NibRef : std::uint64_t { None = 0 };
enum class WindowRef : std::uint64_t { None = 0 };
enum class ControlRef : std::uint64_t { None = 0 };

}  // namespace platform
