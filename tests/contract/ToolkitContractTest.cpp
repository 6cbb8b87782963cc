#include "ToolkitContract.h"

using namespace platform::literals;
using platform::ControlRef;
using platform::NibRef;
using platform::noErr;
using platform::Text;
using platform::WindowRef;
using testing::ElementsAre;

namespace {

class ToolkitWindows : public ToolkitContract {
 protected:
  static constexpr const char* kMain = "PrinterSelectWindow";

  // The main window with its Download button enabled.
  void showMain() {
    toolkit().showWindow(mMain);
    EXPECT_EQ(toolkit().setControlEnabled(control(mMain, {0, 2}), true), noErr);
  }
};

INSTANTIATE_TEST_SUITE_P(Every, ToolkitWindows, testing::ValuesIn(toolkitImplementations()),
                         nameOf);

TEST_P(ToolkitWindows, UnknownNibIsNotFound) {
  NibRef nib{77};
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("other"), nib), -10960);
  EXPECT_EQ(nib, NibRef::None);
}

TEST_P(ToolkitWindows, UnknownWindowAndMenuBarAreNotFound) {
  WindowRef window{77};
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8("NoSuchWindow"), window), -10962);
  EXPECT_EQ(window, WindowRef::None);
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("NoSuchBar")), -10962);
}

TEST_P(ToolkitWindows, DisposedNibGivesNoWindow) {
  toolkit().disposeNibReference(mNib);
  WindowRef window{77};
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8(kMain), window), -10960);
  EXPECT_EQ(window, WindowRef::None);
}

TEST_P(ToolkitWindows, WindowIsHiddenUntilItIsShown) {
  EXPECT_FALSE(mWorld->isVisible(kMain));
  toolkit().showWindow(mMain);
  EXPECT_TRUE(mWorld->isVisible(kMain));
}

TEST_P(ToolkitWindows, DisposedWindowIsGone) {
  toolkit().showWindow(mMain);
  const ControlRef button = control(mMain, {0, 2});
  toolkit().disposeWindow(mMain);
  EXPECT_FALSE(mWorld->isVisible(kMain));
  toolkit().disposeWindow(mMain);
  toolkit().showWindow(mMain);
  ControlRef found{77};
  EXPECT_EQ(toolkit().getControlById(mMain, {0, 2}, found), -5600);
  EXPECT_EQ(found, ControlRef::None);
  EXPECT_EQ(toolkit().setControlEnabled(button, true), -30584);
  EXPECT_EQ(toolkit().controlOwner(button), WindowRef::None);
}

TEST_P(ToolkitWindows, ControlsAreFoundByTheirIds) {
  const ControlRef list = control(mMain, {"lPrn"_4cc, 0});
  const ControlRef button = control(mMain, {0, 2});
  EXPECT_NE(list, ControlRef::None);
  EXPECT_NE(list, button);
  EXPECT_EQ(control(mMain, {0, 2}), button);
  EXPECT_EQ(toolkit().controlOwner(list), mMain);
  ControlRef found{77};
  EXPECT_EQ(toolkit().getControlById(mMain, {"tCnf"_4cc, 0}, found), -30584);
  EXPECT_EQ(found, ControlRef::None);
}

TEST_P(ToolkitWindows, PropertyRidesOnItsControl) {
  const ControlRef list = control(mMain, {"lPrn"_4cc, 0});
  void* value = this;
  EXPECT_EQ(toolkit().getControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, value), -5604);
  EXPECT_EQ(toolkit().setControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, this), noErr);
  EXPECT_EQ(toolkit().getControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, value), noErr);
  EXPECT_EQ(value, this);
  EXPECT_EQ(toolkit().setControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, nullptr), noErr);
  EXPECT_EQ(toolkit().getControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, value), noErr);
  EXPECT_EQ(value, nullptr);
}

TEST_P(ToolkitWindows, TextIsShown) {
  const WindowRef sheet = create("ProgressSheet");
  const ControlRef label = control(sheet, {"tPNm"_4cc, 0});
  EXPECT_EQ(toolkit().setControlText(label, Text::fromUtf8("KX350T (10.0.0.9)")), noErr);
  EXPECT_EQ(mWorld->text("ProgressSheet", {"tPNm"_4cc, 0}), "KX350T (10.0.0.9)");
  EXPECT_EQ(toolkit().setControlText(label, Text()), noErr);
  EXPECT_EQ(mWorld->text("ProgressSheet", {"tPNm"_4cc, 0}), std::nullopt);
}

