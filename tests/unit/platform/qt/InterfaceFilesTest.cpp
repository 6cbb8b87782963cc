#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QToolTip>
#include <array>

#include "QtWindows.h"
#include "platform/DiscoveryStatus.h"
#include "platform/Platform.h"

using namespace platform::literals;
using testing::ElementsAre;

namespace {

class InterfaceFiles : public QtWindows {
 protected:
  InterfaceFiles() {
    // The question about Quit comes with the progress.
    for (const char* sheet : kSheets) {
      if (window(sheet) == nullptr) create(sheet);
    }
    showMain();
  }

  static constexpr std::array kSheets{"ConfirmDownloadSheet", "ProgressSheet", "FailedSheet",
                                      "UpToDateSheet", "QuitSheet"};
  static constexpr const char* kMain = "PrinterSelectWindow";

  static std::string accessibleName(QObject* object) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(object);
    return accessible == nullptr ? "" : accessible->text(QAccessible::Name).toStdString();
  }
};

TEST_F(InterfaceFiles, ButtonsHaveTheirLabels) {
  EXPECT_EQ(accessibleName(button(kMain, "Down"_4cc)), "Download");
  EXPECT_EQ(accessibleName(button("ConfirmDownloadSheet", "Yes "_4cc)), "Download firmware");
  EXPECT_EQ(accessibleName(button("ConfirmDownloadSheet", "No  "_4cc)), "Do not download");
  EXPECT_EQ(accessibleName(button("FailedSheet", "Clos"_4cc)), "Close");
  EXPECT_EQ(accessibleName(button("UpToDateSheet", "Clos"_4cc)), "Close");
  EXPECT_EQ(accessibleName(button("QuitSheet", "Keep"_4cc)), "Keep downloading");
  EXPECT_EQ(accessibleName(button("QuitSheet", "quit"_4cc)), "Quit anyway");
}

TEST_F(InterfaceFiles, EveryWindowAndControlHasAnAccessibleName) {
  for (const char* name : {kMain, kSheets[0], kSheets[1], kSheets[2], kSheets[3], kSheets[4]}) {
    EXPECT_FALSE(window(name)->windowTitle().isEmpty()) << name;
    for (QWidget* widget : window(name)->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                             qobject_cast<QTreeView*>(widget) != nullptr ||
                             qobject_cast<QProgressBar*>(widget) != nullptr ||
                             qobject_cast<QMenuBar*>(widget) != nullptr;
      if (!isControl || widget->objectName().startsWith(u"qt_")) continue;
      EXPECT_NE(accessibleName(widget), "") << name << " " << widget->objectName().toStdString();
    }
  }
}

TEST_F(InterfaceFiles, ColumnsHaveTheirTitles) {
  std::vector<std::string> titles;
  for (int column = 0; column < list().model()->columnCount(); ++column) {
    titles.push_back(list()
                         .model()
                         ->headerData(column, Qt::Horizontal, Qt::DisplayRole)
                         .toString()
                         .toStdString());
  }
  EXPECT_THAT(titles, ElementsAre("Name", "Type", "Address or serial number"));
}

TEST_F(InterfaceFiles, MenuHasDownloadAndQuitWithShortcuts) {
  EXPECT_EQ(action("Down"_4cc)->text(), "&Download");
  EXPECT_EQ(action("Down"_4cc)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_D));
  EXPECT_EQ(action("quit"_4cc)->text(), "&Quit");
  EXPECT_EQ(action("quit"_4cc)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
  EXPECT_FALSE(action("Down"_4cc)->autoRepeat());
}

TEST_F(InterfaceFiles, FocusStartsInTheListAndTabReachesTheButton) {
  EXPECT_EQ(window(kMain)->focusWidget(), &list());
  press(list(), Qt::Key_Tab);
  EXPECT_EQ(window(kMain)->focusWidget(), button(kMain, "Down"_4cc));
  press(*button(kMain, "Down"_4cc), Qt::Key_Tab);
  EXPECT_EQ(window(kMain)->focusWidget(), &list());
}

TEST_F(InterfaceFiles, LabelLeadsToTheList) {
  bool leads = false;
  for (const QLabel* label : window(kMain)->findChildren<QLabel*>()) {
    leads = leads || label->buddy() == &list();
  }
  EXPECT_TRUE(leads);
}

TEST_F(InterfaceFiles, EmptyListSaysThatItLooksForPrinters) {
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&list());
  EXPECT_EQ(accessible->text(QAccessible::Description).toStdString(), "Looking for printers…");
  fillList(1);
  EXPECT_EQ(accessible->text(QAccessible::Description).toStdString(), "");
}

