// Windows, sheets and controls on Qt Widgets, from the Qt Designer files in
// <resources>/<nib name>.nib/, one file for each window. main() owns it.
//
// While a sheet is up, the contents of the window that it blocks are disabled, list selection and
// menu included, and issue no command but Quit whatever asks for it: every activation of a control
// passes one check before it becomes a command. Quit, the closing of the main window and the end of
// the session work in every state. Where a sheet names a question for it (the progress sheet does,
// so that a firmware that is being written is not cut off by accident), that is asked first; the
// program hears of it only when the answer is to quit. Signals end the program without a question:
// see QtEvents.h.
#pragma once

#include <memory>

#include "platform/Toolkit.h"

namespace platform {

class Bundle;
class DownloadState;
class QtEventLoop;
class QtEvents;

// Needs the QApplication. What is given must outlive the toolkit.
std::unique_ptr<Toolkit> makeQtToolkit(QtEventLoop& loop, QtEvents& events, const Bundle& bundle,
                                       const DownloadState& download);

}  // namespace platform
