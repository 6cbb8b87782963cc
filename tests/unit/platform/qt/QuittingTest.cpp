#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>
#include <filesystem>

#include "Places.h"
#include "QtWindows.h"

using namespace platform::literals;
using platform::noErr;
using platform::WindowRef;
using testing::ElementsAre;

namespace {

class QtQuitting : public QtWindows {
 protected:
  QtQuitting() { showMain(); }

  static constexpr const char* kMain = "PrinterSelectWindow";
  static constexpr const char* kProgress = "ProgressSheet";
  static constexpr const char* kQuestion = "QuitSheet";

  WindowRef showAlert(WindowRef progress) {
    const WindowRef alert = create("FailedSheet");
    EXPECT_EQ(toolkit().showSheetWindow(alert, progress), noErr);
    settle();
    return alert;
  }

  // Each way in which a user ends a program, by its name.
  std::map<std::string, std::function<void()>> waysToQuit() {
    return {
        {"menu", [this] { action("quit"_4cc)->trigger(); }},
        {"key",
         [] {
           QWidget* active = QApplication::activeWindow();
           ASSERT_NE(active, nullptr);
           QTest::simulateEvent(active->windowHandle(), true, Qt::Key_Q, Qt::ControlModifier, {},
                                false);
         }},
        {"session",
         [] {
           QEvent quit(QEvent::Quit);
           QCoreApplication::sendEvent(qApp, &quit);
         }},
    };
  }

  bool isAsked() { return window(kQuestion) != nullptr && window(kQuestion)->isVisible(); }

  void closeByFrame(const char* name) {
    window(name)->windowHandle()->close();
    settle();
  }
};

TEST_F(QtQuitting, NothingIsAskedWithoutADownload) {
  for (const auto& [way, quit] : waysToQuit()) {
    mCommands.clear();
    quit();
    settle();
    EXPECT_THAT(mCommands, ElementsAre("quit")) << way;
    EXPECT_FALSE(isAsked()) << way;
  }
}

TEST_F(QtQuitting, UnderTheQuestionAndTheAlertsItIsAtOnce) {
  showSheet("ConfirmDownloadSheet");
  for (const auto& [way, quit] : waysToQuit()) {
    mCommands.clear();
    quit();
    settle();
    EXPECT_THAT(mCommands, ElementsAre("quit")) << way;
  }
}

TEST_F(QtQuitting, UnderAnAlertItIsAtOnce) {
  showAlert(showSheet(kProgress));
  for (const auto& [way, quit] : waysToQuit()) {
    mCommands.clear();
    quit();
    settle();
    EXPECT_THAT(mCommands, ElementsAre("quit")) << way;
    EXPECT_FALSE(isAsked()) << way;
  }
}

// A key that is pressed while the program waits reaches its window when a sheet blocks that one.
TEST_F(QtQuitting, KeyThatReachesABlockedSheetCounts) {
  const WindowRef alert = create("FailedSheet");
  const WindowRef progress = showSheet(kProgress);
  ASSERT_EQ(toolkit().showSheetWindow(alert, progress), noErr);
  ASSERT_EQ(QApplication::activeWindow(), window(kProgress));
  QTest::simulateEvent(window(kProgress)->windowHandle(), true, Qt::Key_Q, Qt::ControlModifier, {},
                       false);
  settle();
  EXPECT_THAT(mCommands, ElementsAre("quit"));
}

TEST_F(QtQuitting, KeyCountsWhereTheDesktopShowsTheMenuBar) {
  window(kMain)->findChild<QMenuBar*>()->hide();
  const auto pressQuit = waysToQuit().at("key");
  pressQuit();
  showSheet("ConfirmDownloadSheet");
  pressQuit();
  settle();
  EXPECT_THAT(mCommands, ElementsAre("quit", "quit"));
}

TEST_F(QtQuitting, BlockedMainWindowCloses) {
  showSheet("ConfirmDownloadSheet");
  closeByFrame(kMain);
  EXPECT_EQ(window(kMain), nullptr);
}

TEST_F(QtQuitting, MainWindowUnderAnAlertCloses) {
  showAlert(showSheet(kProgress));
  closeByFrame(kMain);
  EXPECT_EQ(window(kMain), nullptr);
}

TEST_F(QtQuitting, DownloadIsAskedAboutFirst) {
  showSheet(kProgress);
  auto ways = waysToQuit();
  ways["main window"] = [this] { closeByFrame(kMain); };
  ways["frame of the progress"] = [this] { closeByFrame(kProgress); };
  for (const auto& [way, quit] : ways) {
    quit();
    settle();
    EXPECT_THAT(mCommands, ElementsAre()) << way;
    EXPECT_TRUE(isAsked()) << way;
    ASSERT_NE(button(kQuestion, "Keep"_4cc), nullptr);
    button(kQuestion, "Keep"_4cc)->click();
    settle();
    EXPECT_FALSE(isAsked()) << way;
    EXPECT_TRUE(window(kProgress)->isVisible()) << way;
    EXPECT_TRUE(window(kMain)->isVisible()) << way;
    EXPECT_THAT(mCommands, ElementsAre()) << way;
  }
}

TEST_F(QtQuitting, QuitAnywayIsTheOrdinaryQuit) {
  showSheet(kProgress);
  action("quit"_4cc)->trigger();
  button(kQuestion, "quit"_4cc)->click();
  EXPECT_THAT(mCommands, ElementsAre("quit"));
  EXPECT_FALSE(isAsked());
}

TEST_F(QtQuitting, KeepIsTheDefaultAndWhatEscapeMeans) {
  showSheet(kProgress);
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
    action("quit"_4cc)->trigger();
    settle();
    ASSERT_TRUE(isAsked());
    EXPECT_EQ(window(kQuestion)->focusWidget(), button(kQuestion, "Keep"_4cc));
    press(*window(kQuestion), key);
    EXPECT_FALSE(isAsked()) << key;
  }
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtQuitting, QuestionNamesThePrinter) {
  const WindowRef progress = showSheet(kProgress);
  platform::ControlRef label = platform::ControlRef::None;
  ASSERT_EQ(toolkit().getControlById(progress, {"tPNm"_4cc, 0}, label), noErr);
  toolkit().setControlText(label, platform::Text::fromUtf8("Office (10.0.0.9)"));
  action("quit"_4cc)->trigger();
  std::vector<std::string> texts;
  for (const QLabel* each : window(kQuestion)->findChildren<QLabel*>()) {
    if (!each->text().isEmpty()) texts.push_back(each->text().remove(QChar(0x200B)).toStdString());
  }
  EXPECT_THAT(texts, ElementsAre(testing::HasSubstr("10.0.0.9"),
                                 "The download to this printer has not ended. If you quit now, the "
                                 "printer may be left without working firmware."));
  EXPECT_THAT(texts.front(), testing::HasSubstr("Office"));
}

