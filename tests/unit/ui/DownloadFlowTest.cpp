// Downloads as a user goes through them: rows, buttons and menu items, and what is on the screen.
#include "CarbonEventHandlerFixture.h"

namespace {

using namespace platform::literals;

class DownloadFlowTest : public CarbonEventHandlerFixture {
 protected:
  // The windows that a user sees, from the bottom up; in brackets those that take no input.
  std::string onScreen() {
    std::string seen;
    for (const char* name : {"PrinterSelectWindow", "ConfirmDownloadSheet", "ProgressSheet",
                             "FailedSheet", "UpToDateSheet"}) {
      if (!screen().isVisible(name)) continue;
      const bool blocked = screen().isBlocked(name);
      seen += blocked ? "[" + std::string(name) + "] " : std::string(name) + " ";
    }
    return seen;
  }

  bool pressDownload() { return screen().press("PrinterSelectWindow", kOkButton); }
  bool pressYes() { return screen().press("ConfirmDownloadSheet", kYesButton); }
  bool pressNo() { return screen().press("ConfirmDownloadSheet", kNoButton); }
  bool pressClose(const std::string& alert) { return screen().press(alert, kCloseButton); }
};

TEST_F(DownloadFlowTest, OkButtonWorksOnlyWhileARowIsSelected) {
  addNetworkPrinter();
  EXPECT_FALSE(pressDownload());
  select(1);
  EXPECT_TRUE(pressDownload());
  EXPECT_TRUE(pressNo());
  select(0);
  EXPECT_FALSE(pressDownload());
}

TEST_F(DownloadFlowTest, MenuCommandWithoutSelectionShowsNothing) {
  doubles.toolkit.setMenuBarFromNib(nib.get(), text("MenuBar"));
  EXPECT_TRUE(screen().chooseMenuItem("Down"_4cc));
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
}

TEST_F(DownloadFlowTest, DeclinedDownloadLeavesThePrinterAlone) {
  addNetworkPrinter();
  select(1);
  pressDownload();
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] ConfirmDownloadSheet ");
  EXPECT_TRUE(pressNo());
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
  EXPECT_FALSE(network.isConnecting());
}

TEST_F(DownloadFlowTest, DoneDownloadClosesTheProgress) {
  addNetworkPrinter();
  select(1);
  pressDownload();
  pressYes();
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] ProgressSheet ");
  downloader.succeeded();
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
}

TEST_F(DownloadFlowTest, UpToDatePrinterIsToldUntilClosed) {
  addUsbPrinter();
  select(1);
  pressDownload();
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] ProgressSheet ");
  downloader.upToDate();
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] [ProgressSheet] UpToDateSheet ");
  EXPECT_TRUE(pressClose("UpToDateSheet"));
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
}

TEST_F(DownloadFlowTest, FailedDownloadIsToldAndAnotherMayFollow) {
  addNetworkPrinter();
  select(1);
  network.setSendResult(111);
  for (int attempt = 0; attempt < 2; ++attempt) {
    pressDownload();
    pressYes();
    network.connectionEnds();
    EXPECT_EQ(onScreen(), "[PrinterSelectWindow] [ProgressSheet] FailedSheet ");
    EXPECT_FALSE(network.isOpen());
    EXPECT_TRUE(pressClose("FailedSheet"));
    EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
  }
}

TEST_F(DownloadFlowTest, DownloadThatFailsAtOnceShowsItsAlertOnTheProgress) {
  addNetworkPrinter();
  select(1);
  network.setConnectResult(111);
  pressDownload();
  forget();
  pressYes();
  EXPECT_EQ(takeToolkitChanges(),
            (Lines{"hideSheetWindow(ConfirmDownloadSheet)",
                   "setControlText(ProgressSheet/tPNm.0, Front desk (192.0.2.7))",
                   "createWindowFromNib(main, FailedSheet)",
                   "showSheetWindow(FailedSheet, ProgressSheet)",
                   "showSheetWindow(ProgressSheet, PrinterSelectWindow)"}));
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] [ProgressSheet] FailedSheet ");
  EXPECT_TRUE(pressClose("FailedSheet"));
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
}

TEST_F(DownloadFlowTest, PrinterThatGoesWhileItIsAskedAboutIsNotUpdated) {
  addUsbPrinter();
  select(1);
  command("Down"_4cc);
  EXPECT_EQ(onScreen(), "[PrinterSelectWindow] ProgressSheet ");
  downloader.succeeded();

  addNetworkPrinter();
  select(2);
  pressDownload();
  screen().list("PrinterSelectWindow", kList)->remove(2);
  forget();
  EXPECT_TRUE(pressYes());
  EXPECT_EQ(onScreen(), "PrinterSelectWindow ");
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{3, "Failed to download firmware: Invalid list selection"}}));
}

TEST_F(DownloadFlowTest, NothingBehindASheetIssuesACommand) {
  doubles.toolkit.setMenuBarFromNib(nib.get(), text("MenuBar"));
  addNetworkPrinter();
  select(1);
  pressDownload();
  EXPECT_FALSE(pressDownload());
  EXPECT_FALSE(screen().chooseMenuItem("Down"_4cc));
  EXPECT_FALSE(screen().select("PrinterSelectWindow", kList, 0));
}

TEST_F(DownloadFlowTest, QuitWhileTheQuestionIsUpEndsTheLoop) {
  doubles.toolkit.setMenuBarFromNib(nib.get(), text("MenuBar"));
  addNetworkPrinter();
  select(1);
  pressDownload();
  EXPECT_TRUE(screen().chooseMenuItem("quit"_4cc));
  EXPECT_EQ(onScreen(), "");
  EXPECT_THAT(doubles.events.takeCalls(), testing::Contains("command quit"));
}

}  // namespace
