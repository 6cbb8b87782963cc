#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include "QtWindows.h"

using namespace platform::literals;
using testing::ElementsAre;

namespace {

class QtSheets : public QtWindows {
 protected:
  QtSheets() { showMain(); }

  static constexpr const char* kMain = "PrinterSelectWindow";
  static constexpr const char* kConfirm = "ConfirmDownloadSheet";
  static constexpr const char* kProgress = "ProgressSheet";

  void closeByWindowManager(const char* name) {
    QCloseEvent close;
    QApplication::sendEvent(window(name), &close);
    settle();
  }
};

TEST_F(QtSheets, NothingReachesABlockedWindow) {
  fillList(2);
  QAbstractButton* download = button(kMain, "Down"_4cc);
  ASSERT_TRUE(download->isEnabled());
  ASSERT_TRUE(action("Down"_4cc)->isEnabled());
  showSheet(kConfirm);

  EXPECT_FALSE(download->isEnabled());
  EXPECT_FALSE(action("Down"_4cc)->isEnabled());
  pressByAssistiveTechnology(*download);
  emit download->clicked();
  emit action("Down"_4cc)->triggered();
  press(list(), Qt::Key_Return);
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, AssistiveTechnologyPressesButtonsThatAreFree) {
  pressByAssistiveTechnology(*button(kMain, "Down"_4cc));
  EXPECT_THAT(mCommands, ElementsAre("Down"));
}

TEST_F(QtSheets, PressThatIsUnderWayWhenTheSheetComesIsLost) {
  QAccessibleInterface* download = QAccessible::queryAccessibleInterface(button(kMain, "Down"_4cc));
  download->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  showSheet(kConfirm);
  waitForClick();
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, SelectionOfABlockedListStays) {
  fillList(3);
  const platform::ItemId selected = list().selectedItem();
  ASSERT_NE(selected, 0u);
  showSheet(kConfirm);
  list().selectionModel()->select(list().model()->index(2, 0),
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  list().clearSelection();
  list().selectionModel()->clear();
  list().selectAll();
  EXPECT_EQ(list().selectedItem(), selected);
}

TEST_F(QtSheets, ButtonOfAHiddenSheetIssuesNothing) {
  create(kConfirm);
  emit button(kConfirm, "Yes "_4cc)->clicked();
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, FocusReturnsToWhereItWas) {
  list().setFocus();
  const auto sheet = showSheet(kConfirm);
  ASSERT_EQ(toolkit().hideSheetWindow(sheet), platform::noErr);
  EXPECT_EQ(window(kMain)->focusWidget(), &list());
}

TEST_F(QtSheets, UnblockedWindowIsMadeActive) {
  const auto progress = showSheet(kProgress);
  const auto alert = create("FailedSheet");
  ASSERT_EQ(toolkit().showSheetWindow(alert, progress), platform::noErr);
  settle();
  QWidget other;
  other.show();
  other.activateWindow();
  settle();
  ASSERT_TRUE(other.isActiveWindow());
  ASSERT_EQ(toolkit().hideSheetWindow(alert), platform::noErr);
  settle();
  EXPECT_TRUE(window(kProgress)->isActiveWindow());
  ASSERT_EQ(toolkit().hideSheetWindow(progress), platform::noErr);
  settle();
  EXPECT_TRUE(window(kMain)->isActiveWindow());
}

TEST_F(QtSheets, ConfirmationAnswersNoToEscapeAndToItsFrame) {
  showSheet(kConfirm);
  press(*window(kConfirm), Qt::Key_Escape);
  EXPECT_THAT(mCommands, ElementsAre("No  "));
  closeByWindowManager(kConfirm);
  EXPECT_THAT(mCommands, ElementsAre("No  ", "No  "));
  EXPECT_TRUE(window(kConfirm)->isVisible());  // hiding it is the program's business
}

TEST_F(QtSheets, ConfirmationAnswersYesToEnter) {
  showSheet(kConfirm);
  EXPECT_EQ(window(kConfirm)->focusWidget(), button(kConfirm, "Yes "_4cc));
  press(*window(kConfirm), Qt::Key_Return);
  EXPECT_THAT(mCommands, ElementsAre("Yes "));
}

TEST_F(QtSheets, KeyHeldDownFromBeforeAnswersNothing) {
  for (const char* sheet : {kConfirm, "FailedSheet", "UpToDateSheet", "QuitSheet"}) {
    const auto shown = showSheet(sheet);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
      QTest::simulateEvent(window(sheet)->windowHandle(), true, key, {}, {}, true);
      QTest::simulateEvent(window(sheet)->windowHandle(), false, key, {}, {}, true);
    }
    toolkit().hideSheetWindow(shown);
  }
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, FocusStartsOnTheDefaultButtonEachTime) {
  const auto sheet = showSheet(kConfirm);
  button(kConfirm, "No  "_4cc)->setFocus();
  ASSERT_EQ(toolkit().hideSheetWindow(sheet), platform::noErr);
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), platform::noErr);
  EXPECT_EQ(window(kConfirm)->focusWidget(), button(kConfirm, "Yes "_4cc));
  press(*window(kConfirm), Qt::Key_Return);
  EXPECT_THAT(mCommands, ElementsAre("Yes "));
}

