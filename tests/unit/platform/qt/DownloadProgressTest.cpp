#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>
#include <QLocale>
#include <QTimer>

#include "QtWindows.h"
#include "platform/qt/DownloadProgress.h"
#include "platform/qt/DownloadState.h"
#include "platform/qt/ProgressBar.h"
#include "platform/qt/QtText.h"

using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;
using std::chrono::milliseconds;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

constexpr char kUsualAdvice[] =
    "Do not switch the printer off, and leave it connected until this is done.";

// The progress sheet of the program, with a state whose clock the test turns.
class DownloadProgressTest : public QtWindows {
 protected:
  DownloadProgressTest() {
    create("ProgressSheet");
    QWidget& widget = *window("ProgressSheet")->findChild<QWidget*>("download");
    mProgress = dynamic_cast<platform::DownloadProgress*>(&widget);
    mProgress->watch(mState);
  }

  void begin(DownloadPhase phase, milliseconds bound = 0ms) {
    mState.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5"));
    mState.phaseBegan(phase, bound);
  }

  void burn(milliseconds bound) { begin(DownloadPhase::BurningFirmware, bound); }

  void pass(milliseconds time) {
    mNow += time;
    mProgress->refresh();
  }

  std::string said(const char* label) {
    return platform::withoutMarks(mProgress->findChild<QLabel*>(label)->text()).toStdString();
  }
  std::string phase() { return said("phase"); }
  std::string advice() { return said("advice"); }

  platform::ProgressBar& bar() {
    return *dynamic_cast<platform::ProgressBar*>(mProgress->findChild<QProgressBar*>("progress"));
  }
  bool isBusy() { return bar().maximum() == 0; }

  std::chrono::steady_clock::time_point mNow;
  platform::DownloadState mState{[this] { return mNow; }};
  platform::DownloadProgress* mProgress = nullptr;
};

TEST_F(DownloadProgressTest, PhasesAreSaidInWords) {
  begin(DownloadPhase::Connecting);
  EXPECT_EQ(phase(), "Connecting to the printer");
  EXPECT_TRUE(isBusy());
  mState.phaseBegan(DownloadPhase::AskingForVersion, 0ms);
  EXPECT_EQ(phase(), "Asking the printer for its version");
  EXPECT_TRUE(isBusy());
  mState.phaseBegan(DownloadPhase::ChoosingFirmware, 0ms);
  EXPECT_EQ(phase(), "Choosing the firmware");
  EXPECT_TRUE(isBusy());
  mState.phaseBegan(DownloadPhase::SendingFirmware, 0ms);
  EXPECT_EQ(phase(), "Choosing the firmware");
  mState.bytesHandedOver(0, 8'000'000);
  EXPECT_EQ(phase(), "Sending 8.0 MB");
  mState.phaseBegan(DownloadPhase::BurningFirmware, 120s);
  EXPECT_THAT(phase(),
              StartsWith("The printer is writing its memory: this may take up to 2 minute"));
  EXPECT_EQ(advice(), kUsualAdvice);
}

TEST_F(DownloadProgressTest, VersionsAreSaidWhenTheyAreKnown) {
  begin(DownloadPhase::AskingForVersion);
  EXPECT_EQ(said("versions"), "");
  mState.versionsKnown(190, 200);
  EXPECT_EQ(said("versions"), "Installed version: 190, available version: 200");
  begin(DownloadPhase::AskingForVersion);
  EXPECT_EQ(said("versions"), "");
  mState.versionsKnown(0, 200);
  EXPECT_EQ(said("versions"), "Available version: 200");
}

TEST_F(DownloadProgressTest, TimeForWritingIsRoundedUp) {
  const std::string begin = "The printer is writing its memory: this may take up to ";
  burn(3s);
  EXPECT_THAT(phase(), StartsWith(begin + "3 second"));
  burn(2001ms);
  EXPECT_THAT(phase(), StartsWith(begin + "3 second"));
  burn(59s);
  EXPECT_THAT(phase(), StartsWith(begin + "59 second"));
  burn(60s);
  EXPECT_THAT(phase(), StartsWith(begin + "1 minute"));
  burn(61s);
  EXPECT_THAT(phase(), StartsWith(begin + "2 minute"));
  burn(387s);
  EXPECT_THAT(phase(), StartsWith(begin + "7 minute"));
}

