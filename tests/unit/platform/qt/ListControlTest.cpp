#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

#include "QtWindows.h"

using namespace platform::literals;
using testing::ElementsAre;

namespace {

class QtList : public QtWindows {
 protected:
  QtList() { showMain(); }

  void doubleClick(int row) {
    const QPointF at = centreOf(row);
    const QPointF onScreen = list().viewport()->mapToGlobal(at);
    QMouseEvent click(QEvent::MouseButtonDblClick, at, onScreen, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &click);
    settle();
  }

  void sendToList(QEvent::Type type, const QPoint& at, Qt::MouseButtons buttons,
                  Qt::KeyboardModifiers modifiers = {}) {
    QMouseEvent event(type, at, list().viewport()->mapToGlobal(at), Qt::LeftButton, buttons,
                      modifiers);
    QApplication::sendEvent(list().viewport(), &event);
  }

  QPoint centreOf(int row) { return list().visualRect(list().model()->index(row, 0)).center(); }

  QPoint belowTheRows() { return list().viewport()->rect().bottomLeft() + QPoint(9, -9); }

  void drag(const QPoint& from, const QPoint& to) {
    sendToList(QEvent::MouseButtonPress, from, Qt::LeftButton);
    sendToList(QEvent::MouseMove, to, Qt::LeftButton);
    sendToList(QEvent::MouseButtonRelease, to, Qt::NoButton);
  }