TEST_F(QtQuitting, AskingAgainChangesNothing) {
  showSheet(kProgress);
  for (int i = 0; i < 3; ++i) {
    for (const auto& [way, quit] : waysToQuit()) {
      quit();
      settle();
      EXPECT_TRUE(isAsked()) << way;
    }
    closeByFrame(kMain);
  }
  EXPECT_TRUE(window(kMain)->isVisible());
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtQuitting, EndOfTheDownloadTakesTheQuestionAway) {
  const WindowRef progress = showSheet(kProgress);
  action("quit"_4cc)->trigger();
  ASSERT_EQ(toolkit().hideSheetWindow(progress), noErr);
  settle();
  EXPECT_FALSE(isAsked());
  EXPECT_TRUE(button(kMain, "Down"_4cc)->isEnabled());
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  settle();
  EXPECT_FALSE(isAsked());
  EXPECT_TRUE(window(kProgress)->isEnabled());
}

TEST_F(QtQuitting, AlertTakesThePlaceOfTheQuestion) {
  const WindowRef progress = showSheet(kProgress);
  action("quit"_4cc)->trigger();
  showAlert(progress);
  EXPECT_FALSE(isAsked());
  EXPECT_TRUE(window("FailedSheet")->isVisible());
  EXPECT_TRUE(window("FailedSheet")->isEnabled());
  button("FailedSheet", "Clos"_4cc)->click();
  EXPECT_THAT(mCommands, ElementsAre("Clos"));
}

TEST_F(QtQuitting, ProgressThatIsDisposedTakesTheQuestionWithIt) {
  const WindowRef progress = showSheet(kProgress);
  action("quit"_4cc)->trigger();
  toolkit().disposeWindow(progress);
  settle();
  EXPECT_FALSE(isAsked());
  action("quit"_4cc)->trigger();
  EXPECT_THAT(mCommands, ElementsAre("quit"));
}

TEST_F(QtQuitting, MenuBarStaysWithQuitAlone) {
  showSheet(kProgress);
  EXPECT_TRUE(window(kMain)->findChild<QMenuBar*>()->isEnabled());
  EXPECT_TRUE(action("quit"_4cc)->isEnabled());
  EXPECT_FALSE(action("Down"_4cc)->isEnabled());
}

TEST_F(QtQuitting, MissingQuestionLetsThroughAtOnce) {
  QTemporaryDir directory;
  const std::filesystem::path resources = directory.path().toStdString();
  std::filesystem::copy(builtFile("share/fwupdate"), resources,
                        std::filesystem::copy_options::recursive);
  std::filesystem::remove(resources / "main.nib" / "QuitSheet.ui");
  mBundle.setResourcesDirectory(resources);
  ASSERT_EQ(toolkit().createNibReference(platform::Text::fromUtf8("main"), mNib), noErr);
  showSheet(kProgress);
  action("quit"_4cc)->trigger();
  EXPECT_THAT(mCommands, ElementsAre("quit"));
}

}  // namespace