TEST_F(DownloadProgressTest, BarFollowsTheBytes) {
  begin(DownloadPhase::SendingFirmware);
  mState.bytesHandedOver(0, 4000);
  EXPECT_THAT(bar().part(), DoubleEq(0));
  mState.bytesHandedOver(1000, 4000);
  EXPECT_THAT(bar().part(), DoubleEq(0.25));
  mState.bytesHandedOver(3999, 4000);
  EXPECT_THAT(bar().part(), DoubleEq(0.99975));
  EXPECT_FALSE(isBusy());
}

// How long the printer takes for what the host still holds, nobody knows.
TEST_F(DownloadProgressTest, BarDoesNotStandWhenAllBytesAreHandedOver) {
  begin(DownloadPhase::SendingFirmware);
  mState.bytesHandedOver(4000, 4000);
  EXPECT_TRUE(isBusy());
  EXPECT_EQ(phase(), "Sending 4.0 kB");
}

TEST_F(DownloadProgressTest, BarFollowsTheTimeForWriting) {
  burn(48s);
  EXPECT_THAT(bar().part(), DoubleEq(0));
  pass(12s);
  EXPECT_THAT(bar().part(), DoubleEq(0.25));
  pass(35999ms);
  EXPECT_LT(bar().part(), 1);
  EXPECT_FALSE(isBusy());
  EXPECT_THAT(phase(), StartsWith("The printer is writing its memory"));
}

TEST_F(DownloadProgressTest, PrinterThatTakesLongerToWriteIsNoSecret) {
  burn(48s);
  pass(48s);
  EXPECT_TRUE(isBusy());
  EXPECT_EQ(phase(), "The printer takes longer than expected to write its memory");
  EXPECT_EQ(advice(), kUsualAdvice);
  pass(29999ms);
  EXPECT_EQ(advice(), kUsualAdvice);
  pass(1ms);
  EXPECT_THAT(advice(), StartsWith("The printer has not answered since it got the firmware. Leave "
                                   "it switched on: it may still be writing."));
  EXPECT_TRUE(isBusy());
}

TEST_F(DownloadProgressTest, VersionsAreAnAnswer) {
  begin(DownloadPhase::ChoosingFirmware);
  pass(20s);
  mState.versionsKnown(100, 200);
  pass(29999ms);
  EXPECT_EQ(advice(), kUsualAdvice);
}

// Also in a language that is written the other way.
TEST_F(DownloadProgressTest, AmountIsIsolated) {
  begin(DownloadPhase::SendingFirmware);
  mState.bytesHandedOver(0, 8'000'000);
  EXPECT_EQ(mProgress->findChild<QLabel*>("phase")->text(), u"Sending \u20688.0 MB\u2069");
}

TEST_F(DownloadProgressTest, BarIsNeverMoreThanFull) {
  bar().showPart(1.5);
  EXPECT_THAT(bar().part(), DoubleEq(1));
  bar().showPart(-1);
  EXPECT_THAT(bar().part(), DoubleEq(0));
}

TEST_F(DownloadProgressTest, BarWithoutAnEndIsNotDrawnEmpty) {
  bar().resize(200, 20);
  bar().showPart(0);
  const QImage empty = bar().grab().toImage();
  bar().showBusy();
  EXPECT_NE(bar().grab().toImage(), empty);
}

TEST_F(DownloadProgressTest, SilenceIsToldAfterHalfAMinute) {
  for (const DownloadPhase phase : {DownloadPhase::Connecting, DownloadPhase::AskingForVersion}) {
    begin(phase);
    pass(29999ms);
    EXPECT_EQ(advice(), kUsualAdvice);
    pass(1ms);
    EXPECT_THAT(advice(), StartsWith("The printer has not answered for more than 30 seconds."));
  }
}

