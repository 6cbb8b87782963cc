#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QWindow>
#include <utility>

#include "FakeRunLoop.h"
#include "QtWindows.h"
#include "platform/Diagnostics.h"
#include "platform/Platform.h"

using namespace platform::literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class QtHelp : public QtWindows {
 protected:
  QtHelp() { showMain(); }

  QAction* menuItem(const char* name) {
    return window("PrinterSelectWindow")->findChild<QAction*>(name);
  }

  QWidget* open(const char* item, const char* name) {
    menuItem(item)->trigger();
    settle();
    return window(name);
  }

  QTextBrowser& manual() { return *window("ManualWindow")->findChild<QTextBrowser*>(); }
  QLineEdit& field() { return *window("ManualWindow")->findChild<QLineEdit*>(); }
  QLabel& notFound() { return *window("ManualWindow")->findChild<QLabel*>("notFound"); }
  QLabel& notice() { return *window("PrinterSelectWindow")->findChild<QLabel*>("copiedNotice"); }

  void type(const QString& text) {
    field().setText(text);
    emit field().textEdited(text);
  }

  static platform::Platform with(platform::Diagnostics& diagnostics) {
    platform::Platform surfaces = platform::current();
    surfaces.diagnostics = &diagnostics;
    return surfaces;
  }

  FakeRunLoop mLoop;
  platform::Diagnostics mDiagnostics{
      mLoop, "1.2.3", {{"Qt", "6.4.2"}, {"libusb", "1.0.26"}}, {"", "", ""}};
  platform::PlatformScope mScope{with(mDiagnostics)};
};

TEST_F(QtHelp, MenuItemsHaveTheirTextsAndKeys) {
  EXPECT_EQ(menuItem("manualAction")->text(), "&Manual");
  EXPECT_EQ(menuItem("manualAction")->shortcut(), QKeySequence(Qt::Key_F1));
  EXPECT_EQ(menuItem("copyAction")->text(), "&Copy diagnostic information");
  EXPECT_EQ(menuItem("aboutAction")->text(), "&About");
}

TEST_F(QtHelp, IsLoadedWhenItIsAskedFor) {
  EXPECT_EQ(window("ManualWindow"), nullptr);
  EXPECT_EQ(window("AboutWindow"), nullptr);
}

TEST_F(QtHelp, TheProgramIsNotAsked) {
  open("manualAction", "ManualWindow");
  open("aboutAction", "AboutWindow");
  menuItem("copyAction")->trigger();
  mLoop.advance(std::chrono::seconds(0));
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtHelp, TheManualHasTheManualPage) {
  const QWidget* opened = open("manualAction", "ManualWindow");
  ASSERT_NE(opened, nullptr);
  EXPECT_TRUE(opened->isVisible());
  const std::string text = manual().toPlainText().toStdString();
  EXPECT_THAT(text, HasSubstr("update the firmware of Veltra KX350T printers"));
  EXPECT_THAT(text, HasSubstr("journalctl -t fwupdate"));
  EXPECT_THAT(text, HasSubstr("the printer was unplugged"));
  EXPECT_THAT(text, testing::Not(HasSubstr("FWUPDATE(1)")));
  EXPECT_TRUE(manual().isReadOnly());
}

TEST_F(QtHelp, TheManualIsSearched) {
  open("manualAction", "ManualWindow");
  EXPECT_FALSE(notFound().isVisible());
  type("printer");
  const int first = manual().textCursor().selectionStart();
  EXPECT_EQ(manual().textCursor().selectedText(), "printer");
  type("printers");
  EXPECT_EQ(manual().textCursor().selectionStart(), first);
  emit field().returnPressed();
  EXPECT_GT(manual().textCursor().selectionStart(), first);
  type("unplugged");
  emit field().returnPressed();
  EXPECT_EQ(manual().textCursor().selectedText(), "unplugged");  // from the end to the beginning
  EXPECT_FALSE(notFound().isVisible());
  type("no such word");
  EXPECT_TRUE(notFound().isVisible());
  type("");
  EXPECT_FALSE(notFound().isVisible());
}

