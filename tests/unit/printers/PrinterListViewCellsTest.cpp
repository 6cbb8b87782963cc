// The texts of the cells and the order of the rows.
#include "PrinterListViewFixture.h"

namespace {

using namespace platform::literals;
using platform::ItemId;
using platform::OSStatus;

using Lines = std::vector<std::string>;
using Entries = std::vector<LogEntry>;
using Items = std::vector<ItemId>;

class TextSink : public platform::ItemData {
 public:
  OSStatus setText(const platform::Text& text) override {
    received.push_back(shown(text));
    return answer;
  }

  OSStatus answer = platform::noErr;
  Lines received;
};

class PrinterListViewCellsTest : public PrinterListViewFixture {
 protected:
  std::string cell(ItemId item, platform::FourCharCode column) {
    return shown(list().cell(item, column).text);
  }

  bool isLess(ItemId a, ItemId b, platform::FourCharCode column) {
    return list().callbacks.itemCompare(control, a, b, column);
  }

  void sortBy(platform::FourCharCode column) {
    doubles.toolkit.setDataBrowserSortProperty(control, column);
  }
};

// Cells.

TEST_F(PrinterListViewCellsTest, CellsShowNameTypeAndInfo) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter("VX0042"));
  add("Front desk", ipv4Record());
  view->addUsbPrinter(device);
  EXPECT_EQ(cell(1, "lcNm"_4cc), "Front desk");
  EXPECT_EQ(cell(1, "lcTy"_4cc), "Bonjour");
  EXPECT_EQ(cell(1, "lcId"_4cc), "192.0.2.7");
  EXPECT_EQ(cell(2, "lcNm"_4cc), "Veltra KX350T");
  EXPECT_EQ(cell(2, "lcTy"_4cc), "USB");
  EXPECT_EQ(cell(2, "lcId"_4cc), "VX0042");
}

TEST_F(PrinterListViewCellsTest, NullTextIsPassedToTheCell) {
  makeView();
  add("A");
  TextSink sink;
  const auto itemData = list().callbacks.itemData;
  EXPECT_EQ(itemData(control, 1, "lcId"_4cc, sink, false), platform::noErr);
  EXPECT_EQ(itemData(control, 2, "lcNm"_4cc, sink, false), platform::noErr);
  EXPECT_EQ(itemData(control, 0xFFFFFFFF, "lcTy"_4cc, sink, false), platform::noErr);
  EXPECT_EQ(sink.received, (Lines{"<null>", "<null>", "<null>"}));
}

TEST_F(PrinterListViewCellsTest, CellAnswersWhatItsTextAnswers) {
  makeView();
  add("A");
  TextSink sink;
  sink.answer = -50;
  for (const auto column : {"lcNm"_4cc, "lcTy"_4cc, "lcId"_4cc}) {
    EXPECT_EQ(list().callbacks.itemData(control, 1, column, sink, false), -50);
  }
}

TEST_F(PrinterListViewCellsTest, CellsCannotBeSetAndNoRowHasNone) {
  makeView();
  add("A");
  doubles.takeToolkitCalls();
  TextSink sink;
  const auto itemData = list().callbacks.itemData;
  EXPECT_EQ(itemData(control, 1, "lcNm"_4cc, sink, true), -4979);
  EXPECT_EQ(itemData(control, 0, "lcNm"_4cc, sink, false), -4979);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
  EXPECT_EQ(sink.received, Lines{});
}

TEST_F(PrinterListViewCellsTest, UnknownColumnIsNotSupported) {
  makeView();
  add("A");
  TextSink sink;
  EXPECT_EQ(list().callbacks.itemData(control, 1, "lcXx"_4cc, sink, false), -4979);
  EXPECT_EQ(sink.received, Lines{});
}

TEST_F(PrinterListViewCellsTest, CellAnswersTheStatusOfAnUnreadableList) {
  makeView();
  add("A");
  TextSink sink;
  doubles.toolkit.script().answerNext("getControlProperty", -50);
  EXPECT_EQ(list().callbacks.itemData(control, 1, "lcNm"_4cc, sink, false), -50);
  EXPECT_EQ(sink.received, Lines{});
}

