#include "ConfirmationSheet.h"
#include "DialogSheet.h"
#include "NibWrapper.h"
#include "ProgressSheet.h"
#include "UiFixture.h"
#include "WindowWrapper.h"

namespace {

using namespace platform::literals;

constexpr platform::ControlId kQuestion{"tCnf"_4cc, 0};
constexpr platform::ControlId kPrinterName{"tPNm"_4cc, 0};

class SheetsTest : public UiFixture {
 protected:
  SheetsTest() {
    doubles.toolkit.showWindow(window.get());
    doubles.takeToolkitCalls();
  }

  NibWrapper nib;
  WindowWrapper window{text("PrinterSelectWindow"), nib};
};

TEST_F(SheetsTest, SheetIsCreatedHiddenWithItsMessageControl) {
  DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, ProgressSheet)",
                                               "getControlById(ProgressSheet, tPNm.0)"}));
  EXPECT_FALSE(screen().isVisible("ProgressSheet"));
}

TEST_F(SheetsTest, SheetIsShownOnItsParentAndHidden) {
  DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
  doubles.takeToolkitCalls();
  sheet.show();
  EXPECT_TRUE(screen().isBlocked("PrinterSelectWindow"));
  sheet.hide();
  EXPECT_FALSE(screen().isBlocked("PrinterSelectWindow"));
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"showSheetWindow(ProgressSheet, PrinterSelectWindow)",
                   "hideSheetWindow(ProgressSheet)"}));
}

TEST_F(SheetsTest, SheetWithoutSignatureHasNoMessage) {
  DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), 0);
  sheet.setMsg(text("nothing"));
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"createWindowFromNib(main, ProgressSheet)"});
  EXPECT_EQ(screen().text("ProgressSheet", kPrinterName), std::nullopt);
}

TEST_F(SheetsTest, SheetThatCannotBeCreatedThrows) {
  script().answerNext("createWindowFromNib", -50);
  expectRuntimeError(withStatus("Failed to create dialog sheet."), [&] {
    const DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
  });
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"createWindowFromNib(main, ProgressSheet)"});
}

TEST_F(SheetsTest, SheetWithoutItsMessageControlThrows) {
  script().answerNext("getControlById", -50);
  expectRuntimeError(withStatus("Failed to create dialog sheet."), [&] {
    const DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
  });
}

TEST_F(SheetsTest, FailureToSetTheMessageIsIgnored) {
  DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
  script().answerNext("setControlText", -50);
  sheet.setMsg(text("lost"));
  EXPECT_EQ(doubles.log.entries(), Entries{});
}

TEST_F(SheetsTest, DestroyedSheetLeavesItsWindow) {
  {
    DialogSheet sheet(text("ProgressSheet"), nib.get(), window.get(), "tPNm"_4cc);
    doubles.takeToolkitCalls();
  }
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
  EXPECT_TRUE(screen().exists("ProgressSheet"));
}

TEST_F(SheetsTest, ConfirmationShowsTheTextForItsKey) {
  doubles.strings.define("NETWORK_PRINTER_CONFIRMATION", "Update this printer?");
  ConfirmationSheet sheet(nib.get(), window.get());
  sheet.setConfirmationMsg(text("NETWORK_PRINTER_CONFIRMATION"));
  EXPECT_EQ(doubles.strings.askedFor(), Lines{"NETWORK_PRINTER_CONFIRMATION"});
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"createWindowFromNib(main, ConfirmDownloadSheet)",
                   "getControlById(ConfirmDownloadSheet, tCnf.0)",
                   "setControlText(ConfirmDownloadSheet/tCnf.0, Update this printer?)"}));
}

TEST_F(SheetsTest, ConfirmationWithoutTranslationShowsTheKey) {
  ConfirmationSheet sheet(nib.get(), window.get());
  sheet.setConfirmationMsg(text("USB_PRINTER_CONFIRMATION"));
  EXPECT_EQ(screen().text("ConfirmDownloadSheet", kQuestion), "USB_PRINTER_CONFIRMATION");
}

class ProgressSheetTest : public SheetsTest {
 protected:
  ProgressSheetTest() { doubles.takeToolkitCalls(); }

