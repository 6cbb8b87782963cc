#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <array>
#include <chrono>

#include "platform/qt/SheetDialog.h"
#include "platform/qt/SheetGuard.h"

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class GuiApplication {
 public:
  GuiApplication() { settle(); }

  static void settle() { QCoreApplication::processEvents(); }

 private:
  // Qt refers to them.
  int mArgumentCount = 3;
  std::array<char, 5> mName{"test"};
  std::array<char, 10> mOption{"-platform"};
  std::array<char, 10> mPlatform{"offscreen"};
  std::array<char*, 4> mArguments{mName.data(), mOption.data(), mPlatform.data(), nullptr};

  QApplication mApplication{mArgumentCount, mArguments.data()};
};

// A sheet with the buttons Yes, the default one, and No, and time turned by hand. Keys and clicks
// take the way that the user's own take.
class SheetGuardTest : public testing::Test {
 protected:
  SheetGuardTest() {
    mMain.show();
    auto* layout = new QVBoxLayout(&mSheet);
    for (QPushButton* button : {mYes, mNo}) {
      layout->addWidget(button);
      QObject::connect(button, &QPushButton::clicked, &mSheet,
                       [this, button] { mAnswers.push_back(button->text().toStdString()); });
    }
    mYes->setDefault(true);
    mSheet.setProperty("cancelCommand", "No  ");
    mSheet.whenCommanded([this](platform::FourCharCode) { mAnswers.emplace_back("cancelled"); });
    GuiApplication::settle();
  }

  void showSheet() {
    mSheet.showOver(mMain);
    GuiApplication::settle();
  }

  void showQuietSheet() {
    showSheet();
    pass(500ms);
  }

  void pass(std::chrono::milliseconds time) { mNow += time; }

  void keyDown(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
               bool isRepeat = false) {
    QTest::simulateEvent(window.windowHandle(), true, key, modifiers, {}, isRepeat);
  }
  void keyUp(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
             bool isRepeat = false) {
    QTest::simulateEvent(window.windowHandle(), false, key, modifiers, {}, isRepeat);
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    keyDown(mSheet, key, modifiers);
    keyUp(mSheet, key, modifiers);
  }

  // What a key that is held down sends again and again; it is not always marked as such.
  void repeat(Qt::Key key, bool isMarked) {
    keyUp(mSheet, key, {}, isMarked);
    keyDown(mSheet, key, {}, isMarked);
  }

