// Makes windows from Qt Designer files. Besides what the files say themselves, it reads these
// dynamic properties:
//   "controlSignature", "controlId"   the ID by which code finds a control
//   "command"                         the command that a button or an action issues
//   "picture"                         on a label: the name of one of the program's pictures
//   "quitQuestion"                    on a sheet: the one that asks before Quit while it is on top
// and those of Help and of the classes that it makes. No window has code of its own. Used by the
// toolkit.
#pragma once

#include <QString>
#include <QWidget>
#include <memory>
#include <optional>

#include "platform/Toolkit.h"

namespace platform {

// Null when the file cannot be read or is none of Qt Designer's. `pictures` is their directory.
std::unique_ptr<QWidget> loadInterfaceFile(const QString& path, const QString& pictures);

// None for a widget that code does not look for.
std::optional<ControlId> controlIdOf(const QWidget& widget);

// Null when the window has no such control.
QWidget* findControl(QWidget& window, ControlId id);

// 0 when the button or action issues none.
FourCharCode commandOf(const QObject& source);

}  // namespace platform
