#include <gmock/gmock.h>

#include <QAccessible>
#include <QEvent>
#include <QLabel>

#include "QtWindows.h"

using namespace platform::literals;
using testing::ElementsAre;

namespace {

class QtNotice : public QtWindows {
 protected:
  QtNotice() { showMain(); }

  QLabel& notice() { return *window("PrinterSelectWindow")->findChild<QLabel*>("selectionNotice"); }

  void fillListWithoutSelection(int rows) {
    fillList(rows);
    list().selectionModel()->clear();
  }
};

TEST_F(QtNotice, DownloadWithoutASelectionAsksForOne) {
  fillListWithoutSelection(2);
  EXPECT_FALSE(notice().isVisible());
  button("PrinterSelectWindow", "Down"_4cc)->setFocus();
  action("Down"_4cc)->trigger();
  EXPECT_TRUE(notice().isVisible());
  EXPECT_EQ(notice().text(), "Select a printer first.");
  EXPECT_EQ(window("PrinterSelectWindow")->focusWidget(), &list());
  EXPECT_THAT(mCommands, ElementsAre("Down"));
}

TEST_F(QtNotice, IsAnAlertForAssistiveTechnology) {
  action("Down"_4cc)->trigger();
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&notice());
  EXPECT_EQ(accessible->role(), QAccessible::AlertMessage);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Select a printer first.");
}

class ShowCounter final : public QObject {
 public:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Show) ++mShown;
    return false;
  }
  int shown() const { return mShown; }

 private:
  int mShown = 0;
};

// An alert is read out when it appears.
TEST_F(QtNotice, AppearsAnewEachTime) {
  ShowCounter counter;
  notice().installEventFilter(&counter);
  action("Down"_4cc)->trigger();
  action("Down"_4cc)->trigger();
  EXPECT_EQ(counter.shown(), 2);
}

TEST_F(QtNotice, GoesWithTheNextSelection) {
  fillListWithoutSelection(2);
  action("Down"_4cc)->trigger();
  press(list(), Qt::Key_Down);
  EXPECT_EQ(list().selectedItem(), 1u);
  EXPECT_FALSE(notice().isVisible());
}

TEST_F(QtNotice, OnlyDownloadWithoutASelectionShowsIt) {
  fillList(2);
  action("Down"_4cc)->trigger();
  list().selectionModel()->clear();
  action("quit"_4cc)->trigger();
  EXPECT_FALSE(notice().isVisible());
}

TEST_F(QtNotice, BlockedWindowShowsNone) {
  showSheet("ConfirmDownloadSheet");
  emit action("Down"_4cc)->triggered();
  EXPECT_FALSE(notice().isVisible());
}

// It was selected when the question appeared.
TEST_F(QtNotice, PrinterThatWentBeforeTheAnswerIsSaidToBeGone) {
  fillListWithoutSelection(0);
  QLabel& gone = *window("PrinterSelectWindow")->findChild<QLabel*>("goneNotice");
  showSheet("ConfirmDownloadSheet");
  button("ConfirmDownloadSheet", "Yes "_4cc)->click();
  EXPECT_TRUE(gone.isVisible());
  EXPECT_EQ(gone.text(),
            "The printer is no longer in the list. Wait until it is back, then try again.");
  EXPECT_FALSE(notice().isVisible());
  EXPECT_THAT(mCommands, ElementsAre("Yes "));
}

TEST_F(QtNotice, SelectedPrinterIsNotSaidToBeGone) {
  fillList(1);
  QLabel& gone = *window("PrinterSelectWindow")->findChild<QLabel*>("goneNotice");
  showSheet("ConfirmDownloadSheet");
  button("ConfirmDownloadSheet", "Yes "_4cc)->click();
  EXPECT_FALSE(gone.isVisible());
}

TEST_F(QtNotice, MovesNothing) {
  fillListWithoutSelection(2);
  const QRect before = list().geometry();
  const QRect button = this->button("PrinterSelectWindow", "Down"_4cc)->geometry();
  action("Down"_4cc)->trigger();
  settle();
  EXPECT_EQ(list().geometry(), before);
  EXPECT_EQ(this->button("PrinterSelectWindow", "Down"_4cc)->geometry(), button);
}

}  // namespace
