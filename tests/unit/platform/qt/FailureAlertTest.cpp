// What the alerts after a download show, on their widgets.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <optional>

#include "FakeSystemLog.h"
#include "QtWindows.h"
#include "platform/DownloadObserver.h"
#include "platform/LogHistory.h"
#include "platform/Platform.h"

using namespace platform::literals;
using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;
using testing::EndsWith;

namespace {

class QtFailureAlert : public QtWindows {
 protected:
  QtFailureAlert() {
    mObservers.add(mHistory);
    mObservers.add(mApplication->downloadObserver());
    showMain();
  }

  // A download that logs these errors, and its alert.
  void fail(const std::vector<std::string>& errors, const char* name = "Office",
            const char* info = "10.0.0.5") {
    mObservers.downloadBegan(Text::fromUtf8(name), Text::fromUtf8(info));
    for (const std::string& error : errors) mHistory.write(3, error.c_str());
    end(DownloadOutcome::Failed, "FailedSheet");
  }

  void end(DownloadOutcome outcome, const char* alert) {
    mObservers.downloadEnded(outcome);
    showSheet(alert);
    settle();
  }

  // What a label says to assistive technology; "hidden" when it is.
  std::string says(const char* label, const char* alert = "FailedSheet") {
    auto* const found = window(alert)->findChild<QLabel*>(label);
    if (!found->isVisible()) return "hidden";
    return found->accessibleName().isEmpty() ? found->text().toStdString()
                                             : found->accessibleName().toStdString();
  }

  QPushButton& details() { return *window("FailedSheet")->findChild<QPushButton*>("details"); }
  QPushButton& copy() { return *window("FailedSheet")->findChild<QPushButton*>("copy"); }
  QPlainTextEdit& log() { return *window("FailedSheet")->findChild<QPlainTextEdit*>("log"); }

  FakeSystemLog mHost;
  platform::LogHistory mHistory{
      mHost, [] { return platform::LogHistory::Time(std::chrono::seconds(1000000000)); }};
  platform::DownloadObservers mObservers;
  platform::PlatformScope mScope{{.downloadObserver = &mObservers, .logHistory = &mHistory}};
};

TEST_F(QtFailureAlert, NamesPrinterCauseAndNextStep) {
  fail({"Could not find a firmware file to download.", "Failed to load firmware file."});
  EXPECT_EQ(says("headline"), "The firmware was not updated.");
  EXPECT_EQ(says("printer"), "Office (10.0.0.5)");
  EXPECT_EQ(says("cause"), "There is no firmware for this model of printer.");
  EXPECT_EQ(says("advice"), "Ask whoever supports this printer where its firmware is to be had.");
}

TEST_F(QtFailureAlert, NamesAPrinterWithoutAddress) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text());
  end(DownloadOutcome::Failed, "FailedSheet");
  EXPECT_EQ(says("printer"), "Office");
  EXPECT_EQ(says("cause"), "hidden");
  EXPECT_EQ(says("advice"),
            "Check that the printer is switched on, connected and not printing, then try again.");
}

TEST_F(QtFailureAlert, ForeignTextsAreLegible) {
  fail({"Burned\n\u202Edown \x80"}, "\u202EecilA\n", "10.0.0.5");
  EXPECT_EQ(says("printer"), "\uFFFDecilA\uFFFD (10.0.0.5)");
  EXPECT_EQ(says("cause"), "Burned\uFFFD\uFFFDdown \uFFFD");
  details().click();
  EXPECT_THAT(log().toPlainText().toStdString(), EndsWith(" error: Burned\uFFFD\uFFFDdown \uFFFD"));
}

TEST_F(QtFailureAlert, LongUnknownErrorIsCut) {
  fail({std::string(800, 'x')});
  EXPECT_EQ(says("cause"), std::string(160, 'x') + "…");
}

TEST_F(QtFailureAlert, UnknownErrorThatIsCutByACharacterShowsIt) {
  fail({std::string(161, 'x')});
  EXPECT_EQ(says("cause"), std::string(160, 'x') + "…");
}

// Whoever holds the interface chooses its name.
TEST_F(QtFailureAlert, NameOfTheHolderIsNoTemplate) {
  fail({"The printer's interface is in use by %1 (process 3)."});
  EXPECT_EQ(says("cause"), "The program %1 is using the printer’s USB connection.");
  EXPECT_EQ(says("advice"), "Close %1, then try again.");
}

TEST_F(QtFailureAlert, FirmwareThatWasSentIsNotConfirmed) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text());
  mObservers.bytesHandedOver(100, 100);
  mHistory.write(3, "General runtime error occurred during async task: Unable to write data");
  end(DownloadOutcome::Failed, "FailedSheet");
  EXPECT_EQ(says("headline"), "The printer did not confirm the update.");
}

TEST_F(QtFailureAlert, HalfTheFirmwareIsNoFirmware) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text());
  mObservers.phaseBegan(DownloadPhase::SendingFirmware, {});
  mObservers.bytesHandedOver(50, 100);
  end(DownloadOutcome::Failed, "FailedSheet");
  EXPECT_EQ(says("headline"), "The firmware was not updated.");
}

