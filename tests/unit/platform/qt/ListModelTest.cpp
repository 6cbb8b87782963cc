#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <vector>

#include "platform/qt/ListModel.h"

using namespace platform::literals;
using platform::ControlRef;
using platform::FourCharCode;
using platform::ItemData;
using platform::ItemId;
using platform::ListModel;
using platform::OSStatus;
using platform::Text;
using testing::ElementsAre;

namespace {

// A null text is one that the program has not got.
std::map<ItemId, const char*> sTexts;

Text textOf(ItemId item) {
  const char* text = sTexts.at(item);
  return text == nullptr ? Text() : Text::fromUtf8(text);
}

OSStatus itemData(ControlRef, ItemId item, FourCharCode property, ItemData& data, bool) {
  if (property == "lcTy"_4cc) return platform::errDataBrowserPropertyNotSupported;
  return data.setText(textOf(item));
}

bool itemCompare(ControlRef, ItemId a, ItemId b, FourCharCode) {
  const Text textA = textOf(a);
  const Text textB = textOf(b);
  return textA && textB && platform::compare(textA, textB) < 0;
}

class QtListModel : public testing::Test {
 protected:
  QtListModel() {
    sTexts.clear();
    mModel.setColumns({{"lcNm"_4cc, "Name"}, {"lcTy"_4cc, "Type"}});
    platform::DataBrowserCallbacks callbacks;
    callbacks.itemData = itemData;
    callbacks.itemCompare = itemCompare;
    mModel.setCallbacks(ControlRef{1}, callbacks);
    mModel.sort(0, Qt::AscendingOrder);
  }

  void add(ItemId item, const char* text) {
    sTexts[item] = text;
    EXPECT_TRUE(mModel.add(item));
  }

  std::vector<ItemId> rows() const {
    std::vector<ItemId> items;
    for (int row = 0; row < mModel.rowCount(); ++row) items.push_back(mModel.itemAt(row));
    return items;
  }

  QString shown(int row, int column) const {
    return mModel.data(mModel.index(row, column), Qt::DisplayRole).toString();
  }

  ListModel mModel;
};

TEST_F(QtListModel, SortsBothWays) {
  add(1, "b");
  add(2, "c");
  add(3, "a");
  EXPECT_THAT(rows(), ElementsAre(3, 1, 2));
  mModel.sort(0, Qt::DescendingOrder);
  EXPECT_THAT(rows(), ElementsAre(2, 1, 3));
  add(4, "bb");
  EXPECT_THAT(rows(), ElementsAre(2, 4, 1, 3));
}

TEST_F(QtListModel, RowsWithoutATextComeLastBothWays) {
  add(1, nullptr);
  add(2, "b");
  add(3, nullptr);
  add(4, "a");
  EXPECT_THAT(rows(), ElementsAre(4, 2, 1, 3));
  mModel.sort(0, Qt::DescendingOrder);
  EXPECT_THAT(rows(), ElementsAre(2, 4, 1, 3));
  EXPECT_EQ(shown(2, 0), "");
}

TEST_F(QtListModel, ComparisonThatIsNoOrderDoesNoHarm) {
  platform::DataBrowserCallbacks callbacks;
  callbacks.itemData = itemData;
  callbacks.itemCompare = [](ControlRef, ItemId a, ItemId b, FourCharCode) {
    return (a * 7 + b * 13) % 3 != 0;
  };
  mModel.setCallbacks(ControlRef{1}, callbacks);
  for (ItemId item = 1; item <= 100; ++item) add(item, "x");
  mModel.sort(0, Qt::DescendingOrder);
  std::vector<ItemId> all = rows();
  std::ranges::sort(all);
  EXPECT_EQ(all.size(), 100u);
  EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
}

TEST_F(QtListModel, IndexesFollowTheirItems) {
  add(1, "b");
  add(2, "c");
  const QPersistentModelIndex index = mModel.index(1, 1);
  mModel.sort(0, Qt::DescendingOrder);
  EXPECT_EQ(index.row(), 0);
  EXPECT_EQ(index.column(), 1);
  add(3, "d");
  EXPECT_EQ(index.row(), 1);
}

TEST_F(QtListModel, CellThatTheProgramRefusesIsEmpty) {
  add(1, "b");
  EXPECT_EQ(shown(0, 0), "b");
  EXPECT_EQ(shown(0, 1), "");
}

TEST_F(QtListModel, NameShowsNothingButItself) {
  add(1, "a\nb\tc\u2028d\u202Etxt.exe");
  EXPECT_EQ(shown(0, 0), QStringLiteral("a\uFFFDb\uFFFDc\uFFFDd\uFFFDtxt.exe"));
}

// U+202E shows as U+FFFD, which would sort behind U+4E00.
TEST_F(QtListModel, RowsAreSortedByWhatWasSent) {
  add(1, "\u4E00");
  add(2, "\u202E");
  EXPECT_THAT(rows(), ElementsAre(2, 1));
}

TEST_F(QtListModel, NoRowsAndColumnsBeyondTheEnd) {
  add(1, "b");
  EXPECT_EQ(mModel.itemAt(-1), 0u);
  EXPECT_EQ(mModel.itemAt(1), 0u);
  EXPECT_EQ(mModel.rowOf(9), -1);
  EXPECT_EQ(mModel.columnOf("lcId"_4cc), -1);
  EXPECT_EQ(mModel.propertyAt(2), 0u);
  EXPECT_EQ(mModel.rowCount(mModel.index(0, 0)), 0);
  EXPECT_EQ(mModel.columnCount(mModel.index(0, 0)), 0);
}

}  // namespace
