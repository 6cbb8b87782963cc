// A line of text in a label, where a printer may have chosen part of it.
#pragma once

#include <QLabel>
#include <QString>

namespace platform {

// Whether it may be longer than a line of the label has room for.
bool isLongWord(const QString& word, const QLabel& label);

// As plain text, made legible; "NAME (ADDRESS)" with the two isolated from each other, and words
// that are too long for a line breakable. Assistive technology gets the line without these marks.
void showLine(QLabel& label, const QString& line);

}  // namespace platform