TEST_F(InterfaceFiles, RowsBeginWithAPicture) {
  fillList(1);
  const QModelIndex row = list().model()->index(0, 0);
  EXPECT_FALSE(row.data(Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(row.siblingAtColumn(1).data(Qt::DecorationRole).isValid());
}

class EmptyList : public InterfaceFiles {
 protected:
  QTimer& timer() { return *list().findChild<QTimer*>("adviceTimer"); }

  void tenSecondsPass() {
    QTimerEvent passed(timer().timerId());
    QApplication::sendEvent(&timer(), &passed);
  }

  std::string description() {
    return QAccessible::queryAccessibleInterface(&list())
        ->text(QAccessible::Description)
        .toStdString();
  }

  void removeRow(platform::ItemId item) {
    platform::ControlRef control = platform::ControlRef::None;
    ASSERT_EQ(toolkit().getControlById(mMain, {"lPrn"_4cc, 0}, control), platform::noErr);
    ASSERT_EQ(toolkit().removeDataBrowserItem(control, item), platform::noErr);
  }

  static constexpr const char* kAdvice =
      "No printer has been found yet. Please check:\n"
      "• The printer is switched on.\n"
      "• A USB printer: its cable is plugged in at both ends.\n"
      "• A network printer: it is on the same network as this computer.";
  static constexpr const char* kWithoutDaemon =
      "\n• The service that finds network printers is not running, so some may be missing. "
      "Start avahi-daemon: systemctl start avahi-daemon";
};

TEST_F(EmptyList, SaysAfterTenSecondsWhatToCheck) {
  EXPECT_TRUE(timer().isActive());
  EXPECT_EQ(timer().interval(), 10'000);
  tenSecondsPass();
  EXPECT_EQ(description(), kAdvice);
  EXPECT_FALSE(timer().isActive());
}

TEST_F(EmptyList, SaysNothingOnceThereIsARow) {
  tenSecondsPass();
  fillList(1);
  EXPECT_EQ(description(), "");
  EXPECT_FALSE(timer().isActive());
}

TEST_F(EmptyList, WaitsForNothingOnceThereIsARow) {
  EXPECT_TRUE(timer().isActive());
  fillList(1);
  EXPECT_FALSE(timer().isActive());
}

TEST_F(EmptyList, LooksAgainForTenSecondsWhenTheLastRowHasGone) {
  tenSecondsPass();
  fillList(2);
  removeRow(2);
  EXPECT_FALSE(timer().isActive());
  removeRow(1);
  EXPECT_EQ(description(), "Looking for printers…");
  EXPECT_TRUE(timer().isActive());
  tenSecondsPass();
  EXPECT_EQ(description(), kAdvice);
}

TEST_F(EmptyList, IsNotWatchedBeforeItIsShown) {
  mApplication.reset();
  mApplication = platform::makeQtApplication("test", mBundle);
  ASSERT_EQ(toolkit().createNibReference(platform::Text::fromUtf8("main"), mNib), platform::noErr);
  mMain = create(kMain);
  EXPECT_FALSE(timer().isActive());
  fillList(1);
  removeRow(1);
  EXPECT_FALSE(timer().isActive());
}

TEST_F(EmptyList, SaysThatTheDaemonIsMissingAsLongAsItIs) {
  platform::DiscoveryStatus status;
  platform::Platform surfaces = platform::current();
  surfaces.discoveryStatus = &status;
  const platform::PlatformScope scope(surfaces);
  toolkit().disposeWindow(mMain);
  settle();
  mMain = create(kMain);
  toolkit().showWindow(mMain);
  settle();
  status.change(platform::DiscoveryStatus::Searcher::Program);
  EXPECT_EQ(description(), "Looking for printers…");
  tenSecondsPass();
  EXPECT_EQ(description(), std::string(kAdvice) + kWithoutDaemon);
  status.change(platform::DiscoveryStatus::Searcher::Daemon);
  EXPECT_EQ(description(), kAdvice);
  toolkit().disposeWindow(mMain);
  settle();
  status.change(platform::DiscoveryStatus::Searcher::Program);
}

TEST_F(EmptyList, ShowsTheTextThatItDoesNotHaveRoomFor) {
  tenSecondsPass();
  window(kMain)->resize(200, 150);
  settle();
  QHelpEvent help(QEvent::ToolTip, {5, 5}, list().viewport()->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(list().viewport(), &help);
  EXPECT_TRUE(QToolTip::text().contains(u"same network as this computer")) << "none";
  QToolTip::hideText();
}

TEST_F(InterfaceFiles, DownloadIsDisabledAtFirst) {
  mApplication.reset();
  mApplication = platform::makeQtApplication("test", mBundle);
  ASSERT_EQ(toolkit().createNibReference(platform::Text::fromUtf8("main"), mNib), platform::noErr);
  create(kMain);
  EXPECT_FALSE(button(kMain, "Down"_4cc)->isEnabled());
}

TEST_F(InterfaceFiles, SheetTextsWrapAndArePlain) {
  for (const char* name : kSheets) {
    for (const QLabel* label : window(name)->findChildren<QLabel*>()) {
      if (!label->property("picture").toString().isEmpty()) {
        EXPECT_FALSE(label->pixmap(Qt::ReturnByValue).isNull()) << name;
        continue;
      }
      EXPECT_TRUE(label->wordWrap()) << name;
      EXPECT_EQ(label->textFormat(), Qt::PlainText) << name;
    }
  }
}

}  // namespace
