#include "Tour.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <array>
#include <chrono>
#include <stdexcept>

#include "Places.h"
#include "platform/qt/DownloadProgress.h"
#include "platform/qt/DownloadState.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/Notice.h"

using namespace platform::literals;
using namespace std::chrono_literals;
using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::ItemId;
using platform::noErr;
using platform::Text;
using platform::WindowRef;

namespace {

constexpr std::array<std::array<const char*, 3>, 4> kPrinters{{
    {"Front desk", "Bonjour", "192.168.10.21"},
    {"Office", "Bonjour", "192.168.10.23"},
    {"Veltra KX350T", "USB", "VX35-0001742"},
    {"Warehouse, second floor", "Bonjour", "192.168.10.40"},
}};

platform::OSStatus cell(platform::ControlRef, ItemId item, platform::FourCharCode property,
                        platform::ItemData& data, bool) {
  const std::size_t column = property == "lcNm"_4cc ? 0 : property == "lcTy"_4cc ? 1 : 2;
  return data.setText(Text::fromUtf8(kPrinters[item - 1][column]));
}

// In pixels, and how many of them make up a unit.
struct Screen {
  int width;
  int height;
  int scale;
};

Screen screenFor(Tour::Size size) {
  switch (size) {
    case Tour::Size::Normal:
      return {1024, 768, 1};
    case Tour::Size::DoubleScale:
      return {2048, 1536, 2};
  }
  return {};
}

void describeScreen(const QString& path, const Screen& screen) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QStringLiteral(R"({"screens": [{"name": "", "x": 0, "y": 0, "width": %1, "height": %2,
                               "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                 .arg(screen.width)
                 .arg(screen.height)
                 .toUtf8());
}

}  // namespace

Tour::Tour(const Language& language, Size size) {
  const Screen screen = screenFor(size);
  const QString description = mFolder.filePath("screen.json");
  describeScreen(description, screen);
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + description.toUtf8());
  qputenv("QT_SCALE_FACTOR", QByteArray::number(screen.scale));
  QLocale::setDefault(QLocale(language.locale));
  // The first one of a process decides which font it has.
  qputenv("FC_LANG", QByteArray(language.locale).toLower().replace('_', '-'));
  mBundle.setResourcesDirectory(builtFile("share/fwupdate"));
  mApplication = platform::makeQtApplication("test", mBundle);
  mObservers.add(mHistory);
  mObservers.add(mApplication->downloadObserver());
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), mNib), noErr);
  mMain = create("PrinterSelectWindow");
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("MenuBar")), noErr);
}

Tour::~Tour() {
  QLocale::setDefault(QLocale::c());
  qunsetenv("QT_SCALE_FACTOR");
}

WindowRef Tour::create(const char* name) {
  WindowRef created = WindowRef::None;
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8(name), created), noErr) << name;
  return created;
}

QWidget& Tour::window(const char* name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(name)) return *widget;
  }
  throw std::runtime_error(std::string("there is no window ") + name);
}

std::vector<QWidget*> Tour::openWindows() {
  std::vector<QWidget*> open;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible()) open.push_back(widget);
  }
  const auto depth = [](const QWidget* widget) {
    int parents = 0;
    for (; widget != nullptr; widget = widget->parentWidget()) ++parents;
    return parents;
  };
  std::stable_sort(open.begin(), open.end(), [&](const QWidget* one, const QWidget* other) {
    return depth(one) < depth(other);
  });
  return open;
}

void Tour::see(const std::string& state) {
  for (int layoutsInEachOther = 0; layoutsInEachOther < 3; ++layoutsInEachOther) {
    QCoreApplication::processEvents();
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  SCOPED_TRACE(state);
  mVisitor(state);
}

void Tour::fillList() {
  platform::ControlRef control = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(mMain, {"lPrn"_4cc, 0}, control), noErr);
  platform::DataBrowserCallbacks callbacks;
  callbacks.itemData = cell;
  ASSERT_EQ(toolkit().setDataBrowserCallbacks(control, callbacks), noErr);
  for (ItemId item = 1; item <= kPrinters.size(); ++item) {
    ASSERT_EQ(toolkit().addDataBrowserItem(control, item), noErr);
  }
}

void Tour::setText(WindowRef window, platform::FourCharCode control, const QString& text) {
  platform::ControlRef label = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(window, {control, 0}, label), noErr);
  ASSERT_EQ(toolkit().setControlText(label, Text::fromUtf8(text.toStdString())), noErr);
}

void Tour::visitDetails() {
  for (const char* button : {"details", "copy"}) {
    openWindows().back()->findChild<QPushButton*>(button)->click();
    see(button);
  }
}

void Tour::visitSheet(const char* name, const std::string& state, WindowRef parent) {
  const WindowRef sheet = create(name);
  ASSERT_EQ(toolkit().showSheetWindow(sheet, parent), noErr);
  see(state);
  if (state == "failed-unreachable") visitDetails();
  toolkit().hideSheetWindow(sheet);
  toolkit().disposeWindow(sheet);
}

void Tour::visitMenus() {
  auto* const bar = window("PrinterSelectWindow").findChild<QMenuBar*>();
  for (QAction* action : bar->actions()) {
    bar->setActiveAction(action);
    see(action->menu()->objectName().toStdString());
    action->menu()->hide();
  }
}

