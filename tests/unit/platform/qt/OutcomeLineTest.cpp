#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>

#include "QtWindows.h"
#include "platform/DownloadObserver.h"
#include "platform/qt/QtText.h"

using namespace platform::literals;
using platform::DownloadOutcome;
using platform::Text;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

class OutcomeLineTest : public QtWindows {
 protected:
  OutcomeLineTest() { showMain(); }

  void end(DownloadOutcome outcome, const Text& name = Text::fromUtf8("Office"),
           const Text& info = Text::fromUtf8("10.0.0.5")) {
    platform::DownloadObserver& observer = mApplication->downloadObserver();
    observer.downloadBegan(name, info);
    observer.phaseBegan(platform::DownloadPhase::Connecting, {});
    observer.versionsKnown(100, 200);
    observer.downloadEnded(outcome);
    settle();
  }

  QLabel& line() { return *window("PrinterSelectWindow")->findChild<QLabel*>("outcome"); }
  std::string shown() { return platform::withoutMarks(line().text()).toStdString(); }
  std::string readOut() {
    return QAccessible::queryAccessibleInterface(&line())->text(QAccessible::Name).toStdString();
  }

  // The text takes no more room than the line has.
  bool fits() {
    const QRect room(0, 0, line().width(), 10000);
    const QRect used = line().fontMetrics().boundingRect(room, Qt::TextWordWrap, line().text());
    return used.height() <= line().height() && used.width() <= line().width();
  }
};

TEST_F(OutcomeLineTest, SuccessIsToldWithPrinterVersionAndTime) {
  EXPECT_EQ(shown(), "");
  end(DownloadOutcome::Succeeded);
  EXPECT_THAT(shown(), MatchesRegex("Office \\(10\\.0\\.0\\.5\\) was updated to version 200 at "
                                    "[0-9][0-9]:[0-9][0-9].*\\."));
  EXPECT_EQ(readOut(), shown());
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&line())->role(), QAccessible::AlertMessage);
  EXPECT_TRUE(line().isVisible());
}

TEST_F(OutcomeLineTest, NextOutcomeTakesItsPlace) {
  end(DownloadOutcome::Succeeded);
  end(DownloadOutcome::Succeeded, Text::fromUtf8("Lab"));
  EXPECT_THAT(shown(), StartsWith("Lab (10.0.0.5) was updated to version 200 at "));
  end(DownloadOutcome::Failed);
  EXPECT_EQ(shown(), "");
  EXPECT_EQ(readOut(), "");
  end(DownloadOutcome::Succeeded);
  end(DownloadOutcome::UpToDate);
  EXPECT_EQ(shown(), "");
}

TEST_F(OutcomeLineTest, PrinterWithoutAnAddressIsNamedAlone) {
  end(DownloadOutcome::Succeeded, Text::fromUtf8("Office"), Text());
  EXPECT_THAT(shown(), StartsWith("Office was updated to version 200 at "));
}

TEST_F(OutcomeLineTest, PrinterWithoutANameIsStillAPrinter) {
  end(DownloadOutcome::Succeeded, Text(), Text());
  EXPECT_THAT(shown(), StartsWith("A printer without a name was updated to version 200 at "));
}

TEST_F(OutcomeLineTest, NameIsIsolatedAndLegible) {
  end(DownloadOutcome::Succeeded, Text::fromUtf8("Evil\u202Etxt.exe\n(%1)"));
  EXPECT_TRUE(line().text().startsWith(
      u"\u2068Evil\uFFFDtxt.exe\uFFFD(%1)\u2069 (\u206810.0.0.5\u2069) was updated"))
      << line().text().toStdString();
}