TEST_F(QtSheets, AlertsCloseByEscapeEnterAndFrame) {
  for (const char* alert : {"FailedSheet", "UpToDateSheet"}) {
    mCommands.clear();
    const auto sheet = showSheet(alert);
    press(*window(alert), Qt::Key_Escape);
    press(*window(alert), Qt::Key_Return);
    closeByWindowManager(alert);
    EXPECT_THAT(mCommands, ElementsAre("Clos", "Clos", "Clos")) << alert;
    toolkit().disposeWindow(sheet);
    settle();
  }
}

TEST_F(QtSheets, ProgressCannotBeDismissed) {
  showSheet(kProgress);
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space}) {
    press(*window(kProgress), key);
  }
  EXPECT_TRUE(window(kProgress)->isVisible());
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, BlockedSheetIsNotDismissedByItsFrame) {
  const auto question = showSheet(kConfirm);
  ASSERT_EQ(toolkit().showSheetWindow(create("FailedSheet"), question), platform::noErr);
  closeByWindowManager(kConfirm);
  EXPECT_THAT(mCommands, ElementsAre());
}

TEST_F(QtSheets, SheetsBelongToTheirParent) {
  showSheet(kConfirm);
  EXPECT_EQ(window(kConfirm)->windowHandle()->transientParent(), window(kMain)->windowHandle());
}

TEST_F(QtSheets, ProgressMovesAndWarns) {
  showSheet(kProgress);
  const auto* bar = window(kProgress)->findChild<QProgressBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(bar->minimum(), bar->maximum());
  bool warns = false;
  for (const QLabel* label : window(kProgress)->findChildren<QLabel*>()) {
    warns = warns || label->text().contains(u"Do not switch the printer off");
  }
  EXPECT_TRUE(warns);
}

class QtQuestionAboutARow : public QtSheets {
 protected:
  QLabel& printer() { return *window(kConfirm)->findChild<QLabel*>("printer"); }

  void fillListWith(platform::OSStatus (*itemData)(platform::ControlRef, platform::ItemId,
                                                   platform::FourCharCode, platform::ItemData&,
                                                   bool)) {
    fillList(1);
    platform::DataBrowserCallbacks callbacks;
    callbacks.itemData = itemData;
    list().items().setCallbacks(list().items().control(), callbacks);
  }

  void select(int row) {
    list().setCurrentIndex(list().model()->index(row, 0));
    settle();
  }

  static QRect framed(const QWidget& sheet) { return sheet.frameGeometry(); }
};