TEST_F(DownloadProgressTest, PrinterThatTakesNothingIsToldAfterHalfAMinute) {
  begin(DownloadPhase::SendingFirmware);
  pass(20s);
  mState.bytesHandedOver(4000, 4000);
  pass(29999ms);
  EXPECT_EQ(advice(), kUsualAdvice);
  pass(1ms);
  EXPECT_THAT(advice(), StartsWith("The printer has not taken any data for more than 30 seconds. "
                                   "Leave it switched on"));
}

TEST_F(DownloadProgressTest, AdviceGoesWhenThePrinterAnswers) {
  begin(DownloadPhase::AskingForVersion);
  pass(100s);
  EXPECT_NE(advice(), kUsualAdvice);
  mState.phaseBegan(DownloadPhase::ChoosingFirmware, 0ms);
  EXPECT_EQ(advice(), kUsualAdvice);
}

TEST_F(DownloadProgressTest, NextDownloadStartsAfresh) {
  burn(3s);
  pass(100s);
  mState.downloadEnded(DownloadOutcome::Failed);
  mState.downloadBegan(Text::fromUtf8("Lab"), Text());
  EXPECT_EQ(phase(), "Connecting to the printer");
  EXPECT_EQ(advice(), kUsualAdvice);
  EXPECT_TRUE(isBusy());
}

TEST_F(DownloadProgressTest, NothingRunsWithoutADownload) {
  QTimer& timer = *mProgress->findChild<QTimer*>();
  EXPECT_FALSE(timer.isActive());
  begin(DownloadPhase::Connecting);
  EXPECT_TRUE(timer.isActive());
  EXPECT_TRUE(isBusy());
  mState.downloadEnded(DownloadOutcome::Failed);
  EXPECT_FALSE(timer.isActive());
  EXPECT_FALSE(isBusy());
}

// It is told of a value when the bar has another one.
TEST_F(DownloadProgressTest, AssistiveTechnologyHearsOfTenthsOnly) {
  std::vector<int> values;
  QObject::connect(&bar(), &QProgressBar::valueChanged,
                   [&](int value) { values.push_back(value); });
  begin(DownloadPhase::SendingFirmware);
  for (std::size_t count = 0; count < 1000; ++count) mState.bytesHandedOver(count, 1000);
  EXPECT_THAT(values, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
  EXPECT_EQ(bar().maximum(), 10);
}

TEST_F(DownloadProgressTest, BarIsDescribedByThePhase) {
  begin(DownloadPhase::AskingForVersion);
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&bar());
  EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), "Download in progress");
  EXPECT_EQ(accessible->text(QAccessible::Description).toStdString(),
            "Asking the printer for its version");
}

TEST_F(DownloadProgressTest, PhaseAndAdviceAreAlerts) {
  begin(DownloadPhase::SendingFirmware);
  mState.bytesHandedOver(0, 8'000'000);
  for (const char* label : {"phase", "advice"}) {
    QAccessibleInterface* accessible =
        QAccessible::queryAccessibleInterface(mProgress->findChild<QLabel*>(label));
    EXPECT_EQ(accessible->role(), QAccessible::AlertMessage);
    EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), said(label));
  }
}

// Whatever is said, the bar keeps its place, and so does all else until long advice needs room.
TEST_F(DownloadProgressTest, NothingJumps) {
  showMain();
  const platform::WindowRef sheet = create("ProgressSheet");
  QWidget& shown = *mProgress->window();
  ASSERT_EQ(toolkit().showSheetWindow(sheet, mMain), platform::noErr);
  shown.show();
  settle();
  const QRect before = bar().geometry();
  const QSize size = shown.size();
  burn(48s);
  mState.versionsKnown(190, 200);
  settle();
  EXPECT_EQ(bar().geometry(), before);
  EXPECT_EQ(shown.size(), size);
  pass(78s);
  settle();
  settle();  // the layout around that of the progress
  EXPECT_EQ(bar().geometry(), before);
  EXPECT_EQ(shown.width(), size.width());
  EXPECT_GT(shown.height(), size.height());
  const auto* const label = mProgress->findChild<QLabel*>("advice");
  EXPECT_LE(label->heightForWidth(label->width()), label->height());
}

}  // namespace
