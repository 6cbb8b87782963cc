// What answers a sheet and what does not, with keys that are really held down and real clicks.
#include <gmock/gmock.h>

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

  void clickIn(const Node::Rectangle& place) {
    desktop().click(place.x + place.width / 2, place.y + place.height / 2);
  }

  void expectUnanswered() {
    EXPECT_TRUE(isOnScreen("push button", "Yes"));
    EXPECT_EQ(timesLogged("Connecting to I/O transport..."), 0u);
  }
};

TEST_F(AnsweringASheet, HeldReturnDoesNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  selectByKey();
  desktop().holdDown("Return");
  button("Yes");
  std::this_thread::sleep_for(4s);
  expectUnanswered();
  desktop().letGo("Return");
  std::this_thread::sleep_for(1s);
  expectUnanswered();
  press("Return");
  progressBar();
}

// The second opens the question, and the third comes where Yes is.
class ThirdClick : public AnsweringASheet,
                   public testing::WithParamInterface<std::chrono::milliseconds> {};

INSTANTIATE_TEST_SUITE_P(After, ThirdClick, testing::Values(80ms, 150ms, 220ms));

TEST_P(ThirdClick, DoesNotConfirmTheQuestion) {
  const auto printer = startPrinter("Office");
  startProgram();
  const Node::Rectangle row = cell("Office").extents();
  selectByKey();
  press("Return");
  const Node::Rectangle yes = button("Yes").extents();
  answerByKey("Escape", "Yes");
  waitForActive("Printer Firmware Update");
  clickIn(row);
  std::this_thread::sleep_for(GetParam());
  clickIn(row);
  std::this_thread::sleep_for(GetParam());
  clickIn(yes);
  button("Yes");
  std::this_thread::sleep_for(500ms);
  expectUnanswered();
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
  button("Yes");
  std::this_thread::sleep_for(4s);
  click(button("Yes"));
  std::this_thread::sleep_for(500ms);
  expectUnanswered();
  desktop().letGo("Shift_L");
  std::this_thread::sleep_for(1s);
  click(button("Yes"));
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
    answerByKey("Escape", "Yes");
    waitForActive("Printer Firmware Update");
    press("Return");
    answerByKey("Return", "Yes");
    answerByKey("Return", "Close");
    waitForActive("Printer Firmware Update");
    EXPECT_TRUE(cell("Office").isSelected());
  }
}

}  // namespace