TEST_F(QtQuestionAboutARow, NamesIt) {
  fillListWith([](platform::ControlRef, platform::ItemId, platform::FourCharCode column,
                  platform::ItemData& data, bool) {
    return data.setText(platform::Text::fromUtf8(column == "lcNm"_4cc   ? "Office"
                                                 : column == "lcId"_4cc ? "10.0.0.5"
                                                                        : "Bonjour"));
  });
  showSheet(kConfirm);
  EXPECT_EQ(printer().text(), QStringLiteral("\u2068Office\u2069 (\u206810.0.0.5\u2069)"));
  EXPECT_EQ(printer().accessibleName(), "Office (10.0.0.5)");
}

TEST_F(QtQuestionAboutARow, NamesAPrinterWithoutAnAddress) {
  fillListWith([](platform::ControlRef, platform::ItemId, platform::FourCharCode column,
                  platform::ItemData& data, bool) {
    return data.setText(column == "lcNm"_4cc ? platform::Text::fromUtf8("<b>KX</b>\n\u202Egpj")
                                             : platform::Text());
  });
  showSheet(kConfirm);
  EXPECT_EQ(printer().textFormat(), Qt::PlainText);
  EXPECT_EQ(printer().text(), QStringLiteral("<b>KX</b>\uFFFD\uFFFDgpj"));
}

TEST_F(QtQuestionAboutARow, NamesTheNextOneTheNextTime) {
  fillList(2);
  const auto sheet = showSheet(kConfirm);
  toolkit().hideSheetWindow(sheet);
  select(1);
  toolkit().showSheetWindow(sheet, mMain);
  EXPECT_EQ(printer().accessibleName(), "Printer 2 (Printer 2)");
}

TEST_F(QtQuestionAboutARow, LeavesItInSightWhereverItIs) {
  fillList(60);
  const auto sheet = create(kConfirm);
  const QRect screen = window(kMain)->screen()->availableGeometry();
  for (const int row : {0, 2, 4, 5, 6, 8, 30, 59}) {
    select(row);
    toolkit().showSheetWindow(sheet, mMain);
    settle();
    const QRect place = list().selectedPlace();
    EXPECT_EQ(place.height(), list().visualRect(list().currentIndex()).height()) << row;
    EXPECT_GT(place.width(), list().width() / 2) << row;
    EXPECT_FALSE(framed(*window(kConfirm)).intersects(place)) << row;
    EXPECT_TRUE(screen.contains(framed(*window(kConfirm)))) << row;
    toolkit().hideSheetWindow(sheet);
  }
}

TEST_F(QtQuestionAboutARow, BringsItIntoSight) {
  fillList(60);
  select(59);
  list().scrollToTop();
  ASSERT_TRUE(list().selectedPlace().isEmpty());
  showSheet(kConfirm);
  EXPECT_FALSE(list().selectedPlace().isEmpty());
}

// With as little room above and below, the row goes to the top of the list.
TEST_F(QtQuestionAboutARow, LeavesItInSightOnASmallScreen) {
  fillList(60);
  const QRect screen = window(kMain)->screen()->availableGeometry();
  window(kMain)->setGeometry(screen);
  select(20);
  list().scrollTo(list().currentIndex(), QAbstractItemView::PositionAtCenter);
  const auto sheet = create(kConfirm);
  window(kConfirm)->findChild<QLabel*>("question")->setText(QString("text ").repeated(300));
  toolkit().showSheetWindow(sheet, mMain);
  settle();
  ASSERT_GT(framed(*window(kConfirm)).height(), screen.height() / 2);
  ASSERT_LT(framed(*window(kConfirm)).height(), screen.height() * 3 / 4);
  EXPECT_FALSE(framed(*window(kConfirm)).intersects(list().selectedPlace()));
  EXPECT_FALSE(list().selectedPlace().isEmpty());
  EXPECT_TRUE(screen.contains(framed(*window(kConfirm))));
}

