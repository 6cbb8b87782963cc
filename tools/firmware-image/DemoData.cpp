#include "DemoData.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view kNotice =
    "DEMONSTRATION IMAGE, NOT REAL FIRMWARE. Made to show and to test the firmware updater; what\n"
    "follows is noise. A printer that burns it cannot work.\n";

// SplitMix64: short, and the same on every machine.
std::uint64_t nextNoise(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15u;
  std::uint64_t noise = state;
  noise = (noise ^ (noise >> 30)) * 0xBF58476D1CE4E5B9u;
  noise = (noise ^ (noise >> 27)) * 0x94D049BB133111EBu;
  return noise ^ (noise >> 31);
}

}  // namespace

std::vector<char> makeDemoData(std::size_t size, std::uint64_t seed) {
  std::vector<char> data(size);
  const auto noiseBegin =
      std::copy_n(kNotice.begin(), std::min(size, kNotice.size()), data.begin());
  std::generate(noiseBegin, data.end(), [&] { return static_cast<char>(nextNoise(seed) >> 56); });
  return data;
}
