// Windows, sheets and controls on Qt Widgets, from the Qt Designer files in
// <resources>/<nib name>.nib/, one file for each window. main() owns it.
//
// While a sheet is up, the window that it blocks is disabled as a whole, menu and list selection
// included, and issues no command whatever asks for it: every activation of a control passes one
// check before it becomes a command. Such a window also refuses to close, so that a firmware that
// is being written is not cut off by accident; a sheet without a cancel command (the progress
// sheet) refuses as well. The session and signals can still end the program: see QtEvents.h.
#pragma once

#include <memory>

#include "platform/Toolkit.h"

namespace platform {

class Bundle;
class QtEventLoop;
class QtEvents;

// Needs the QApplication. What is given must outlive the toolkit.
std::unique_ptr<Toolkit> makeQtToolkit(QtEventLoop& loop, QtEvents& events, const Bundle& bundle);

}  // namespace platform
