#include "platform/qt/MainWindow.h"

#include <QCloseEvent>

namespace platform {

void MainWindow::closeEvent(QCloseEvent* event) { event->setAccepted(!mRequested || mRequested()); }

}  // namespace platform
