#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/headless/HeadlessToolkit.h"

using namespace platform::literals;
using platform::ControlRef;
using platform::noErr;
using platform::WindowRef;
using testing::ElementsAre;

namespace {

class HeadlessToolkitTest : public testing::Test, private platform::HeadlessToolkit::Listener {
 protected:
  HeadlessToolkitTest() {
    EXPECT_EQ(mToolkit.createWindowFromNib(platform::NibRef::None,
                                           platform::Text::fromUtf8("Window"), mWindow),
              noErr);
    EXPECT_EQ(mToolkit.getControlById(mWindow, {"list"_4cc, 0}, mList), noErr);
    EXPECT_EQ(mToolkit.setDataBrowserCallbacks(mList, {}), noErr);
  }

  platform::HeadlessToolkit mToolkit{*this};
  WindowRef mWindow = WindowRef::None;
  ControlRef mList = ControlRef::None;
  std::vector<std::string> mTold;

 private:
  void rowAdded(platform::ItemId item) override { mTold.push_back("+" + std::to_string(item)); }
  void rowRemoved(platform::ItemId item) override { mTold.push_back("-" + std::to_string(item)); }
};

TEST_F(HeadlessToolkitTest, TellsOfRows) {
  EXPECT_EQ(mToolkit.addDataBrowserItem(mList, 1), noErr);
  EXPECT_EQ(mToolkit.addDataBrowserItem(mList, 2), noErr);
  EXPECT_EQ(mToolkit.removeDataBrowserItem(mList, 1), noErr);
  EXPECT_THAT(mTold, ElementsAre("+1", "+2", "-1"));
}

TEST_F(HeadlessToolkitTest, RowsAreThereOnce) {
  EXPECT_EQ(mToolkit.addDataBrowserItem(mList, 0), platform::errDataBrowserItemNotAdded);
  EXPECT_EQ(mToolkit.addDataBrowserItem(mList, 1), noErr);
  EXPECT_EQ(mToolkit.addDataBrowserItem(mList, 1), platform::errDataBrowserItemNotAdded);
  EXPECT_EQ(mToolkit.removeDataBrowserItem(mList, 2), platform::errDataBrowserItemNotFound);
  EXPECT_THAT(mTold, ElementsAre("+1"));
}

TEST_F(HeadlessToolkitTest, ControlIsTheSameEachTime) {
  ControlRef again = ControlRef::None;
  EXPECT_EQ(mToolkit.getControlById(mWindow, {"list"_4cc, 0}, again), noErr);
  EXPECT_EQ(again, mList);
  EXPECT_EQ(mToolkit.getControlById(mWindow, {"list"_4cc, 1}, again), noErr);
  EXPECT_NE(again, mList);
  EXPECT_EQ(mToolkit.controlOwner(mList), mWindow);
}

TEST_F(HeadlessToolkitTest, EachWindowHasControlsOfItsOwn) {
  WindowRef other = WindowRef::None;
  EXPECT_EQ(mToolkit.createWindowFromNib(platform::NibRef::None, platform::Text(), other), noErr);
  ControlRef control = ControlRef::None;
  EXPECT_EQ(mToolkit.getControlById(other, {"list"_4cc, 0}, control), noErr);
  EXPECT_NE(control, mList);
  EXPECT_EQ(mToolkit.addDataBrowserItem(control, 1), platform::errControlNotFound);
  EXPECT_THAT(mTold, ElementsAre());
}

TEST_F(HeadlessToolkitTest, EachInterfaceHasAReferenceOfItsOwn) {
  platform::NibRef first = platform::NibRef::None;
  platform::NibRef second = platform::NibRef::None;
  EXPECT_EQ(mToolkit.createNibReference(platform::Text(), first), noErr);
  EXPECT_EQ(mToolkit.createNibReference(platform::Text(), second), noErr);
  EXPECT_NE(first, platform::NibRef::None);
  EXPECT_NE(second, platform::NibRef::None);
  EXPECT_NE(first, second);
}

TEST_F(HeadlessToolkitTest, CallbacksAreNoneToBeginWith) {
  platform::DataBrowserCallbacks callbacks{};
  callbacks.itemCompare = [](ControlRef, platform::ItemId, platform::ItemId,
                             platform::FourCharCode) { return true; };
  EXPECT_EQ(mToolkit.initDataBrowserCallbacks(callbacks), noErr);
  EXPECT_EQ(callbacks.itemCompare, nullptr);
}

TEST_F(HeadlessToolkitTest, NothingIsSelectedAndNothingIsWide) {
  platform::ItemId first = 7;
  platform::ItemId last = 7;
  EXPECT_EQ(mToolkit.getSelectionAnchor(mList, first, last), noErr);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
  std::uint16_t width = 7;
  EXPECT_EQ(mToolkit.getNamedColumnWidth(mList, "lcNm"_4cc, width), noErr);
  EXPECT_EQ(width, 0);
}

TEST_F(HeadlessToolkitTest, ControlKeepsWhatRidesOnIt) {
  int value = 0;
  void* found = &value;
  EXPECT_EQ(mToolkit.getControlProperty(mList, "MjFd"_4cc, "ldPl"_4cc, found),
            platform::controlPropertyNotFoundErr);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(mToolkit.setControlProperty(mList, "MjFd"_4cc, "ldPl"_4cc, &value), noErr);
  EXPECT_EQ(mToolkit.getControlProperty(mList, "MjFd"_4cc, "ldPl"_4cc, found), noErr);
  EXPECT_EQ(found, &value);
}

TEST_F(HeadlessToolkitTest, ControlsGoWithTheirWindow) {
  mToolkit.disposeWindow(mWindow);
  ControlRef control = mList;
  EXPECT_EQ(mToolkit.getControlById(mWindow, {"list"_4cc, 0}, control),
            platform::errInvalidWindowRef);
  EXPECT_EQ(control, ControlRef::None);
  EXPECT_EQ(mToolkit.controlOwner(mList), WindowRef::None);
  EXPECT_EQ(mToolkit.setControlEnabled(mList, true), platform::errControlNotFound);
  EXPECT_EQ(mToolkit.showSheetWindow(mWindow, WindowRef::None), platform::errInvalidWindowRef);
}

// As with windows: whoever has lost track of a control hears of it, and no other list is touched.
TEST_F(HeadlessToolkitTest, ControlThatIsNotThereIsAnError) {
  using platform::errControlNotFound;
  mToolkit.addDataBrowserItem(mList, 1);
  const auto gone = static_cast<ControlRef>(99);
  platform::ItemId first = 7;
  platform::ItemId last = 7;
  std::uint16_t width = 7;
  void* value = &width;
  EXPECT_EQ(mToolkit.setControlText(gone, {}), errControlNotFound);
  EXPECT_EQ(mToolkit.setControlEnabled(gone, true), errControlNotFound);
  EXPECT_EQ(mToolkit.setControlProperty(gone, "MjFd"_4cc, "ldPl"_4cc, value), errControlNotFound);
  EXPECT_EQ(mToolkit.getControlProperty(gone, "MjFd"_4cc, "ldPl"_4cc, value), errControlNotFound);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(mToolkit.dataBrowserChangeAttributes(gone, 1, 0), errControlNotFound);
  EXPECT_EQ(mToolkit.setDataBrowserCallbacks(gone, {}), errControlNotFound);
  EXPECT_EQ(mToolkit.setDataBrowserSortProperty(gone, "lcNm"_4cc), errControlNotFound);
  EXPECT_EQ(mToolkit.addDataBrowserItem(gone, 2), errControlNotFound);
  EXPECT_EQ(mToolkit.removeDataBrowserItem(gone, 1), errControlNotFound);
  EXPECT_EQ(mToolkit.getSelectionAnchor(gone, first, last), errControlNotFound);
  EXPECT_EQ(mToolkit.getNamedColumnWidth(gone, "lcNm"_4cc, width), errControlNotFound);
  EXPECT_EQ(mToolkit.setNamedColumnWidth(gone, "lcNm"_4cc, 5), errControlNotFound);
  EXPECT_THAT(mTold, ElementsAre("+1"));
  EXPECT_EQ(mToolkit.removeDataBrowserItem(mList, 1), noErr);
}

TEST_F(HeadlessToolkitTest, ControlThatIsThereTakesEverything) {
  EXPECT_EQ(mToolkit.setControlText(mList, platform::Text::fromUtf8("text")), noErr);
  EXPECT_EQ(mToolkit.setControlEnabled(mList, false), noErr);
  EXPECT_EQ(mToolkit.dataBrowserChangeAttributes(mList, 1, 0), noErr);
  EXPECT_EQ(mToolkit.setDataBrowserSortProperty(mList, "lcNm"_4cc), noErr);
  EXPECT_EQ(mToolkit.setNamedColumnWidth(mList, "lcNm"_4cc, 5), noErr);
}

TEST_F(HeadlessToolkitTest, SheetIsShownAndHiddenWhileItIsThere) {
  EXPECT_EQ(mToolkit.showSheetWindow(mWindow, WindowRef::None), noErr);
  EXPECT_EQ(mToolkit.hideSheetWindow(mWindow), noErr);
  mToolkit.disposeWindow(mWindow);
  EXPECT_EQ(mToolkit.hideSheetWindow(mWindow), platform::errInvalidWindowRef);
}

}  // namespace
