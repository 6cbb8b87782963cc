#include "platform/qt/VersionsText.h"

#include <QCoreApplication>

#include "platform/qt/DownloadState.h"

namespace platform {
namespace {

QString both(unsigned int installed, unsigned int available) {
  //: %1 and %2 are numbers of versions of the printer's firmware
  return QCoreApplication::translate("VersionsText", "Installed version: %1, available version: %2")
      .arg(QString::number(installed), QString::number(available));
}

QString availableAlone(unsigned int available) {
  //: %1 is the number of a version; the printer does not tell which one it has
  return QCoreApplication::translate("VersionsText", "Available version: %1")
      .arg(QString::number(available));
}

}  // namespace

// 0 stands for a version that cannot be told.
QString versionsText(const DownloadState& download) {
  const auto versions = download.versions();
  if (!versions || versions->firmware == 0) return {};
  return versions->printer == 0 ? availableAlone(versions->firmware)
                                : both(versions->printer, versions->firmware);
}

QString longVersionsText() { return both(8888, 8888); }

}  // namespace platform
