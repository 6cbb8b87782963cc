// Colours of a desktop.
#pragma once

#include <QColor>
#include <QPalette>

enum class Theme { Light, Dark, HighContrast };

// To be set for the whole application.
QPalette coloursOf(Theme theme);

// How far the brightness of a text is from what is behind it, from 1 to 21; 4.5 reads well.
double contrast(const QColor& text, const QColor& ground);
