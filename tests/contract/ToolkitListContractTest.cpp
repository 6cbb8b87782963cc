#include "ToolkitContract.h"

using namespace platform::literals;
using platform::ControlRef;
using platform::ItemId;
using platform::noErr;
using testing::ElementsAre;

namespace {

class ToolkitList : public ToolkitContract {
 protected:
  ToolkitList() {
    setUpList();
    toolkit().showWindow(mMain);
    mTold.clear();
  }
};

INSTANTIATE_TEST_SUITE_P(Every, ToolkitList, testing::ValuesIn(toolkitImplementations()), nameOf);

TEST_P(ToolkitList, RowsAreSortedAsTheyCome) {
  addRow(1, "Lab");
  addRow(2, "Front desk");
  addRow(3, "Office");
  addRow(4, "Annex");
  EXPECT_THAT(mWorld->rows(), ElementsAre(4, 2, 1, 3));
}

TEST_P(ToolkitList, RowsOfOneRankKeepTheirOrder) {
  addRow(1, "Lab", "same");
  addRow(2, "Office", "same");
  addRow(3, "Annex", "same");
  ASSERT_EQ(toolkit().setDataBrowserSortProperty(mList, "lcId"_4cc), noErr);
  addRow(4, "Desk", "same");
  const std::vector<ItemId> rows = mWorld->rows();
  EXPECT_EQ(rows.back(), 4u);
}

TEST_P(ToolkitList, SortsByAnotherColumn) {
  addRow(1, "A", "10.0.0.10");
  addRow(2, "B", "10.0.0.9");
  addRow(3, "C", "10.0.0.200");
  ASSERT_EQ(toolkit().setDataBrowserSortProperty(mList, "lcId"_4cc), noErr);
  EXPECT_THAT(mWorld->rows(), ElementsAre(2, 1, 3));
}

TEST_P(ToolkitList, UnknownColumnIsRefused) {
  std::uint16_t width = 0;
  EXPECT_EQ(toolkit().setDataBrowserSortProperty(mList, "nope"_4cc), -4972);
  EXPECT_EQ(toolkit().getNamedColumnWidth(mList, "nope"_4cc, width), -4972);
  EXPECT_EQ(toolkit().setNamedColumnWidth(mList, "nope"_4cc, 100), -4972);
}

TEST_P(ToolkitList, ItemIsAddedOnceAndNeverAsNone) {
  addRow(1, "A");
  EXPECT_EQ(toolkit().addDataBrowserItem(mList, 1), -4975);
  EXPECT_EQ(toolkit().addDataBrowserItem(mList, 0), -4975);
  EXPECT_THAT(mWorld->rows(), ElementsAre(1));
}

TEST_P(ToolkitList, ItemIsRemovedOnce) {
  addRow(1, "A");
  addRow(2, "B");
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 1), noErr);
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 1), -4971);
  EXPECT_THAT(mWorld->rows(), ElementsAre(2));
}

TEST_P(ToolkitList, SelectionIsTold) {
  addRow(1, "A");
  addRow(2, "B");
  EXPECT_EQ(selected(), 0u);
  mWorld->select(2);
  EXPECT_EQ(selected(), 2u);
  mWorld->select(1);
  mWorld->select(0);
  EXPECT_EQ(selected(), 0u);
  EXPECT_THAT(mTold, ElementsAre("selection 2", "selection 1", "selection 0"));
}

TEST_P(ToolkitList, SelectionIsByItemWhereverItsRowGoes) {
  addRow(1, "M", "3");
  addRow(2, "Z", "1");
  mWorld->select(1);
  addRow(3, "A", "2");
  EXPECT_EQ(selected(), 1u);
  ASSERT_EQ(toolkit().setDataBrowserSortProperty(mList, "lcId"_4cc), noErr);
  EXPECT_THAT(mWorld->rows(), ElementsAre(2, 3, 1));
  EXPECT_EQ(selected(), 1u);
  EXPECT_THAT(mTold, ElementsAre("selection 1"));
}

TEST_P(ToolkitList, SelectionEndsWithItsRowAndGoesToNoOther) {
  addRow(1, "A");
  addRow(2, "B");
  addRow(3, "C");
  mWorld->select(2);
  mTold.clear();
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 2), noErr);
  EXPECT_EQ(selected(), 0u);
  EXPECT_THAT(mTold, ElementsAre("selection 0"));
}