TEST_P(ToolkitWindows, ButtonIssuesItsCommandWhileItIsEnabled) {
  toolkit().showWindow(mMain);
  mWorld->press(kMain, "Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre());
  EXPECT_EQ(toolkit().setControlEnabled(control(mMain, {0, 2}), true), noErr);
  mWorld->press(kMain, "Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command Down"));
  EXPECT_EQ(toolkit().setControlEnabled(control(mMain, {0, 2}), false), noErr);
  mWorld->press(kMain, "Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre());
}

TEST_P(ToolkitWindows, MenuItemsIssueTheirCommands) {
  toolkit().showWindow(mMain);
  mWorld->chooseMenuItem("Down"_4cc);
  mWorld->chooseMenuItem("quit"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command Down", "command quit"));
}

TEST_P(ToolkitWindows, WindowThatNobodyKeepsOpenIsDisposedWhenItCloses) {
  showMain();
  mWorld->closeWindow(kMain);
  EXPECT_THAT(mTold, ElementsAre("close"));
  EXPECT_FALSE(mWorld->isVisible(kMain));
  ControlRef found = ControlRef::None;
  EXPECT_EQ(toolkit().getControlById(mMain, {0, 2}, found), -5600);
}

TEST_P(ToolkitWindows, SheetBlocksItsParentUntilItIsHidden) {
  showMain();
  const WindowRef sheet = create("ConfirmDownloadSheet");
  EXPECT_FALSE(mWorld->isVisible("ConfirmDownloadSheet"));
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  EXPECT_TRUE(mWorld->isVisible("ConfirmDownloadSheet"));
  EXPECT_FALSE(mWorld->isEnabled(kMain, "Down"_4cc));
  mWorld->press(kMain, "Down"_4cc);
  mWorld->chooseMenuItem("Down"_4cc);
  EXPECT_THAT(mTold, ElementsAre());

  mWorld->press("ConfirmDownloadSheet", "Yes "_4cc);
  mWorld->press("ConfirmDownloadSheet", "No  "_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command Yes ", "command No  "));

  ASSERT_EQ(toolkit().hideSheetWindow(sheet), noErr);
  EXPECT_FALSE(mWorld->isVisible("ConfirmDownloadSheet"));
  mWorld->press("ConfirmDownloadSheet", "Yes "_4cc);
  EXPECT_THAT(takeTold(), ElementsAre());
  mWorld->press(kMain, "Down"_4cc);
  mWorld->chooseMenuItem("Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command Down", "command Down"));
}

TEST_P(ToolkitWindows, SheetOnASheetBlocksBothWindows) {
  showMain();
  const WindowRef progress = create("ProgressSheet");
  const WindowRef alert = create("FailedSheet");
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  ASSERT_EQ(toolkit().showSheetWindow(alert, progress), noErr);
  mWorld->press(kMain, "Down"_4cc);
  mWorld->chooseMenuItem("Down"_4cc);
  mWorld->press("FailedSheet", "Clos"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command Clos"));

  ASSERT_EQ(toolkit().hideSheetWindow(alert), noErr);
  toolkit().disposeWindow(alert);
  EXPECT_FALSE(mWorld->isVisible("FailedSheet"));
  mWorld->chooseMenuItem("Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre());
  ASSERT_EQ(toolkit().hideSheetWindow(progress), noErr);
  mWorld->chooseMenuItem("Down"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command Down"));
}

TEST_P(ToolkitWindows, SheetDoesNotBlockQuit) {
  showMain();
  ASSERT_EQ(toolkit().showSheetWindow(create("ConfirmDownloadSheet"), mMain), noErr);
  mWorld->chooseMenuItem("quit"_4cc);
  EXPECT_THAT(takeTold(), ElementsAre("command quit"));
  mWorld->closeWindow(kMain);
  EXPECT_THAT(takeTold(), ElementsAre("close"));
  EXPECT_FALSE(mWorld->isVisible(kMain));
}

TEST_P(ToolkitWindows, QuitDuringADownloadIsAskedAboutFirst) {
  showMain();
  ASSERT_EQ(toolkit().showSheetWindow(create("ProgressSheet"), mMain), noErr);
  mWorld->closeWindow(kMain);
  EXPECT_TRUE(mWorld->isVisible(kMain));
  EXPECT_TRUE(mWorld->isVisible("QuitSheet"));
  mWorld->press("QuitSheet", "Keep"_4cc);
  EXPECT_FALSE(mWorld->isVisible("QuitSheet"));
  EXPECT_TRUE(mWorld->isVisible("ProgressSheet"));
  mWorld->chooseMenuItem("quit"_4cc);
  EXPECT_TRUE(mWorld->isVisible("QuitSheet"));
  mWorld->chooseMenuItem("quit"_4cc);
  mWorld->closeWindow(kMain);
  EXPECT_THAT(mTold, ElementsAre());
  mWorld->press("QuitSheet", "quit"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command quit"));
  EXPECT_FALSE(mWorld->isVisible("QuitSheet"));
}

TEST_P(ToolkitWindows, QuestionAboutADownloadEndsWithIt) {
  showMain();
  const WindowRef progress = create("ProgressSheet");
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  mWorld->chooseMenuItem("quit"_4cc);
  ASSERT_EQ(toolkit().showSheetWindow(create("FailedSheet"), progress), noErr);
  EXPECT_FALSE(mWorld->isVisible("QuitSheet"));
  mWorld->press("FailedSheet", "Clos"_4cc);
  mWorld->chooseMenuItem("quit"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command Clos", "command quit"));
}

TEST_P(ToolkitWindows, QuestionAboutADownloadThatSucceedsGoes) {
  showMain();
  const WindowRef progress = create("ProgressSheet");
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  mWorld->chooseMenuItem("quit"_4cc);
  ASSERT_EQ(toolkit().hideSheetWindow(progress), noErr);
  EXPECT_FALSE(mWorld->isVisible("QuitSheet"));
  mWorld->press(kMain, "Down"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command Down"));
}

TEST_P(ToolkitWindows, SheetOfAHiddenSheetAppearsTogetherWithIt) {
  showMain();
  const WindowRef progress = create("ProgressSheet");
  const WindowRef alert = create("UpToDateSheet");
  ASSERT_EQ(toolkit().showSheetWindow(alert, progress), noErr);
  EXPECT_FALSE(mWorld->isVisible("UpToDateSheet"));
  ASSERT_EQ(toolkit().showSheetWindow(progress, mMain), noErr);
  EXPECT_TRUE(mWorld->isVisible("ProgressSheet"));
  EXPECT_TRUE(mWorld->isVisible("UpToDateSheet"));
  mWorld->press("UpToDateSheet", "Clos"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command Clos"));
}

TEST_P(ToolkitWindows, SheetOfAHiddenWindowAppearsTogetherWithIt) {
  const WindowRef sheet = create("ConfirmDownloadSheet");
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  EXPECT_FALSE(mWorld->isVisible("ConfirmDownloadSheet"));
  toolkit().showWindow(mMain);
  EXPECT_TRUE(mWorld->isVisible("ConfirmDownloadSheet"));
  mWorld->chooseMenuItem("Down"_4cc);
  EXPECT_THAT(mTold, ElementsAre());
}

TEST_P(ToolkitWindows, EnablingABlockedControlShowsOnceTheSheetIsGone) {
  toolkit().showWindow(mMain);
  const WindowRef sheet = create("ConfirmDownloadSheet");
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  EXPECT_EQ(toolkit().setControlEnabled(control(mMain, {0, 2}), true), noErr);
  EXPECT_FALSE(mWorld->isEnabled(kMain, "Down"_4cc));
  ASSERT_EQ(toolkit().hideSheetWindow(sheet), noErr);
  EXPECT_TRUE(mWorld->isEnabled(kMain, "Down"_4cc));
}

TEST_P(ToolkitWindows, DisablingABlockedControlLastsWhenTheSheetIsGone) {
  showMain();
  const WindowRef sheet = create("ConfirmDownloadSheet");
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  EXPECT_EQ(toolkit().setControlEnabled(control(mMain, {0, 2}), false), noErr);
  ASSERT_EQ(toolkit().hideSheetWindow(sheet), noErr);
  EXPECT_FALSE(mWorld->isEnabled(kMain, "Down"_4cc));
}

TEST_P(ToolkitWindows, DisposingASheetThatIsUpFreesItsParent) {
  showMain();
  const WindowRef sheet = create("ConfirmDownloadSheet");
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  toolkit().disposeWindow(sheet);
  EXPECT_FALSE(mWorld->isVisible("ConfirmDownloadSheet"));
  mWorld->press(kMain, "Down"_4cc);
  EXPECT_THAT(mTold, ElementsAre("command Down"));
}

TEST_P(ToolkitWindows, SheetOutlivesItsParent) {
  showMain();
  const WindowRef sheet = create("ProgressSheet");
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), noErr);
  toolkit().disposeWindow(mMain);
  EXPECT_FALSE(mWorld->isVisible("ProgressSheet"));
  EXPECT_EQ(toolkit().hideSheetWindow(sheet), noErr);
  EXPECT_NE(control(sheet, {"tPNm"_4cc, 0}), ControlRef::None);
}

TEST_P(ToolkitWindows, SheetsOfWindowsThatAreGoneAreRefused) {
  const WindowRef sheet = create("ConfirmDownloadSheet");
  EXPECT_EQ(toolkit().showSheetWindow(sheet, WindowRef{999}), -5600);
  EXPECT_EQ(toolkit().showSheetWindow(WindowRef{999}, mMain), -5600);
  EXPECT_EQ(toolkit().hideSheetWindow(WindowRef{999}), -5600);
  EXPECT_EQ(toolkit().showSheetWindow(sheet, sheet), -5600);
  EXPECT_EQ(toolkit().showSheetWindow(mMain, sheet), -5600);
}

TEST_P(ToolkitWindows, SheetsThatBlockEachOtherAreRefused) {
  const WindowRef first = create("ProgressSheet");
  const WindowRef second = create("FailedSheet");
  ASSERT_EQ(toolkit().showSheetWindow(second, first), noErr);
  EXPECT_EQ(toolkit().showSheetWindow(first, second), -5600);
}

}  // namespace
