#include "Figures.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace bench {

double median(Samples samples) {
  std::sort(samples.begin(), samples.end());
  const std::size_t middle = samples.size() / 2;
  return samples.size() % 2 == 1 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

void printHeading(const std::string& text) {
  std::printf("\n%-56s %9s %9s %9s\n", text.c_str(), "median", "least", "most");
  std::fflush(stdout);
}

void printFigure(const std::string& name, const Samples& samples, const std::string& unit,
                 const std::string& aim) {
  const auto [least, most] = std::minmax_element(samples.begin(), samples.end());
  std::printf("  %-54s %9.1f %9.1f %9.1f %-4s%s%s\n", name.c_str(), median(samples), *least, *most,
              unit.c_str(), aim.empty() ? "" : "  aim: ", aim.c_str());
  std::fflush(stdout);
}

}  // namespace bench
