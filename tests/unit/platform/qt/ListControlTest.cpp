#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>

#include "QtWindows.h"

using namespace platform::literals;
using testing::ElementsAre;

namespace {

class QtList : public QtWindows {
 protected:
  QtList() { showMain(); }

  void doubleClick(int row) {
    const QPointF at = list().visualRect(list().model()->index(row, 0)).center();
    const QPointF onScreen = list().viewport()->mapToGlobal(at);
    QMouseEvent click(QEvent::MouseButtonDblClick, at, onScreen, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &click);
    settle();
  }

  int shownWidth(int column) { return list().header()->sectionSize(column); }
};

TEST_F(QtList, EnterOnARowPressesTheDefaultButton) {
  fillList(2);
  press(list(), Qt::Key_Return);
  press(list(), Qt::Key_Enter);
  EXPECT_THAT(mCommands, ElementsAre("Down", "Down"));
}

TEST_F(QtList, EnterDoesNothingWithoutASelection) {
  fillList(2);
  list().clearSelection();
  press(list(), Qt::Key_Return);
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtList, EnterHeldDownPressesOnce) {
  fillList(2);
  press(list(), Qt::Key_Return);
  press(list(), Qt::Key_Return, true);
  EXPECT_THAT(mCommands, ElementsAre("Down"));
}

TEST_F(QtList, DoubleClickOnARowPressesTheDefaultButton) {
  fillList(2);
  doubleClick(0);
  EXPECT_THAT(mCommands, ElementsAre("Down"));
}

TEST_F(QtList, RowDoesNotPressADisabledButton) {
  fillList(2);
  button("PrinterSelectWindow", "Down"_4cc)->setEnabled(false);
  press(list(), Qt::Key_Return);
  doubleClick(0);
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtList, ArrowsSelectRows) {
  fillList(3);
  press(list(), Qt::Key_Down);
  EXPECT_EQ(list().selectedItem(), 2u);
  press(list(), Qt::Key_Home);
  EXPECT_EQ(list().selectedItem(), 1u);
  press(list(), Qt::Key_End);
  EXPECT_EQ(list().selectedItem(), 3u);
}

TEST_F(QtList, FirstArrowSelectsTheFirstRow) {
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home}) {
    fillList(3);
    list().selectionModel()->clear();
    press(list(), key);
    EXPECT_EQ(list().selectedItem(), 1u);
    for (platform::ItemId item = 1; item <= 3; ++item) list().removeItem(item);
  }
}

TEST_F(QtList, ArrowsInAnEmptyListSelectNothing) {
  press(list(), Qt::Key_Down);
  EXPECT_EQ(list().selectedItem(), 0u);
}

TEST_F(QtList, AssistiveTechnologySeesEveryCell) {
  fillList(2);
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&list());
  QAccessibleTableInterface* table = accessible->tableInterface();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rowCount(), 2);
  EXPECT_EQ(table->columnCount(), 3);
  EXPECT_EQ(table->cellAt(1, 0)->text(QAccessible::Name), "Printer 2");
}

TEST_F(QtList, ColumnsFillTheWindowAtFirst) {
  int columns = 0;
  for (int column = 0; column < 3; ++column) columns += list().columnWidthOf(column);
  EXPECT_EQ(columns, list().width() - 2 * list().frameWidth());
}

TEST_F(QtList, WidthBelowZeroShowsTheSmallestColumnAndComesBack) {
  list().setColumnWidthOf(0, 65500);
  EXPECT_EQ(list().columnWidthOf(0), 65500);
  EXPECT_EQ(shownWidth(0), list().header()->minimumSectionSize());
  list().setColumnWidthOf(0, static_cast<std::uint16_t>(65500 + 200));
  EXPECT_EQ(list().columnWidthOf(0), 164);
  EXPECT_EQ(shownWidth(0), 164);
}

TEST_F(QtList, WidestColumnIsShown) {
  list().setColumnWidthOf(0, 32767);
  EXPECT_EQ(shownWidth(0), 32767);
  list().grab();
}

TEST_F(QtList, LastColumnTakesWhatIsLeftWithoutChangingTheOthers) {
  const int name = shownWidth(0);
  const int type = shownWidth(1);
  window("PrinterSelectWindow")->resize(window("PrinterSelectWindow")->width() + 60, 500);
  settle();
  EXPECT_EQ(shownWidth(0), name);
  EXPECT_EQ(shownWidth(1), type);
}

TEST_F(QtList, ColumnFollowsTheUsersHand) {
  QHeaderView& header = *list().header();
  const int edge = header.sectionViewportPosition(1) - 1;
  const auto send = [&](QEvent::Type type, int x, Qt::MouseButtons buttons) {
    const QPointF at(x, header.height() / 2.0);
    QMouseEvent event(type, at, header.viewport()->mapToGlobal(at), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(header.viewport(), &event);
  };
  const int before = list().columnWidthOf(0);
  send(QEvent::MouseMove, edge, Qt::NoButton);
  send(QEvent::MouseButtonPress, edge, Qt::LeftButton);
  send(QEvent::MouseMove, edge - 40, Qt::LeftButton);
  send(QEvent::MouseButtonRelease, edge - 40, Qt::NoButton);
  EXPECT_EQ(list().columnWidthOf(0), before - 40);
}

TEST_F(QtList, NothingElseIsTakenForAnItem) {
  fillList(2);
  EXPECT_FALSE(list().model()->index(0, 0).flags().testFlag(Qt::ItemIsEditable));
  EXPECT_FALSE(list().dragEnabled());
  EXPECT_FALSE(list().acceptDrops());
}

}  // namespace