  void click(QPushButton* button) {
    QTest::mouseClick(mSheet.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
    GuiApplication::settle();
  }

  // A button that is not clicked with the mouse goes down for a moment first.
  void waitForAnswer() {
    while (mAnswers.empty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  void closeByFrame() { mSheet.windowHandle()->close(); }

  GuiApplication mApplication;
  platform::SheetGuard::Time mNow{1h};
  platform::SheetGuard mGuard{[this] { return mNow; }};
  QWidget mMain;
  platform::SheetDialog mSheet{nullptr};
  QPushButton* mYes = new QPushButton("&Yes", &mSheet);
  QPushButton* mNo = new QPushButton("&No", &mSheet);
  std::vector<std::string> mAnswers;
};

TEST_F(SheetGuardTest, QuietSheetTakesTheFirstOfEachKind) {
  const std::map<const char*, std::function<void()>> ways{
      {"&Yes", [this] { click(mYes); }},
      {"&No", [this] { click(mNo); }},
      {"cancelled", [this] { closeByFrame(); }},
  };
  for (const auto& [answer, give] : ways) {
    mAnswers.clear();
    showQuietSheet();
    give();
    EXPECT_THAT(mAnswers, ElementsAre(answer));
    mSheet.hide();
  }
  const std::map<Qt::Key, const char*> keys{{Qt::Key_Return, "&Yes"},
                                            {Qt::Key_Enter, "&Yes"},
                                            {Qt::Key_Space, "&Yes"},
                                            {Qt::Key_Escape, "cancelled"}};
  for (const auto& [key, answer] : keys) {
    mAnswers.clear();
    showQuietSheet();
    press(key);
    EXPECT_THAT(mAnswers, ElementsAre(answer)) << key;
    mSheet.hide();
  }
}

TEST_F(SheetGuardTest, QuietSheetTakesTheKeysOfItsButtons) {
  showQuietSheet();
  keyDown(mSheet, Qt::Key_Alt);
  press(Qt::Key_N, Qt::AltModifier);
  waitForAnswer();
  EXPECT_THAT(mAnswers, ElementsAre("&No"));
}

TEST_F(SheetGuardTest, NothingAnswersBeforeTheQuietTimeIsOver) {
  showSheet();
  pass(499ms);
  press(Qt::Key_Return);
  for (const Qt::Key key : {Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) press(key);
  press(Qt::Key_Y, Qt::AltModifier);
  EXPECT_FALSE(mYes->isDown());
  click(mYes);
  closeByFrame();
  EXPECT_THAT(mAnswers, IsEmpty());
  EXPECT_TRUE(mSheet.isVisible());
}

TEST_F(SheetGuardTest, QuietTimeOfAClickIsHalfASecond) {
  showSheet();
  pass(499ms);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(500ms);
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, EachImpatientPressStartsTheQuietTimeAnew) {
  showSheet();
  for (int i = 0; i < 5; ++i) {
    pass(400ms);
    click(mYes);
    pass(400ms);
    press(Qt::Key_Return);
    pass(400ms);
    closeByFrame();
  }
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(500ms);
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, KeysMayFollowEachOtherQuicklyOnceOneWasTaken) {
  showQuietSheet();
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, ElementsAre("&No"));
}

TEST_F(SheetGuardTest, HeldKeyAnswersNothingWhileItRepeats) {
  for (const bool isMarked : {true, false}) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
      keyDown(mMain, key);
      showSheet();
      pass(660ms);
      for (int i = 0; i < 50; ++i) {
        repeat(key, isMarked);
        pass(40ms);
      }
      EXPECT_THAT(mAnswers, IsEmpty()) << key << isMarked;
      keyUp(mSheet, key);
      pass(500ms);
      press(Qt::Key_Return);
      EXPECT_THAT(mAnswers, ElementsAre("&Yes")) << key << isMarked;
      mAnswers.clear();
      mSheet.hide();
    }
  }
}

TEST_F(SheetGuardTest, HeldKeyThatRepeatsSlowlyAnswersNothing) {
  for (const bool isMarked : {true, false}) {
    keyDown(mMain, Qt::Key_Return);
    showSheet();
    for (int i = 0; i < 5; ++i) {
      pass(2s);
      repeat(Qt::Key_Return, isMarked);
    }
    click(mYes);
    EXPECT_THAT(mAnswers, IsEmpty()) << isMarked;
    keyUp(mSheet, Qt::Key_Return);
    mSheet.hide();
  }
}

TEST_F(SheetGuardTest, HeldKeyShutsOutTheMouse) {
  keyDown(mMain, Qt::Key_Return);
  showSheet();
  pass(2s);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
  keyUp(mSheet, Qt::Key_Return);
  pass(499ms);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(500ms);
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, KeyThatWasPressedForAnotherProgramAnswersNothing) {
  showQuietSheet();
  pass(10s);
  repeat(Qt::Key_Return, false);
  pass(40ms);
  repeat(Qt::Key_Return, false);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
}

TEST_F(SheetGuardTest, KeyThatIsLetGoInAnotherProgramIsForgotten) {
  keyDown(mMain, Qt::Key_Return);
  showSheet();
  pass(2999ms);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(1ms);
  pass(500ms);
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, HeldModifierShutsOutUntilItIsLetGo) {
  for (const auto& [key, modifier] :
       std::map<Qt::Key, Qt::KeyboardModifier>{{Qt::Key_Shift, Qt::ShiftModifier},
                                               {Qt::Key_Control, Qt::ControlModifier},
                                               {Qt::Key_Alt, Qt::AltModifier},
                                               {Qt::Key_Meta, Qt::MetaModifier}}) {
    keyDown(mMain, key, modifier);
    showSheet();
    pass(10s);
    QTest::mouseClick(mSheet.windowHandle(), Qt::LeftButton, modifier, mYes->geometry().center());
    keyDown(mSheet, Qt::Key_Return, modifier);
    keyUp(mSheet, Qt::Key_Return, modifier);
    EXPECT_THAT(mAnswers, IsEmpty()) << key;
    keyUp(mSheet, key, modifier);
    pass(500ms);
    press(Qt::Key_Return);
    EXPECT_THAT(mAnswers, ElementsAre("&Yes")) << key;
    mAnswers.clear();
    mSheet.hide();
  }
}

TEST_F(SheetGuardTest, ModifierThatIsLetGoInAnotherProgramIsForgotten) {
  keyDown(mMain, Qt::Key_Shift, Qt::ShiftModifier);
  showSheet();
  pass(10s);
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

// The sheet before took keys, and so this one was taken, too.
TEST_F(SheetGuardTest, KeyThatIsHeldSinceASheetBeforeShutsOutUntilItIsLetGo) {
  showQuietSheet();
  press(Qt::Key_Return);
  mSheet.hide();
  mAnswers.clear();
  keyDown(mMain, Qt::Key_Return);
  showSheet();
  pass(600ms);
  click(mNo);
  EXPECT_THAT(mAnswers, IsEmpty());
  keyUp(mSheet, Qt::Key_Return);
  pass(500ms);
  click(mNo);
  EXPECT_THAT(mAnswers, ElementsAre("&No"));
}

TEST_F(SheetGuardTest, KeyThatWasTakenAnswersOnceHoweverLongItIsHeld) {
  showQuietSheet();
  keyDown(mSheet, Qt::Key_Escape);
  keyDown(mSheet, Qt::Key_Escape, {}, true);
  EXPECT_THAT(mAnswers, ElementsAre("cancelled"));
}

TEST_F(SheetGuardTest, EndOfAKeyThatNobodyKnewOfMakesKeysWaitAgain) {
  showQuietSheet();
  press(Qt::Key_Tab);
  keyUp(mSheet, Qt::Key_Return);
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, IsEmpty());
}

TEST_F(SheetGuardTest, HeldMouseButtonShutsOutUntilItIsLetGo) {
  QTest::mousePress(mMain.windowHandle(), Qt::RightButton);
  showSheet();
  pass(10s);
  QTest::mousePress(mSheet.windowHandle(), Qt::LeftButton, {}, mYes->geometry().center());
  QTest::mouseRelease(mSheet.windowHandle(), Qt::LeftButton, {}, mYes->geometry().center());
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(10s);
  QTest::mouseRelease(mMain.windowHandle(), Qt::RightButton);
  click(mYes);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(500ms);
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, ButtonThatWentDownTooEarlyStaysTooEarly) {
  showSheet();
  QTest::mousePress(mSheet.windowHandle(), Qt::LeftButton, {}, mYes->geometry().center());
  pass(5s);
  press(Qt::Key_Return);
  QTest::mouseRelease(mSheet.windowHandle(), Qt::LeftButton, {}, mYes->geometry().center());
  EXPECT_THAT(mAnswers, IsEmpty());
}

TEST_F(SheetGuardTest, TimeBeforeTheSheetIsOnTheScreenDoesNotCount) {
  mSheet.showOver(mMain);
  pass(5s);
  click(mYes);
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, IsEmpty());
}

