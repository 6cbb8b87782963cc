// Widths are counted in ems, the size of a font, so that they grow with it and are the same in all
// scripts: an average character is twice as wide in a Chinese font as in a Latin one.
#pragma once

#include <QFontInfo>
#include <QWidget>

namespace platform {

inline int emOf(const QWidget& widget) { return widget.fontInfo().pixelSize(); }

}  // namespace platform