TEST_F(QtHelp, AboutTellsVersionsAndLicense) {
  const QWidget* about = open("aboutAction", "AboutWindow");
  ASSERT_NE(about, nullptr);
  std::vector<std::string> texts;
  for (const QLabel* label : about->findChildren<QLabel*>()) {
    if (label->isVisible() && !label->text().isEmpty())
      texts.push_back(label->text().toStdString());
  }
  EXPECT_THAT(texts, ElementsAre("Printer Firmware Update", "Version 1.2.3",
                                 "Updates the firmware of Veltra KX350T printers.",
                                 "Free software under the MIT license.",
                                 "It uses these libraries:\nQt 6.4.2\nlibusb 1.0.26"));
}

TEST_F(QtHelp, WindowsCloseByEscapeAndByTheirButton) {
  press(*open("manualAction", "ManualWindow"), Qt::Key_Escape);
  EXPECT_EQ(window("ManualWindow"), nullptr);
  open("aboutAction", "AboutWindow")->findChild<QPushButton*>("close")->click();
  settle();
  EXPECT_EQ(window("AboutWindow"), nullptr);
  EXPECT_TRUE(open("aboutAction", "AboutWindow")->isVisible());
}

TEST_F(QtHelp, EachWindowIsThereOnce) {
  const QWidget* first = open("manualAction", "ManualWindow");
  EXPECT_EQ(open("manualAction", "ManualWindow"), first);
  int count = 0;
  for (const QWidget* each : QApplication::topLevelWidgets()) {
    count += each->objectName() == "ManualWindow";
  }
  EXPECT_EQ(count, 1);
}

TEST_F(QtHelp, WindowsBlockNothingAndStayUsableBesideASheet) {
  QWidget* manual = open("manualAction", "ManualWindow");
  EXPECT_TRUE(button("PrinterSelectWindow", "Down"_4cc)->isEnabled());
  showSheet("ConfirmDownloadSheet");
  EXPECT_TRUE(manual->isVisible());
  EXPECT_TRUE(field().isEnabled());
  EXPECT_FALSE(menuItem("manualAction")->isEnabled());
  EXPECT_FALSE(menuItem("copyAction")->isEnabled());
  EXPECT_FALSE(menuItem("aboutAction")->isEnabled());
}

TEST_F(QtHelp, WindowsGoWithTheMainWindow) {
  open("manualAction", "ManualWindow");
  toolkit().disposeWindow(mMain);
  settle();
  EXPECT_EQ(window("ManualWindow"), nullptr);
}

TEST_F(QtHelp, CopiesTheReportAndSaysSo) {
  menuItem("copyAction")->trigger();
  EXPECT_FALSE(notice().isVisible());
  mLoop.advance(std::chrono::seconds(0));
  EXPECT_THAT(QApplication::clipboard()->text().toStdString(),
              testing::StartsWith("Firmware updater 1.2.3\nQt 6.4.2\n"));
  EXPECT_TRUE(notice().isVisible());
  EXPECT_EQ(notice().text(), "Diagnostic information was copied.");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&notice());
  EXPECT_EQ(accessible->role(), QAccessible::AlertMessage);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Diagnostic information was copied.");
}

TEST_F(QtHelp, TheNoticeMakesRoomForWhatASelectionLacks) {
  menuItem("copyAction")->trigger();
  mLoop.advance(std::chrono::seconds(0));
  action("Down"_4cc)->trigger();
  EXPECT_FALSE(notice().isVisible());
  menuItem("copyAction")->trigger();
  mLoop.advance(std::chrono::seconds(0));
  EXPECT_TRUE(notice().isVisible());
}

TEST_F(QtHelp, NothingIsCopiedToAWindowThatIsGone) {
  menuItem("copyAction")->trigger();
  toolkit().disposeWindow(mMain);
  settle();
  QApplication::clipboard()->setText("before");
  mLoop.advance(std::chrono::seconds(0));
  EXPECT_EQ(QApplication::clipboard()->text(), "before");
}

TEST_F(QtHelp, QuitWorksInItsWindows) {
  for (const auto& [item, name] :
       {std::pair("manualAction", "ManualWindow"), std::pair("aboutAction", "AboutWindow")}) {
    QWidget* opened = open(item, name);
    ASSERT_EQ(QApplication::activeWindow(), opened);
    QTest::simulateEvent(opened->windowHandle(), true, Qt::Key_Q, Qt::ControlModifier, {}, false);
    settle();
  }
  EXPECT_THAT(mCommands, ElementsAre("quit", "quit"));
}

}  // namespace
