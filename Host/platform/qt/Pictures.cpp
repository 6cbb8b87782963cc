#include "platform/qt/Pictures.h"

#include <QFileInfo>

namespace platform {

QIcon pictureNamed(const QString& name, const QString& directory) {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 96, 128, 192}) {
    const QString file = QStringLiteral("%1/%2-%3.png").arg(directory, name).arg(size);
    if (!QFileInfo::exists(file)) continue;
    // Not tinted in a selected row.
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) {
      icon.addFile(file, QSize(size, size), mode);
    }
  }
  return icon;
}

}  // namespace platform
