#include "platform/qt/ProgressBar.h"

#include <QStyleOptionProgressBar>
#include <algorithm>

namespace platform {
namespace {

constexpr int kToldSteps = 10;
constexpr int kDrawnSteps = 10000;

}  // namespace

void ProgressBar::showBusy() {
  mPart = -1;
  setRange(0, 0);
}

void ProgressBar::showPart(double part) {
  mPart = std::clamp(part, 0.0, 1.0);
  setRange(0, kToldSteps);
  setValue(static_cast<int>(mPart * kToldSteps));
  update();
}

void ProgressBar::initStyleOption(QStyleOptionProgressBar* option) const {
  QProgressBar::initStyleOption(option);
  if (mPart < 0) return;
  option->maximum = kDrawnSteps;
  option->progress = static_cast<int>(mPart * kDrawnSteps);
}

}  // namespace platform