TEST_P(ToolkitList, RemovingAnotherRowKeepsTheSelection) {
  addRow(1, "A");
  addRow(2, "B");
  mWorld->select(2);
  mTold.clear();
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 1), noErr);
  EXPECT_EQ(selected(), 2u);
  EXPECT_THAT(mTold, ElementsAre());
}

TEST_P(ToolkitList, BlockedListKeepsItsSelection) {
  addRow(1, "A");
  addRow(2, "B");
  mWorld->select(1);
  mTold.clear();
  ASSERT_EQ(toolkit().showSheetWindow(create("ConfirmDownloadSheet"), mMain), noErr);
  mWorld->select(2);
  EXPECT_EQ(selected(), 1u);
  EXPECT_THAT(mTold, ElementsAre());
}

TEST_P(ToolkitList, SelectedRowThatGoesWhileTheListIsBlockedIsDeselected) {
  addRow(1, "A");
  addRow(2, "B");
  mWorld->select(1);
  mTold.clear();
  ASSERT_EQ(toolkit().showSheetWindow(create("ConfirmDownloadSheet"), mMain), noErr);
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 1), noErr);
  EXPECT_EQ(selected(), 0u);
  EXPECT_THAT(mTold, ElementsAre("selection 0"));
}

TEST_P(ToolkitList, ChangedWidthIsTold) {
  mWorld->widenList(30);
  EXPECT_THAT(mTold, ElementsAre("resized 30"));
}

TEST_P(ToolkitList, ColumnKeepsEveryWidthThatItIsGiven) {
  for (const int given : {200, 40, 0, 32768, 65000, 65535, 120}) {
    const auto width = static_cast<std::uint16_t>(given);
    std::uint16_t kept = 1;
    EXPECT_EQ(toolkit().setNamedColumnWidth(mList, "lcNm"_4cc, width), noErr);
    EXPECT_EQ(toolkit().getNamedColumnWidth(mList, "lcNm"_4cc, kept), noErr);
    EXPECT_EQ(kept, width);
  }
}

TEST_P(ToolkitList, EndOfTheListIsToldWhileItIsStillThere) {
  addRow(1, "A");
  mWorld->select(1);
  mTold.clear();
  toolkit().disposeWindow(mMain);
  EXPECT_THAT(mTold, ElementsAre("disposed"));
}

TEST_P(ToolkitList, ListThatIsGoneRefusesEverything) {
  toolkit().disposeWindow(mMain);
  ItemId first = 7;
  ItemId last = 7;
  std::uint16_t width = 0;
  EXPECT_EQ(toolkit().addDataBrowserItem(mList, 1), -30584);
  EXPECT_EQ(toolkit().removeDataBrowserItem(mList, 1), -30584);
  EXPECT_EQ(toolkit().setDataBrowserCallbacks(mList, {}), -30584);
  EXPECT_EQ(toolkit().setDataBrowserSortProperty(mList, "lcNm"_4cc), -30584);
  EXPECT_EQ(toolkit().dataBrowserChangeAttributes(mList, 2, 0), -30584);
  EXPECT_EQ(toolkit().getNamedColumnWidth(mList, "lcNm"_4cc, width), -30584);
  EXPECT_EQ(toolkit().setNamedColumnWidth(mList, "lcNm"_4cc, 1), -30584);
  EXPECT_EQ(toolkit().getSelectionAnchor(mList, first, last), -30584);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
}

TEST_P(ToolkitList, ControlThatIsNoListIsRefused) {
  const ControlRef button = control(mMain, {0, 2});
  EXPECT_EQ(toolkit().addDataBrowserItem(button, 1), -30584);
}

TEST_P(ToolkitList, NothingIsCalledWithoutCallbacks) {
  addRow(1, "A");
  addRow(2, "B");
  platform::DataBrowserCallbacks none;
  ASSERT_EQ(toolkit().initDataBrowserCallbacks(none), noErr);
  ASSERT_EQ(toolkit().setDataBrowserCallbacks(mList, none), noErr);
  mNames.clear();
  mInfos.clear();
  mWorld->rows();
  EXPECT_EQ(toolkit().addDataBrowserItem(mList, 3), noErr);
  EXPECT_THAT(mTold, ElementsAre());
}

}  // namespace