  std::string detailsFor(const platform::Text& name, const platform::Text& info) {
    sheet.setPrinterDetails(name, info);
    return screen().text("ProgressSheet", kPrinterName).value_or("<none>");
  }

  ProgressSheet sheet{nib.get(), window.get()};
};

TEST_F(ProgressSheetTest, NamesThePrinter) {
  EXPECT_EQ(detailsFor(text("Front desk"), text("192.0.2.7")), "Front desk (192.0.2.7)");
  EXPECT_EQ(detailsFor(text(""), text("")), " ()");
  EXPECT_EQ(detailsFor(text("%@ %s"), text("100%")), "%@ %s (100%)");
}

TEST_F(ProgressSheetTest, NullTextsAreSaidToBeNull) {
  EXPECT_EQ(detailsFor(text("Front desk"), platform::Text()), "Front desk ((null))");
  EXPECT_EQ(detailsFor(platform::Text(), text("192.0.2.7")), "(null) (192.0.2.7)");
}

TEST_F(ProgressSheetTest, FailedAlertIsASheetOfTheProgressSheet) {
  sheet.show();
  doubles.takeToolkitCalls();
  sheet.showAlertMessage(ProgressSheet::Failed);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, FailedSheet)",
                                               "showSheetWindow(FailedSheet, ProgressSheet)"}));
  EXPECT_TRUE(screen().isBlocked("ProgressSheet"));
  EXPECT_EQ(doubles.log.entries(), Entries{});
}

TEST_F(ProgressSheetTest, UpToDateAlertIsASheetOfTheProgressSheet) {
  sheet.showAlertMessage(ProgressSheet::UpToDate);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, UpToDateSheet)",
                                               "showSheetWindow(UpToDateSheet, ProgressSheet)"}));
}

TEST_F(ProgressSheetTest, RemovedAlertIsDisposedOf) {
  sheet.showAlertMessage(ProgressSheet::Failed);
  doubles.takeToolkitCalls();
  sheet.removeAlertMessage();
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"hideSheetWindow(FailedSheet)", "disposeWindow(FailedSheet)"}));
  EXPECT_FALSE(screen().exists("FailedSheet"));
}

TEST_F(ProgressSheetTest, AnotherAlertMayFollowARemovedOne) {
  sheet.show();
  sheet.showAlertMessage(ProgressSheet::Failed);
  sheet.removeAlertMessage();
  sheet.showAlertMessage(ProgressSheet::UpToDate);
  EXPECT_TRUE(screen().isVisible("UpToDateSheet"));
}

TEST_F(ProgressSheetTest, AlertThatCannotBeCreatedIsLoggedWithOneTextForBoth) {
  script().answerNext("createWindowFromNib", -50);
  sheet.showAlertMessage(ProgressSheet::Failed);
  script().answerNext("createWindowFromNib", -50);
  sheet.showAlertMessage(ProgressSheet::UpToDate);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, FailedSheet)",
                                               "createWindowFromNib(main, UpToDateSheet)"}));
  const LogEntry failure{3, withStatus("Failed to create FailedSheet window.")};
  EXPECT_EQ(doubles.log.entries(), (Entries{failure, failure}));
}

TEST_F(ProgressSheetTest, NullAlertIsLoggedWithStatusZero) {
  script().answerNext("createWindowFromNib", platform::noErr);
  sheet.showAlertMessage(ProgressSheet::UpToDate);
  EXPECT_EQ(doubles.log.entries(),
            (Entries{{3, "Failed to create FailedSheet window. <status=0 => ; desc: >"}}));
}

TEST_F(ProgressSheetTest, RemovalWithoutAlertReachesTheToolkit) {
  sheet.removeAlertMessage();
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"hideSheetWindow(none)", "disposeWindow(none)"}));
}

using ProgressSheetDeathTest = ProgressSheetTest;

TEST_F(ProgressSheetDeathTest, SecondAlertIsFatal) {
  sheet.showAlertMessage(ProgressSheet::Failed);
  EXPECT_DEATH(sheet.showAlertMessage(ProgressSheet::UpToDate),
               testing::MatchesRegex("Assertion failed: \\(mAlertSheet == 0\\), function "
                                     "showAlertMessage, file "
                                     "Host/installkit/osx/fwupdate/ProgressSheet, line "
                                     "[0-9]+\\.\n"));
}

}  // namespace
