#include "Plot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

constexpr double kWidth = 760;
constexpr double kHeight = 380;
constexpr double kLeft = 60;
constexpr double kRight = 500;
constexpr double kTop = 40;
constexpr double kBottom = 330;
constexpr int kStepsMost = 5;

constexpr const char* kColours[] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                                    "#e69f00", "#56b4e9", "#000000", "#999999"};

// The least round number of which few steps cover everything.
double roundStep(double most) {
  const double least = std::max(most, 1e-3) / kStepsMost;
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 2.5, 5.0}) {
    if (factor * power >= least * 0.999999) return factor * power;
  }
  return 10 * power;
}

class Drawing {
 public:
  Drawing(std::ofstream& out, const Plot& plot, double top) : mOut(out), mPlot(plot), mTop(top) {
    double mostX = 0;
    double mostY = 0;
    for (const Line& line : plot.lines) {
      for (const Point& point : line.points) {
        mostX = std::max(mostX, point.x);
        mostY = std::max(mostY, point.y);
      }
    }
    mStepX = roundStep(mostX);
    mStepY = roundStep(mostY);
    mEndX = mStepX * std::ceil(mostX / mStepX);
    mEndY = mStepY * std::ceil(mostY / mStepY);
  }

  void draw() {
    text(kLeft, kTop - 16, mPlot.title, "start", "bold");
    text((kLeft + kRight) / 2, kBottom + 36, mPlot.xTitle, "middle");
    for (int line = 0; line * mStepY <= mEndY; ++line) {
      const double y = line * mStepY;
      stroke("<path d='M" + number(kLeft) + " " + number(toY(y)) + "H" + number(kRight) +
             "' stroke='#ddd'/>");
      text(kLeft - 8, toY(y) - mTop + 4, number(y), "end");
    }
    for (int mark = 0; mark * mStepX <= mEndX; ++mark) {
      const double x = mark * mStepX;
      text(toX(x), kBottom + 18, number(x), "middle");
    }
    stroke("<path d='M" + number(kLeft) + " " + number(mTop + kTop) + "V" + number(mTop + kBottom) +
           "H" + number(kRight) + "' stroke='#000' fill='none'/>");
    for (std::size_t i = 0; i < mPlot.lines.size(); ++i) {
      drawLine(mPlot.lines[i], kColours[i % std::size(kColours)], 20 * static_cast<double>(i));
    }
  }

 private:
  void drawLine(const Line& line, const std::string& colour, double legend) {
    std::string path;
    for (const Point& point : line.points) {
      path += (path.empty() ? "M" : "L") + number(toX(point.x)) + " " + number(toY(point.y));
    }
    stroke("<path d='" + path + "' stroke='" + colour + "' stroke-width='2' fill='none'/>");
    for (const Point& point : line.points) {
      stroke("<circle cx='" + number(toX(point.x)) + "' cy='" + number(toY(point.y)) +
             "' r='4' stroke='" + colour + "' fill='" + (point.isLimit ? "#fff" : colour) + "'/>");
    }
    const double y = mTop + kTop + 10 + legend;
    stroke("<path d='M" + number(kRight + 20) + " " + number(y) + "h20' stroke='" + colour +
           "' stroke-width='2'/>");
    text(kRight + 46, y - mTop + 4, line.name, "start");
  }

  double toX(double x) const { return kLeft + (kRight - kLeft) * x / mEndX; }
  double toY(double y) const { return mTop + kBottom - (kBottom - kTop) * y / mEndY; }

  static std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
  }

  void text(double x, double y, const std::string& words, const char* anchor,
            const char* weight = "normal") {
    mOut << "<text x='" << number(x) << "' y='" << number(mTop + y) << "' text-anchor='" << anchor
         << "' font-weight='" << weight << "'>" << words << "</text>\n";
  }

  void stroke(const std::string& element) { mOut << element << '\n'; }

  std::ofstream& mOut;
  const Plot& mPlot;
  const double mTop;
  double mStepX = 1;
  double mStepY = 1;
  double mEndX = 1;
  double mEndY = 1;
};

}  // namespace

void writePlots(const std::string& file, const std::vector<Plot>& plots) {
  std::ofstream out(file);
  const double height = kHeight * static_cast<double>(plots.size());
  out << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << kWidth << ' ' << height
      << "' font-family='sans-serif' font-size='12'>\n<rect width='100%' height='100%' "
         "fill='#fff'/>\n";
  double top = 0;
  for (const Plot& plot : plots) {
    Drawing(out, plot, top).draw();
    top += kHeight;
  }
  out << "</svg>\n";
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

}  // namespace bench
