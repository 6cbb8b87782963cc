#include "platform/qt/DesktopDescription.h"

#include <QApplication>
#include <QLocale>
#include <QScreen>
#include <QStyle>

namespace platform {
namespace {

std::string orUnknown(const char* variable) {
  const QByteArray value = qgetenv(variable);
  return value.isEmpty() ? "unknown" : value.toStdString();
}

}  // namespace

std::string qtVersion() { return qVersion(); }

std::vector<std::string> describeDesktop() {
  std::vector<std::string> lines{
      "desktop " + orUnknown("XDG_CURRENT_DESKTOP") + ", session " + orUnknown("XDG_SESSION_TYPE"),
      "Qt platform " + QGuiApplication::platformName().toStdString() + ", style " +
          QApplication::style()->objectName().toStdString() + ", language " +
          QLocale().name().toStdString()};
  for (const QScreen* screen : QGuiApplication::screens()) {
    lines.push_back("screen " + std::to_string(screen->size().width()) + " x " +
                    std::to_string(screen->size().height()) + ", scale " +
                    QString::number(screen->devicePixelRatio()).toStdString());
  }
  return lines;
}

}  // namespace platform