// No alert comes of it.
TEST_F(OutcomeLineTest, DownloadThatDidNotStartIsTold) {
  platform::DownloadObserver& observer = mApplication->downloadObserver();
  observer.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5"));
  observer.downloadEnded(DownloadOutcome::Failed);
  settle();
  EXPECT_EQ(shown(),
            "Office (10.0.0.5): This computer ran out of memory. Close other programs, then try "
            "again.");
  EXPECT_EQ(readOut(), shown());
  EXPECT_FALSE(window("PrinterSelectWindow")->findChild<QLabel*>("outcomeMark")->isVisible());
}

TEST_F(OutcomeLineTest, SuccessIsMarked) {
  const QLabel& mark = *window("PrinterSelectWindow")->findChild<QLabel*>("outcomeMark");
  EXPECT_FALSE(mark.isVisible());
  end(DownloadOutcome::Succeeded);
  EXPECT_TRUE(mark.isVisible());
  EXPECT_EQ(mark.pixmap(Qt::ReturnByValue).deviceIndependentSize(), QSizeF(16, 16));
  end(DownloadOutcome::Failed);
  EXPECT_FALSE(mark.isVisible());
}

TEST_F(OutcomeLineTest, MovesNothing) {
  const QRect before = list().geometry();
  const QRect button = this->button("PrinterSelectWindow", "Down"_4cc)->geometry();
  end(DownloadOutcome::Succeeded, Text::fromUtf8(std::string(63, 'W')));
  EXPECT_EQ(list().geometry(), before);
  EXPECT_EQ(this->button("PrinterSelectWindow", "Down"_4cc)->geometry(), button);
}

TEST_F(OutcomeLineTest, RoomOfATallWindowIsForTheList) {
  window("PrinterSelectWindow")->resize(600, 900);
  settle();
  EXPECT_LT(line().height(), 3 * line().fontMetrics().lineSpacing());
}

TEST_F(OutcomeLineTest, LongNamesAreCutToFitAndReadOutWhole) {
  for (const std::string& name :
       {std::string(63, 'W'),
        std::string("🖨️🖨️🖨️🖨️🖨️🖨️🖨️🖨️🖨️"),
        std::string(31, '\n') + "x"}) {
    for (const int width : {300, 480, 900}) {
      window("PrinterSelectWindow")->resize(width, 400);
      end(DownloadOutcome::Succeeded, Text::fromUtf8(name));
      EXPECT_TRUE(fits()) << width << " " << shown();
      EXPECT_THAT(shown(), testing::HasSubstr(" was updated to version 200 at ")) << width;
    }
  }
  end(DownloadOutcome::Succeeded, Text::fromUtf8(std::string(63, 'W')));
  EXPECT_THAT(readOut(), StartsWith(std::string(63, 'W') + " (10.0.0.5) was updated"));
  window("PrinterSelectWindow")->resize(300, 400);
  settle();
  EXPECT_THAT(shown(), testing::HasSubstr("W… ("));
  EXPECT_THAT(readOut(), StartsWith(std::string(63, 'W') + " (10.0.0.5) was updated"));
  EXPECT_EQ(platform::withoutMarks(line().toolTip()).toStdString(), readOut());
}

TEST_F(OutcomeLineTest, WiderWindowShowsTheWholeName) {
  window("PrinterSelectWindow")->resize(300, 400);
  end(DownloadOutcome::Succeeded, Text::fromUtf8(std::string(63, 'W')));
  EXPECT_THAT(shown(), testing::HasSubstr("W… ("));
  window("PrinterSelectWindow")->resize(1600, 400);
  settle();
  EXPECT_THAT(shown(), StartsWith(std::string(63, 'W') + " (10.0.0.5) was updated"));
}

TEST_F(OutcomeLineTest, ReturnsBehindTheNotice) {
  end(DownloadOutcome::Succeeded);
  fillList(1);
  list().selectionModel()->clear();
  action("Down"_4cc)->trigger();
  EXPECT_FALSE(line().isVisible());
  press(list(), Qt::Key_Down);
  EXPECT_TRUE(line().isVisible());
  EXPECT_THAT(shown(), StartsWith("Office (10.0.0.5) was updated"));
}

}  // namespace
