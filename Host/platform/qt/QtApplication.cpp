#include "platform/qt/QtApplication.h"

#include <QAccessible>
#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <array>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "platform/Bundle.h"
#include "platform/qt/DownloadState.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtEvents.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/QtStrings.h"
#include "platform/qt/QtToolkit.h"
#include "platform/qt/VisibleBorders.h"

namespace platform {
namespace {

// For the handler below, which Qt gives nothing of ours.
void (*reportOfNoDisplay)() = nullptr;

// Qt has no other way of saying that it cannot reach a display than to abort.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext&, const QString&) {
  if (type != QtFatalMsg) return;
  if (reportOfNoDisplay != nullptr) reportOfNoDisplay();
  std::_Exit(EXIT_FAILURE);
}

// Makes the QApplication, and has the user's settings for it.
class Session {
 public:
  Session(const char* programName, void (*reportNoDisplay)()) : mName(programName) {
    reportOfNoDisplay = reportNoDisplay;
    const QtMessageHandler previous = qInstallMessageHandler(endWithoutDisplay);
    mApplication = std::make_unique<QApplication>(mArgumentCount, mArguments.data());
    qInstallMessageHandler(previous);
    VisibleBorders::install();
    mApplication->setQuitOnLastWindowClosed(false);
    QAccessible::setRootObject(mApplication.get());
    QGuiApplication::setDesktopFileName(QStringLiteral("fwupdate"));
  }

  // English first: another language stands on top of it. Qt's own texts and the direction of the
  // windows are those of the program's texts, whatever else the user's settings ask for.
  void loadResources(const QString& resources) {
    const QString own = resources + "/translations";
    install(find(QLocale(QLocale::English), "fwupdate", own));
    auto translation = find(QLocale(), "fwupdate", own);
    const QLocale language(translation ? translation->language() : QStringLiteral("en"));
    install(find(language, "qtbase", QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
    install(std::move(translation));
    QGuiApplication::setLayoutDirection(language.textDirection());
    QIcon icon;
    for (const int size : {16, 32, 48, 96}) {
      icon.addFile(QStringLiteral("%1/icons/fwupdate-%2.png").arg(resources).arg(size),
                   QSize(size, size));
    }
    QGuiApplication::setWindowIcon(icon);
  }

 private:
  // Null when there is none.
  static std::unique_ptr<QTranslator> find(const QLocale& locale, const char* name,
                                           const QString& directory) {
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(locale, QLatin1String(name), QStringLiteral("_"), directory)) {
      return translator;
    }
    return nullptr;
  }

  void install(std::unique_ptr<QTranslator> translator) {
    if (translator == nullptr) return;
    QCoreApplication::installTranslator(translator.get());
    mTranslators.push_back(std::move(translator));
  }

  std::string mName;
  int mArgumentCount = 1;
  std::array<char*, 2> mArguments{mName.data(), nullptr};
  std::unique_ptr<QApplication> mApplication;
  std::vector<std::unique_ptr<QTranslator>> mTranslators;
};

class QtApplicationWithSurfaces final : public QtApplication {
 public:
  QtApplicationWithSurfaces(const char* programName, const Bundle& bundle,
                            void (*reportNoDisplay)())
      : mSession(programName, reportNoDisplay),
        mRunLoop(makeQtRunLoop(mLoop)),
        mEvents(makeQtEvents(mLoop)),
        mToolkit(makeQtToolkit(mLoop, *mEvents, bundle, mDownload)),
        mStrings(makeQtStrings()) {
    if (const auto resources = bundle.resourcesDirectory()) {
      mSession.loadResources(QString::fromStdString(resources->string()));
    }
  }

  RunLoop& runLoop() override { return *mRunLoop; }
  Events& events() override { return *mEvents; }
  Toolkit& toolkit() override { return *mToolkit; }
  LocalizedStrings& strings() override { return *mStrings; }
  DownloadObserver& downloadObserver() override { return mDownload; }

 private:
  Session mSession;
  QtEventLoop mLoop;
  DownloadState mDownload;
  std::unique_ptr<RunLoop> mRunLoop;
  std::unique_ptr<QtEvents> mEvents;
  std::unique_ptr<Toolkit> mToolkit;
  std::unique_ptr<LocalizedStrings> mStrings;
};

}  // namespace

std::unique_ptr<QtApplication> makeQtApplication(const char* programName, const Bundle& bundle,
                                                 void (*reportNoDisplay)()) {
  return std::make_unique<QtApplicationWithSurfaces>(programName, bundle, reportNoDisplay);
}

}  // namespace platform
