#include "QtWindows.h"

#include <QAccessible>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>

#include "FakeEvents.h"
#include "Places.h"
#include "platform/qt/NibLoader.h"

using namespace platform::literals;
using platform::noErr;
using platform::Text;
using platform::WindowRef;

namespace {

platform::OSStatus rowName(platform::ControlRef, platform::ItemId item, platform::FourCharCode,
                           platform::ItemData& data, bool) {
  return data.setText(Text::fromUtf8("Printer " + std::to_string(item)));
}

}  // namespace

QtWindows::QtWindows() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  mBundle.setResourcesDirectory(builtFile("share/fwupdate"));
  mApplication = platform::makeQtApplication("test", mBundle);
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), mNib), noErr);
  mMain = create("PrinterSelectWindow");
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("MenuBar")), noErr);
  platform::EventHandlerRef installed = 0;
  const platform::EventSpec spec{"cmds"_4cc, 1};
  mApplication->events().installHandler(platform::kApplicationTarget, {&spec, 1}, keep, this,
                                        installed);
}

QtWindows::~QtWindows() = default;

platform::OSStatus QtWindows::keep(platform::EventHandlerCallRef, const platform::Event& event,
                                   void* userData) {
  auto& test = *static_cast<QtWindows*>(userData);
  platform::HICommand command;
  event.getParameter("----"_4cc, command);
  test.mCommands.push_back(fourCharText(command.commandId));
  if (test.mOnCommand) test.mOnCommand();
  return noErr;
}

WindowRef QtWindows::create(const char* window) {
  WindowRef created = WindowRef::None;
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8(window), created), noErr);
  return created;
}

void QtWindows::showMain() {
  platform::ControlRef download = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(mMain, {0, 2}, download), noErr);
  ASSERT_EQ(toolkit().setControlEnabled(download, true), noErr);
  toolkit().showWindow(mMain);
  settle();
}

WindowRef QtWindows::showSheet(const char* sheet) {
  const WindowRef created = create(sheet);
  EXPECT_EQ(toolkit().showSheetWindow(created, mMain), noErr);
  settle();
  return created;
}

QWidget* QtWindows::window(const char* name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(name)) return widget;
  }
  return nullptr;
}

QAbstractButton* QtWindows::button(const char* name, platform::FourCharCode command) {
  for (QAbstractButton* each : window(name)->findChildren<QAbstractButton*>()) {
    if (platform::commandOf(*each) == command && each->window() == window(name)) return each;
  }
  return nullptr;
}

QAction* QtWindows::action(platform::FourCharCode command) {
  for (QAction* each : window("PrinterSelectWindow")->findChildren<QAction*>()) {
    if (platform::commandOf(*each) == command) return each;
  }
  return nullptr;
}

platform::ListControl& QtWindows::list() {
  return *dynamic_cast<platform::ListControl*>(
      window("PrinterSelectWindow")->findChild<QTreeView*>());
}

void QtWindows::fillList(int rows) {
  platform::ControlRef control = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(mMain, {"lPrn"_4cc, 0}, control), noErr);
  platform::DataBrowserCallbacks callbacks;
  callbacks.itemData = rowName;
  ASSERT_EQ(toolkit().setDataBrowserCallbacks(control, callbacks), noErr);
  for (int row = 1; row <= rows; ++row) {
    ASSERT_EQ(toolkit().addDataBrowserItem(control, static_cast<platform::ItemId>(row)), noErr);
  }
  list().setCurrentIndex(list().model()->index(0, 0));
}

void QtWindows::press(QWidget& widget, Qt::Key key, bool autoRepeat) {
  QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, QString(), autoRepeat);
  QApplication::sendEvent(&widget, &down);
  QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, QString(), autoRepeat);
  QApplication::sendEvent(&widget, &up);
  settle();
}

void QtWindows::pressByAssistiveTechnology(QWidget& widget) {
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&widget);
  ASSERT_NE(accessible->actionInterface(), nullptr);
  accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  waitForClick();
}

void QtWindows::waitForClick() {
  QEventLoop turn;
  QTimer::singleShot(200, &turn, &QEventLoop::quit);
  turn.exec();
}

void QtWindows::settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
