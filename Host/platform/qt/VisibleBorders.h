// Qt's own style, Fusion, which draws the borders of buttons, lists, fields and bars a little
// darker than the window: on a dark ground that does not show. Here a border stands out from its
// ground by 3 to 1 at least, as WCAG wants it, whatever the colors of the desktop. Other styles
// have borders of their own, and are left alone.
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace platform {

class VisibleBorders final : public QProxyStyle {
 public:
  // For the whole application, where Fusion is what the desktop gives it.
  static void install();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;

 private:
  VisibleBorders();
};

}  // namespace platform