TEST_F(QtQuestionAboutARow, StaysInTheMiddleWhereItCoversNothing) {
  const auto sheet = showSheet(kConfirm);
  const QPoint middle = framed(*window(kConfirm)).center();
  toolkit().hideSheetWindow(sheet);
  fillList(1);
  window(kMain)->resize(window(kMain)->width(), 700);
  toolkit().showSheetWindow(sheet, mMain);
  settle();
  EXPECT_NEAR(framed(*window(kConfirm)).center().x(), middle.x(), 2);
  EXPECT_NEAR(framed(*window(kConfirm)).center().y(), window(kMain)->frameGeometry().center().y(),
              2);
}

class QtProgressSheet : public QtSheets {
 protected:
  QtProgressSheet() {
    mSheet = create(kProgress);
    EXPECT_EQ(toolkit().getControlById(mSheet, {"tPNm"_4cc, 0}, mName), platform::noErr);
  }

  QLabel& name() {
    for (QLabel* each : window(kProgress)->findChildren<QLabel*>()) {
      if (each->property("controlSignature").toString() == u"tPNm") return *each;
    }
    throw std::runtime_error("there is no name");
  }

  void setName(const std::string& text) {
    toolkit().setControlText(mName, platform::Text::fromUtf8(text));
  }

  QSize sizeWith(const std::string& text) {
    setName(text);
    EXPECT_EQ(toolkit().showSheetWindow(mSheet, mMain), platform::noErr);
    const QSize size = window(kProgress)->size();
    EXPECT_EQ(toolkit().hideSheetWindow(mSheet), platform::noErr);
    return size;
  }

  platform::WindowRef mSheet = platform::WindowRef::None;
  platform::ControlRef mName = platform::ControlRef::None;
};

TEST_F(QtProgressSheet, PrinterNameIsPlainTextOnOneParagraph) {
  setName("<b>KX</b>\n\r\t\x01 (10.0.0.9)");
  EXPECT_EQ(name().textFormat(), Qt::PlainText);
  EXPECT_EQ(name().text(), QStringLiteral("\u2068<b>KX</b>\uFFFD\uFFFD\uFFFD\uFFFD\u2069 "
                                          "(\u206810.0.0.9\u2069)"));
}

TEST_F(QtProgressSheet, NameIsReadOutWithoutMarks) {
  setName("Evil\u202Etxt.exe 350T, a name that is longer than its line (10.77.0.21)");
  EXPECT_EQ(
      name().accessibleName(),
      QStringLiteral("Evil\uFFFDtxt.exe 350T, a name that is longer than its line (10.77.0.21)"));
}

TEST_F(QtProgressSheet, LongNameWithoutBlanksDoesNotWidenTheSheet) {
  const QSize before = sizeWith("KX350T (10.0.0.9)");
  const QSize after = sizeWith(std::string(250, 'W'));
  EXPECT_EQ(after.width(), before.width());
  EXPECT_GT(after.height(), before.height());
}

// Some characters are many times as wide as a letter.
TEST_F(QtProgressSheet, NameOfFewWideCharactersDoesNotWidenTheSheet) {
  QFont wide = name().font();
  wide.setPointSizeF(2 * wide.pointSizeF());
  name().setFont(wide);
  const QSize before = sizeWith("KX350T (10.0.0.9)");
  EXPECT_EQ(sizeWith(std::string(17, 'W') + " (10.0.0.9)").width(), before.width());
}

TEST_F(QtSheets, WindowMayGoWhileItsButtonIsPressed) {
  const auto sheet = showSheet("FailedSheet");
  mOnCommand = [&] { toolkit().disposeWindow(sheet); };
  button("FailedSheet", "Clos"_4cc)->click();
  settle();
  EXPECT_EQ(window("FailedSheet"), nullptr);
  EXPECT_THAT(mCommands, ElementsAre("Clos"));
}

TEST_F(QtSheets, MainWindowMayGoFromItsMenu) {
  showSheet(kProgress);
  mOnCommand = [&] { toolkit().disposeWindow(mMain); };
  toolkit().hideSheetWindow(platform::WindowRef{2});
  action("quit"_4cc)->trigger();
  settle();
  EXPECT_EQ(window(kMain), nullptr);
  EXPECT_NE(window(kProgress), nullptr);
}

}  // namespace
