// How the measurements are told: under a heading one line for each figure, with the median of its
// samples, the least and the greatest of them, and what is aimed at. Nothing is asserted.
#pragma once

#include <string>
#include <vector>

namespace bench {

using Samples = std::vector<double>;

// Of the middle two the mean. There must be samples.
double median(Samples samples);

void printHeading(const std::string& text);

// `aim` is empty for a figure that others are compared with.
void printFigure(const std::string& name, const Samples& samples, const std::string& unit,
                 const std::string& aim = "");

}  // namespace bench