TEST_F(SheetGuardTest, KeysWaitAgainWhenTheKeyboardComesLate) {
  showQuietSheet();
  mMain.activateWindow();
  GuiApplication::settle();
  mSheet.activateWindow();
  GuiApplication::settle();
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, IsEmpty());
  pass(500ms);
  press(Qt::Key_Return);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, ClickThatAlsoBringsTheKeyboardCounts) {
  showQuietSheet();
  mMain.activateWindow();
  GuiApplication::settle();
  mSheet.activateWindow();
  GuiApplication::settle();
  click(mYes);
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, EachAppearanceHasItsOwnQuietTime) {
  showQuietSheet();
  press(Qt::Key_Tab);
  mSheet.hide();
  GuiApplication::settle();
  pass(500ms);
  showSheet();
  press(Qt::Key_Return);
  click(mYes);
  closeByFrame();
  EXPECT_THAT(mAnswers, IsEmpty());
}

TEST_F(SheetGuardTest, AssistiveTechnologyAnswersAtOnce) {
  keyDown(mMain, Qt::Key_Return);
  showSheet();
  QAccessibleInterface* yes = QAccessible::queryAccessibleInterface(mYes);
  yes->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  waitForAnswer();
  EXPECT_THAT(mAnswers, ElementsAre("&Yes"));
}

TEST_F(SheetGuardTest, OtherWindowsTakeEverythingAtOnce) {
  QPushButton button(&mMain);
  button.show();
  button.setFocus();
  int clicks = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
  showSheet();
  keyDown(mMain, Qt::Key_Space);
  keyUp(mMain, Qt::Key_Space);
  EXPECT_EQ(clicks, 1);
}

TEST_F(SheetGuardTest, ActionsOfASheetAreNotItsAnswers) {
  QAction quit(&mSheet);
  quit.setShortcut(Qt::CTRL | Qt::Key_Q);
  mSheet.addAction(&quit);
  QObject::connect(&quit, &QAction::triggered, [this] { mAnswers.emplace_back("quit"); });
  showSheet();
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_THAT(mAnswers, ElementsAre("quit"));
}

}  // namespace
