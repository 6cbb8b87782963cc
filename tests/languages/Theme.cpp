#include "Theme.h"

#include <algorithm>
#include <cmath>

namespace {

QPalette paletteOf(const QColor& window, const QColor& base, const QColor& button,
                   const QColor& text, const QColor& highlight, const QColor& highlighted) {
  QPalette palette(button, window);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    palette.setColor(role, text);
  }
  QColor faint = text;
  faint.setAlphaF(0.6F);
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, highlighted);
  palette.setColor(QPalette::Link, highlight);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    QColor disabled = text;
    disabled.setAlphaF(0.5F);
    palette.setColor(QPalette::Disabled, role, disabled);
  }
  return palette;
}

double luminance(const QColor& colour) {
  const auto linear = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

QColor over(const QColor& ground, const QColor& colour) {
  const double share = colour.alphaF();
  const auto mix = [share](double below, double above) {
    return static_cast<float>(below * (1 - share) + above * share);
  };
  return QColor::fromRgbF(mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()),
                          mix(ground.blueF(), colour.blueF()));
}

}  // namespace

QPalette coloursOf(Theme theme) {
  switch (theme) {
    case Theme::Light:
      return paletteOf({239, 240, 241}, {255, 255, 255}, {247, 247, 248}, {35, 38, 41},
                       {38, 104, 168}, {255, 255, 255});
    case Theme::Dark:
      return paletteOf({35, 38, 41}, {27, 30, 32}, {49, 54, 59}, {252, 252, 252}, {38, 104, 168},
                       {255, 255, 255});
    case Theme::HighContrast:
      return paletteOf({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {255, 255, 255}, {255, 255, 0}, {0, 0, 0});
  }
  return {};
}

double contrast(const QColor& text, const QColor& ground) {
  const double one = luminance(over(ground, text));
  const double other = luminance(ground);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}
