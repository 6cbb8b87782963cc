#include "platform/qt/VisibleBorders.h"

#include <QApplication>
#include <QStyleOption>
#include <algorithm>
#include <cmath>
#include <optional>

namespace platform {
namespace {

constexpr char kFusion[] = "fusion";
constexpr double kVisible = 4;  // of which smoothing takes its part

// As WCAG defines it.
double luminance(const QColor& color) {
  const auto linear = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& ground, const QColor& text, float share) {
  const auto mix = [share](float one, float other) { return one + (other - one) * share; };
  return QColor::fromRgbF(mix(ground.redF(), text.redF()), mix(ground.greenF(), text.greenF()),
                          mix(ground.blueF(), text.blueF()));
}

// With as little of the text's color as makes it stand out from the window and from the ground of
// lists and fields.
QColor visible(const QColor& color, const QPalette& palette) {
  const auto of = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
  for (int twentieths = 0; twentieths < 20; ++twentieths) {
    const QColor mix = mixed(color, of(QPalette::WindowText), static_cast<float>(twentieths) / 20);
    const double least =
        std::min(contrast(mix, of(QPalette::Window)), contrast(mix, of(QPalette::Base)));
    if (least >= kVisible) return mix;
  }
  return of(QPalette::WindowText);
}

// Fusion's border is the window's color, darkened by so many per cent; that of the default button
// and of what has the keyboard is the color of selections, darkened by 25.
template <typename Option>
std::optional<Option> withBorder(const QStyleOption* option, int darkened) {
  const auto* const known = qstyleoption_cast<const Option*>(option);
  if (known == nullptr) return std::nullopt;
  const QPalette& palette = known->palette;
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
  Option changed = *known;
  changed.palette.setColor(QPalette::Window,
                           visible(window.darker(darkened), palette).lighter(darkened));
  changed.palette.setColor(QPalette::Highlight,
                           visible(highlight.darker(125), palette).lighter(125));
  return changed;
}

}  // namespace

VisibleBorders::VisibleBorders() : QProxyStyle(QString::fromLatin1(kFusion)) {}

void VisibleBorders::install() {
  if (QApplication::style()->name() == QLatin1String(kFusion)) {
    QApplication::setStyle(new VisibleBorders);
  }
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it is the application's now

void VisibleBorders::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
  const auto draw = [&](const auto& changed) {
    QProxyStyle::drawPrimitive(element, changed ? &*changed : option, painter, widget);
  };
  switch (element) {
    case PE_PanelButtonCommand:
      return draw(withBorder<QStyleOptionButton>(option, 140));
    case PE_FrameLineEdit:
      return draw(withBorder<QStyleOptionFrame>(option, 140));
    case PE_Frame:
      return draw(withBorder<QStyleOptionFrame>(option, 130));
    case PE_PanelMenu:
      return draw(withBorder<QStyleOption>(option, 160));
    default:
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void VisibleBorders::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  std::optional<QStyleOptionProgressBar> changed;
  if (element == CE_ProgressBarGroove) changed = withBorder<QStyleOptionProgressBar>(option, 140);
  QProxyStyle::drawControl(element, changed ? &*changed : option, painter, widget);
}

void VisibleBorders::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const {
  std::optional<QStyleOptionSlider> changed;
  if (control == CC_ScrollBar) changed = withBorder<QStyleOptionSlider>(option, 140);
  QProxyStyle::drawComplexControl(control, changed ? &*changed : option, painter, widget);
}

}  // namespace platform