  // At the edge between the first two columns, `beside` it.
  void sendToEdge(QEvent::Type type, int beside, Qt::MouseButtons buttons) {
    QHeaderView& header = *list().header();
    if (type != QEvent::MouseButtonRelease && beside == 0) {
      mEdge = header.sectionViewportPosition(1) - 1;
    }
    const QPointF at(mEdge + beside, header.height() / 2.0);
    QMouseEvent event(type, at, header.viewport()->mapToGlobal(at), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(header.viewport(), &event);
  }

  void dragFirstColumn(int by) {
    sendToEdge(QEvent::MouseMove, 0, Qt::NoButton);
    sendToEdge(QEvent::MouseButtonPress, 0, Qt::LeftButton);
    sendToEdge(QEvent::MouseMove, by, Qt::LeftButton);
    sendToEdge(QEvent::MouseButtonRelease, by, Qt::NoButton);
  }

  int mEdge = 0;

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

// By a hand that moves while it clicks.
TEST_F(QtList, ClickThatSlipsOffItsRowSelectsIt) {
  fillList(2);
  drag(centreOf(1), belowTheRows());
  EXPECT_EQ(list().selectedItem(), 2u);
  drag(centreOf(1), belowTheRows());
  EXPECT_EQ(list().selectedItem(), 2u);
}

TEST_F(QtList, ClickBesideTheRowsSelectsNone) {
  fillList(2);
  drag(belowTheRows(), belowTheRows());
  EXPECT_EQ(list().selectedItem(), 0u);
  drag(centreOf(1), belowTheRows());
  EXPECT_EQ(list().selectedItem(), 2u);
  drag(belowTheRows(), belowTheRows());
  EXPECT_EQ(list().selectedItem(), 0u);
}

TEST_F(QtList, ClickWithControlTakesTheSelectionAway) {
  fillList(2);
  sendToList(QEvent::MouseButtonPress, centreOf(0), Qt::LeftButton, Qt::ControlModifier);
  sendToList(QEvent::MouseButtonRelease, centreOf(0), Qt::NoButton, Qt::ControlModifier);
  EXPECT_EQ(list().selectedItem(), 0u);
}

TEST_F(QtList, RowThatTheHandEndsOnIsSelected) {
  fillList(2);
  drag(centreOf(0), centreOf(1));
  EXPECT_EQ(list().selectedItem(), 2u);
  drag(belowTheRows(), centreOf(0));
  EXPECT_EQ(list().selectedItem(), 1u);
}

TEST_F(QtList, RowPressesTheDefaultButtonAlsoAfterThatHadTheFocus) {
  fillList(2);
  button("PrinterSelectWindow", "Down"_4cc)->setFocus();
  list().setFocus();
  doubleClick(0);
  press(list(), Qt::Key_Return);
  EXPECT_THAT(mCommands, ElementsAre("Down", "Down"));
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
  int shown = 0;
  for (int column = 0; column < 3; ++column) {
    columns += list().columnWidthOf(column);
    shown += shownWidth(column);
  }
  const int inside = list().width() - 2 * list().frameWidth();
  EXPECT_EQ(columns, inside - list().verticalScrollBar()->sizeHint().width());
  EXPECT_EQ(shown, inside);
}

TEST_F(QtList, WidthBelowZeroShowsTheSmallestColumnAndComesBack) {
  list().setColumnWidthOf(0, 65500);
  EXPECT_EQ(list().columnWidthOf(0), 65500);
  EXPECT_EQ(shownWidth(0), list().header()->minimumSectionSize());
  list().setColumnWidthOf(0, static_cast<std::uint16_t>(65500 + 200));
  EXPECT_EQ(list().columnWidthOf(0), 164);
  EXPECT_EQ(shownWidth(0), 164);
}

// As the program does it: the first column absorbs each change of the list's width.
class QtListInAWindow : public QtList {
 protected:
  QtListInAWindow() {
    platform::ControlRef control = platform::ControlRef::None;
    toolkit().getControlById(mMain, {"lPrn"_4cc, 0}, control);
    const platform::EventSpec spec{"cntl"_4cc, 154};
    platform::EventHandlerRef installed = 0;
    mApplication->events().installHandler(control, {&spec, 1}, followWidth, this, installed);
    list().setMinimumWidth(1);
    fillList(2);
  }

  void resizeWindow(int width) {
    QWidget& main = *window("PrinterSelectWindow");
    main.setMinimumWidth(1);
    main.resize(width, main.height());
    settle();
    list().grab();
  }

 private:
  static platform::OSStatus followWidth(platform::EventHandlerCallRef, const platform::Event& event,
                                        void* userData) {
    auto& list = static_cast<QtListInAWindow*>(userData)->list();
    platform::FloatRect before;
    platform::FloatRect after;
    event.getParameter("orct"_4cc, before);
    event.getParameter("crct"_4cc, after);
    const int change = static_cast<int>(after.width - before.width);
    list.setColumnWidthOf(0, static_cast<std::uint16_t>(list.columnWidthOf(0) + change));
    return platform::noErr;
  }
};

TEST_F(QtListInAWindow, FirstColumnComesBackFromANarrowWindow) {
  resizeWindow(602);
  const int width = list().columnWidthOf(0);
  EXPECT_EQ(shownWidth(0), width);
  for (const int narrow : {320, 300, 104, 330, 310, 200}) {
    resizeWindow(narrow);
    EXPECT_LT(shownWidth(0), 60);
    resizeWindow(602);
    EXPECT_EQ(list().columnWidthOf(0), width) << narrow;
    EXPECT_EQ(shownWidth(0), width) << narrow;
  }
}

TEST_F(QtListInAWindow, WidthByTheUsersHandInANarrowWindowStays) {
  resizeWindow(602);
  resizeWindow(104);
  dragFirstColumn(40);
  const int chosen = list().columnWidthOf(0);
  EXPECT_EQ(chosen, list().header()->minimumSectionSize() + 40);
  resizeWindow(204);
  EXPECT_EQ(list().columnWidthOf(0), chosen + 100);
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
  const int before = list().columnWidthOf(0);
  dragFirstColumn(-40);
  EXPECT_EQ(list().columnWidthOf(0), before - 40);
}

TEST_F(QtList, DoubleClickOnAnEdgeFitsTheColumn) {
  fillList(2);
  sendToEdge(QEvent::MouseMove, 0, Qt::NoButton);
  sendToEdge(QEvent::MouseButtonPress, 0, Qt::LeftButton);
  sendToEdge(QEvent::MouseButtonRelease, 0, Qt::NoButton);
  sendToEdge(QEvent::MouseButtonDblClick, 0, Qt::LeftButton);
  EXPECT_LT(list().columnWidthOf(0), 150);
  EXPECT_EQ(list().columnWidthOf(0), shownWidth(0));
}

TEST_F(QtList, ManyRowsNeedNoHorizontalScrolling) {
  fillList(40);
  settle();
  EXPECT_TRUE(list().verticalScrollBar()->isVisible());
  EXPECT_FALSE(list().horizontalScrollBar()->isVisible());
}

TEST_F(QtList, TitlesAreWholeInASmallWindow) {
  const QHeaderView& header = *list().header();
  int titles = 0;
  for (int column = 0; column < 3; ++column) titles += header.sectionSizeHint(column);
  QWidget& main = *window("PrinterSelectWindow");
  main.resize(main.width() - list().viewport()->width() + titles +
                  list().verticalScrollBar()->sizeHint().width(),
              main.height());
  settle();
  list().fitColumns();
  for (int column = 0; column < 3; ++column) {
    EXPECT_GE(shownWidth(column), header.sectionSizeHint(column)) << column;
  }
}

TEST_F(QtList, NothingElseIsTakenForAnItem) {
  fillList(2);
  EXPECT_FALSE(list().model()->index(0, 0).flags().testFlag(Qt::ItemIsEditable));
  EXPECT_FALSE(list().dragEnabled());
  EXPECT_FALSE(list().acceptDrops());
}

}  // namespace