void Tour::visitPhases() {
  download().downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("192.168.10.23"));
  download().phaseBegan(DownloadPhase::Connecting, 0ms);
  see("connecting");
  download().phaseBegan(DownloadPhase::AskingForVersion, 0ms);
  see("asking-for-version");
  download().versionsKnown(190, 200);
  download().phaseBegan(DownloadPhase::ChoosingFirmware, 0ms);
  see("choosing-firmware");
  download().phaseBegan(DownloadPhase::SendingFirmware, 5s);
  download().bytesHandedOver(5'200'000, 8'000'000);
  see("sending");
  download().phaseBegan(DownloadPhase::BurningFirmware, 48s);
  see("burning");
  download().phaseBegan(DownloadPhase::BurningFirmware, 369s);
  see("burning-for-minutes");
}

// On a clock of its own, in a sheet of its own.
void Tour::visitSilence() {
  std::chrono::steady_clock::time_point now;
  platform::DownloadState download([&] { return now; });
  const WindowRef sheet = create("ProgressSheet");
  setText(sheet, "tPNm"_4cc, "Office (192.168.10.23)");
  auto& progress = dynamic_cast<platform::DownloadProgress&>(
      *window("ProgressSheet").findChild<QWidget*>("download"));
  progress.watch(download);
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  download.downloadBegan(Text::fromUtf8("Office"), Text());
  for (const auto& [phase, state] :
       {std::pair(DownloadPhase::AskingForVersion, "silent-when-asked"),
        std::pair(DownloadPhase::SendingFirmware, "silent-while-sending"),
        std::pair(DownloadPhase::BurningFirmware, "silent-after-all")}) {
    download.phaseBegan(phase, 3s);
    download.bytesHandedOver(5'200'000, 8'000'000);
    now += 40s;
    progress.refresh();
    see(state);
  }
  toolkit().disposeWindow(sheet);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The causes with the longest texts, and those that name somebody.
void Tour::visitFailures(WindowRef progress) {
  const std::pair<const char*, const char*> failures[] = {
      {"no-firmware", "Could not find a firmware file to download."},
      {"unreachable", "Connecting failed: EHOSTUNREACH (No route to host)"},
      {"no-right", "Unable to open interface. [return value = 0xe00002e2]"},
      {"unconfirmed", "Async read failed: I/O Kit error=0xe0004051"},
      {"unknown", "The KX350T is on fire."}};
  for (const auto& [state, entry] : failures) {
    download().downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("192.168.10.23"));
    if (state == std::string("unconfirmed")) {
      download().phaseBegan(DownloadPhase::BurningFirmware, 3s);
    }
    mHistory.write(3, entry);
    download().downloadEnded(DownloadOutcome::Failed);
    visitSheet("FailedSheet", std::string("failed-") + state, progress);
  }
}

// What comes after ten seconds.
void Tour::visitAdvice() {
  for (QTimer* timer : list().findChildren<QTimer*>()) {
    if (timer->isActive() && timer->interval() == 10'000) timer->start(0);
  }
  see("looking-for-long");
  list().noteDaemon(true);
  see("looking-without-daemon");
}

void Tour::visitHelp() {
  for (const char* item : {"manualAction", "aboutAction"}) {
    window("PrinterSelectWindow").findChild<QAction*>(item)->trigger();
    see(item);
    openWindows().back()->close();
  }
  window("PrinterSelectWindow").findChild<QAction*>("copyAction")->trigger();
  mLoop.advance(0s);
  see("copied");
}

platform::ListControl& Tour::list() {
  return dynamic_cast<platform::ListControl&>(
      *window("PrinterSelectWindow").findChild<QTreeView*>("printers"));
}

void Tour::visit(const Visitor& visitor) {
  mVisitor = visitor;
  toolkit().showWindow(mMain);
  see("looking");
  visitAdvice();
  fillList();
  see("list");
  visitMenus();

  window("PrinterSelectWindow").findChild<QAction*>("downloadAction")->trigger();
  see("nothing-selected");
  dynamic_cast<platform::Notice&>(*window("PrinterSelectWindow").findChild<QLabel*>("goneNotice"))
      .noteCommand("Yes "_4cc);
  see("gone");
  list().setCurrentIndex(list().model()->index(1, 0));
  platform::ControlRef button = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(mMain, {0, 2}, button), noErr);
  ASSERT_EQ(toolkit().setControlEnabled(button, true), noErr);
  see("selected");

  const WindowRef question = create("ConfirmDownloadSheet");
  for (const char* key : {"NETWORK_PRINTER_CONFIRMATION", "USB_PRINTER_CONFIRMATION"}) {
    const Text text = mApplication->strings().localizedString(Text::fromUtf8(key));
    setText(question, "tCnf"_4cc, QString::fromStdString(std::string(text.utf8())));
    ASSERT_EQ(toolkit().showSheetWindow(question, mMain), noErr);
    see(std::string("question-") + key);
    ASSERT_EQ(toolkit().hideSheetWindow(question), noErr);
  }

  visitSilence();
  const WindowRef progress = create("ProgressSheet");
  setText(progress, "tPNm"_4cc, "Office (192.168.10.23)");
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  visitPhases();
  window("ProgressSheet").close();
  see("quit-question");
  download().versionsKnown(210, 200);
  download().downloadEnded(DownloadOutcome::UpToDate);
  visitSheet("UpToDateSheet", "up-to-date", progress);
  visitFailures(progress);
  ASSERT_EQ(toolkit().hideSheetWindow(progress), noErr);

  download().downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("192.168.10.23"));
  download().versionsKnown(190, 200);
  download().downloadEnded(DownloadOutcome::Succeeded);
  see("done");
  visitHelp();
}
