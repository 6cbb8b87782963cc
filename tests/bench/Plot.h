// A picture of how a figure grows with a number: lines over linear axes that start at 0, as SVG.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct Point {
  double x = 0;
  double y = 0;
  bool isLimit = false;  // the figure is greater: drawn as a ring
};

struct Line {
  std::string name;
  std::vector<Point> points;
};

struct Plot {
  std::string title;
  std::string xTitle;
  std::vector<Line> lines;
};

// The plots below each other. Throws std::runtime_error when the file cannot be written.
void writePlots(const std::string& file, const std::vector<Plot>& plots);

}  // namespace bench