TEST_F(QtFailureAlert, BurningPrinterHasTheFirmware) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text());
  mObservers.phaseBegan(DownloadPhase::BurningFirmware, {});
  end(DownloadOutcome::Failed, "FailedSheet");
  EXPECT_EQ(says("headline"), "The printer did not confirm the update.");
}

TEST_F(QtFailureAlert, UpToDateNamesThePrinter) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5"));
  end(DownloadOutcome::UpToDate, "UpToDateSheet");
  EXPECT_EQ(says("headline", "UpToDateSheet"), "The printer is up to date.");
  EXPECT_EQ(says("printer", "UpToDateSheet"), "Office (10.0.0.5)");
  EXPECT_EQ(says("explanation", "UpToDateSheet"),
            "It already runs this firmware or a newer one. Nothing was changed.");
  EXPECT_EQ(says("advice", "UpToDateSheet"), "hidden");
}

TEST_F(QtFailureAlert, UpToDateSaysBothVersions) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5"));
  mObservers.versionsKnown(210, 200);
  end(DownloadOutcome::UpToDate, "UpToDateSheet");
  EXPECT_EQ(says("versions", "UpToDateSheet"), "Installed version: 210, available version: 200");
}

TEST_F(QtFailureAlert, DamagedFileIsNotUpToDate) {
  mObservers.downloadBegan(Text::fromUtf8("Office"), Text());
  mObservers.versionsKnown(210, 0);
  mHistory.write(3, "Invalid platform ID version: got 2, expected 3");
  end(DownloadOutcome::UpToDate, "UpToDateSheet");
  EXPECT_EQ(says("headline", "UpToDateSheet"), "Nothing was sent to the printer.");
  EXPECT_EQ(says("explanation", "UpToDateSheet"), "The file with the firmware is damaged.");
  EXPECT_EQ(says("versions", "UpToDateSheet"), "hidden");
  EXPECT_EQ(says("advice", "UpToDateSheet"),
            "Install the printer’s firmware again, then try again.");
}

TEST_F(QtFailureAlert, DetailsAreClosedAtFirstAndIssueNoCommand) {
  fail({"Failed to load firmware file."});
  const int height = window("FailedSheet")->height();
  EXPECT_FALSE(log().isVisible());
  EXPECT_FALSE(copy().isVisible());
  details().click();
  settle();
  EXPECT_TRUE(log().isVisible());
  EXPECT_TRUE(copy().isVisible());
  EXPECT_GT(window("FailedSheet")->height(), height);
  EXPECT_LE(window("FailedSheet")->height(),
            window("FailedSheet")->screen()->availableSize().height());
  copy().click();
  details().click();
  settle();
  EXPECT_FALSE(log().isVisible());
  EXPECT_EQ(window("FailedSheet")->height(), height);
  EXPECT_TRUE(mCommands.empty());
}

TEST_F(QtFailureAlert, ArrowOfTheDetailsPointsWhereTheyOpen) {
  fail({"Failed to load firmware file."});
  const auto arrow = [this] { return details().icon().pixmap(details().iconSize()).toImage(); };
  const QImage fromLeftToRight = arrow();
  details().setLayoutDirection(Qt::RightToLeft);
  EXPECT_NE(arrow(), fromLeftToRight);
}

TEST_F(QtFailureAlert, CloseStaysTheDefault) {
  fail({"Failed to load firmware file."});
  EXPECT_EQ(window("FailedSheet")->focusWidget(), button("FailedSheet", "Clos"_4cc));
  press(*window("FailedSheet"), Qt::Key_Escape);
  EXPECT_EQ(mCommands, std::vector<std::string>{"Clos"});
}

TEST_F(QtFailureAlert, AssistiveTechnologyKnowsWhetherDetailsAreOpen) {
  fail({});
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&details());
  EXPECT_EQ(accessible->text(QAccessible::Name), "Details");
  EXPECT_EQ(accessible->role(), QAccessible::Button);
  EXPECT_TRUE(accessible->state().expandable);
  EXPECT_TRUE(accessible->state().collapsed);
  accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(accessible->state().expanded);
  EXPECT_FALSE(accessible->state().collapsed);
  EXPECT_TRUE(log().isVisible());
}

TEST_F(QtFailureAlert, LogHasTheEntriesOfThisDownload) {
  mHistory.write(5, "before");
  fail({"first", "second"});
  mHistory.write(5, "after");
  const QStringList lines = log().toPlainText().split(u'\n');
  ASSERT_EQ(lines.size(), 2);
  EXPECT_THAT(lines[0].toStdString(), EndsWith(":40 error: first"));
  EXPECT_THAT(lines[1].toStdString(), EndsWith(":40 error: second"));
  EXPECT_TRUE(log().isReadOnly());
}

TEST_F(QtFailureAlert, CopyHasEverythingThatIsSaid) {
  fail({"Failed to load firmware file."});
  details().click();
  copy().click();
  EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
              testing::StartsWith("The firmware was not updated.\n"
                                  "Office (10.0.0.5)\n"
                                  "The file with the firmware cannot be read.\n"
                                  "Install the printer’s firmware again, then try again.\n"));
  EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
              EndsWith(" error: Failed to load firmware file."));
  EXPECT_EQ(copy().text(), "Details c&opied");
}

}  // namespace