TEST_F(PrinterListViewCellsTest, CellOfNoListStaysEmpty) {
  makeView();
  add("A");
  doubles.toolkit.setControlProperty(control, "MjFd"_4cc, "ldPl"_4cc, nullptr);
  TextSink sink;
  EXPECT_EQ(list().callbacks.itemData(control, 1, "lcNm"_4cc, sink, false), platform::noErr);
  EXPECT_EQ(list().callbacks.itemData(control, 1, "lcXx"_4cc, sink, false), platform::noErr);
  EXPECT_EQ(sink.received, Lines{});
  EXPECT_FALSE(isLess(1, 1, "lcNm"_4cc));
}

// Order.

TEST_F(PrinterListViewCellsTest, RowsAreSortedByNameExactly) {
  makeView();
  for (const char* name : {"beta", "Beta", "alpha", "Printer 10", "Printer 9"}) add(name);
  EXPECT_EQ(list().rows(), (Items{2, 4, 5, 3, 1}));
}

TEST_F(PrinterListViewCellsTest, EqualNamesAreSortedByInfoNumerically) {
  makeView();
  add("A", ipv4Record(10));
  add("A", ipv4Record(9));
  EXPECT_EQ(list().rows(), (Items{2, 1}));
  EXPECT_TRUE(isLess(2, 1, "lcNm"_4cc));
  EXPECT_FALSE(isLess(1, 2, "lcNm"_4cc));
}

TEST_F(PrinterListViewCellsTest, EqualNamesWithoutInfoAreNotOrdered) {
  makeView();
  add("A", ipv4Record(9));
  add("A", nullptr);
  EXPECT_FALSE(isLess(1, 2, "lcNm"_4cc));
  EXPECT_FALSE(isLess(2, 1, "lcNm"_4cc));
}

TEST_F(PrinterListViewCellsTest, InfoColumnIsSortedNumerically) {
  makeView();
  add("A", ipv4Record(100));
  add("B", ipv4Record(20));
  add("C", ipv4Record(3));
  sortBy("lcId"_4cc);
  EXPECT_EQ(list().rows(), (Items{3, 2, 1}));
}

TEST_F(PrinterListViewCellsTest, NullInfoSortsBeforeNothing) {
  makeView();
  add("A", nullptr);
  add("B", ipv4Record());
  EXPECT_FALSE(isLess(1, 2, "lcId"_4cc));
  EXPECT_FALSE(isLess(2, 1, "lcId"_4cc));
}

TEST_F(PrinterListViewCellsTest, TypeColumnIsSortedByTypeWord) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter());
  view->addUsbPrinter(device);
  add("Z");
  EXPECT_TRUE(isLess(2, 1, "lcTy"_4cc));
  EXPECT_FALSE(isLess(1, 2, "lcTy"_4cc));
  EXPECT_FALSE(isLess(1, 1, "lcTy"_4cc));
}

TEST_F(PrinterListViewCellsTest, WhatIsNotThereSortsBeforeNothing) {
  makeView();
  add("A", ipv4Record());
  for (const auto column : {"lcNm"_4cc, "lcTy"_4cc, "lcId"_4cc}) {
    for (const ItemId other : {ItemId{0}, ItemId{2}, ItemId{0xFFFFFFFF}}) {
      EXPECT_FALSE(isLess(1, other, column));
      EXPECT_FALSE(isLess(other, 1, column));
    }
  }
  EXPECT_FALSE(isLess(1, 1, "lcXx"_4cc));
}

TEST_F(PrinterListViewCellsTest, UnreadableListHasNoOrder) {
  makeView();
  add("A");
  add("B");
  EXPECT_TRUE(isLess(1, 2, "lcNm"_4cc));
  doubles.toolkit.script().answerNext("getControlProperty", -50);
  EXPECT_FALSE(isLess(1, 2, "lcNm"_4cc));
}

}  // namespace
