#include "platform/qt/NibLoader.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QScopeGuard>
#include <QStyle>
#include <QUiLoader>

#include "platform/qt/Button.h"
#include "platform/qt/CopyButton.h"
#include "platform/qt/DisclosureButton.h"
#include "platform/qt/DownloadProgress.h"
#include "platform/qt/HelpWindow.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/LiveLabel.h"
#include "platform/qt/LogView.h"
#include "platform/qt/MainWindow.h"
#include "platform/qt/Notice.h"
#include "platform/qt/OutcomeLine.h"
#include "platform/qt/Pictures.h"
#include "platform/qt/ProgressBar.h"
#include "platform/qt/QtText.h"
#include "platform/qt/ReportLabel.h"
#include "platform/qt/SheetDialog.h"

namespace platform {
namespace {

class NibLoader final : public QUiLoader {
 public:
  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    QWidget* widget = createOwn(className, parent);
    if (widget == nullptr) return QUiLoader::createWidget(className, parent, name);
    widget->setObjectName(name);
    return widget;
  }

 private:
  static QWidget* createOwn(const QString& className, QWidget* parent) {
    if (className == u"QTreeView") return new ListControl(parent);
    if (className == u"QMainWindow") return new MainWindow(parent);
    if (className == u"QPushButton") return new Button(parent);
    if (className == u"QDialog") return new SheetDialog(parent);
    if (className == u"Notice") return new Notice(parent);
    if (className == u"LiveLabel") return new LiveLabel(parent);
    if (className == u"OutcomeLine") return new OutcomeLine(parent);
    if (className == u"ProgressBar") return new ProgressBar(parent);
    if (className == u"DownloadProgress") return new DownloadProgress(parent);
    if (className == u"ReportLabel") return new ReportLabel(parent);
    if (className == u"DisclosureButton") return new DisclosureButton(parent);
    if (className == u"LogView") return new LogView(parent);
    if (className == u"CopyButton") return new CopyButton(parent);
    if (className == u"HelpWindow") return new HelpWindow(parent);
    return nullptr;
  }
};

// A loader that is made while Qt knows where plug-ins are loads all that Designer has for widgets,
// and with them, where it is installed, Qt Quick. There are none of those widgets in our files.
std::unique_ptr<NibLoader> makeLoader() {
  const QStringList places = QCoreApplication::libraryPaths();
  const auto restore = qScopeGuard([&places] { QCoreApplication::setLibraryPaths(places); });
  QCoreApplication::setLibraryPaths({});
  return std::make_unique<NibLoader>();
}

constexpr int kPictureSize = 48;

void setPicture(QLabel& label, const QString& directory) {
  const QString name = label.property("picture").toString();
  if (name.isEmpty()) return;
  const QVariant own = label.property("pictureSize");
  const int size = own.isValid() ? own.toInt() : kPictureSize;
  label.setPixmap(
      pictureNamed(name, directory).pixmap(QSize(size, size), label.devicePixelRatio()));
}

// Left to itself, a label puts a printer's Latin name on the left of a window that begins on the
// right.
void alignWithWindow(QLabel& label) {
  label.setAlignment(QStyle::visualAlignment(label.layoutDirection(), label.alignment()) |
                     Qt::AlignAbsolute);
}

}  // namespace

std::unique_ptr<QWidget> loadInterfaceFile(const QString& path, const QString& pictures) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return nullptr;
  std::unique_ptr<QWidget> window(makeLoader()->load(&file));
  if (window == nullptr) return nullptr;
  for (QLabel* label : window->findChildren<QLabel*>()) {
    setPicture(*label, pictures);
    alignWithWindow(*label);
  }
  for (ListControl* list : window->findChildren<ListControl*>()) {
    list->setPicture(pictureNamed(list->property("rowPicture").toString(), pictures));
    list->setUpColumns();
  }
  return window;
}

std::optional<ControlId> controlIdOf(const QWidget& widget) {
  const QVariant signature = widget.property("controlSignature");
  const QVariant number = widget.property("controlId");
  if (!signature.isValid() && !number.isValid()) return std::nullopt;
  return ControlId{codeFrom(signature.toString()), number.toInt()};
}

QWidget* findControl(QWidget& window, ControlId id) {
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->window() != &window) continue;  // of a sheet on it
    const auto own = controlIdOf(*widget);
    if (own && own->signature == id.signature && own->id == id.id) return widget;
  }
  return nullptr;
}

FourCharCode commandOf(const QObject& source) {
  return codeFrom(source.property("command").toString());
}

}  // namespace platform
