// What answers a sheet and what does not, with keys that are really held down and real clicks.
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>

#include "DesktopTest.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;

class AnsweringASheet : public DesktopTest {
 protected:
  void selectByKey() {
    cell("Office");
    press("Home");
    enabledButton("Download");
  }

  void expectUnanswered() {
    EXPECT_TRUE(isOnScreen("push button", "Download firmware"));
    EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
  }
};

TEST_F(AnsweringASheet, HeldReturnDoesNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  selectByKey();
  desktop().holdDown("Return");
  button("Download firmware");
  std::this_thread::sleep_for(4s);
  expectUnanswered();
  desktop().letGo("Return");
  std::this_thread::sleep_for(1s);
  expectUnanswered();
  press("Return");
  progressBar();
}

// A key that is held down is not repeated there in a window that gets the keyboard meanwhile, so it
// is pressed anew.
class AnsweringOnWayland : public AnsweringASheet {
 protected:
  AnsweringOnWayland() { useWayland(desktop::Compositor::Kind::Weston); }
};

TEST_F(AnsweringOnWayland, ReturnAgainAndAgainDoesNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  selectByKey();
  desktop().holdDown("Return");
  button("Download firmware");
  std::this_thread::sleep_for(2s);
  expectUnanswered();
  desktop().letGo("Return");
  for (int i = 0; i < 10; ++i) {
    press("Return");
    std::this_thread::sleep_for(80ms);
  }
  expectUnanswered();
  std::this_thread::sleep_for(1s);
  press("Return");
  progressBar();
}

// The second opens the question. From the third on they come where its button is about to appear,
// so that one of them is the first that it can get.
class ClicksThatGoOn : public AnsweringASheet,
                       public testing::WithParamInterface<std::chrono::milliseconds> {};

INSTANTIATE_TEST_SUITE_P(Every, ClicksThatGoOn, testing::Values(80ms, 150ms, 220ms),
                         [](const auto& interval) {
                           return std::to_string(interval.param.count());
                         });

// The sheet does not always appear in quite the same place, by the size of its frame; in double
// size, its button is large enough for that.
TEST_P(ClicksThatGoOn, DoNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  setScale(2);
  startProgram({{"QT_SCALE_FACTOR", "2"}});
  selectByKey();
  const Node::Rectangle row = cell("Office").extents();
  press("Return");
  waitForActive("Confirm the Download");
  const Node::Rectangle yes = button("Download firmware").extents();
  answerByKey("Escape", "Download firmware");
  waitForActive("Printer Firmware Update");
  for (int i = 0; i < 20; ++i) {
    click(i < 2 ? row : yes);
    std::this_thread::sleep_for(GetParam());
  }
  expectUnanswered();
  const Node::Rectangle again = button("Download firmware").extents();
  EXPECT_LT(std::abs(again.x - yes.x), yes.width / 2);
  EXPECT_LT(std::abs(again.y - yes.y), yes.height / 2);
  answer("Download firmware");
  progressBar();
}

// It gets the click late, but its user had not seen the question for long.
TEST_F(AnsweringASheet, ClickWhileTheProgramStandsStillDoesNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  selectByKey();
  press("Return");
  const Node::Rectangle yes = button("Download firmware").extents();
  kill(program().pid(), SIGSTOP);
  click(yes);
  std::this_thread::sleep_for(2s);
  kill(program().pid(), SIGCONT);
  std::this_thread::sleep_for(500ms);
  expectUnanswered();
  std::this_thread::sleep_for(1s);
  click(yes);
  progressBar();
}

TEST_F(AnsweringASheet, HeldReturnDoesNotCloseAnAlert) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  desktop().holdDown("Return");
  button("Close");
  std::this_thread::sleep_for(3s);
  EXPECT_TRUE(isOnScreen("push button", "Close"));
  desktop().letGo("Return");
}

// Letting go of a modifier frees the sheet, and what is pressed then counts at once.
TEST_F(AnsweringASheet, HeldShiftBlocksUntilItIsLetGo) {
  const auto printer = startPrinter("Office");
  startProgram();
  selectByKey();
  desktop().holdDown("Shift_L");
  click(button("Download"));
  button("Download firmware");
  std::this_thread::sleep_for(4s);
  click(button("Download firmware"));
  std::this_thread::sleep_for(500ms);
  expectUnanswered();
  desktop().letGo("Shift_L");
  std::this_thread::sleep_for(1s);
  click(button("Download firmware"));
  progressBar();
}

// The keyboard after a sheet, under window managers that hand it on in different ways.
class KeyboardAfterASheet : public DesktopTest, public testing::WithParamInterface<const char*> {
 protected:
  KeyboardAfterASheet() : DesktopTest(1920, 1200, GetParam()) {}
};

std::string nameOf(const testing::TestParamInfo<const char*>& windowManager) {
  return windowManager.param;
}

INSTANTIATE_TEST_SUITE_P(Under, KeyboardAfterASheet, testing::Values("openbox", "metacity"),
                         nameOf);

TEST_P(KeyboardAfterASheet, GoesBackToTheList) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  click(cell("Office"));
  enabledButton("Download");
  for (int i = 0; i < 3; ++i) {
    press("Return");
    answerByKey("Escape", "Download firmware");
    waitForActive("Printer Firmware Update");
    press("Return");
    answerByKey("Return", "Download firmware");
    answerByKey("Return", "Close");
    waitForActive("Printer Firmware Update");
    EXPECT_TRUE(cell("Office").isSelected());
  }
}

}  // namespace
