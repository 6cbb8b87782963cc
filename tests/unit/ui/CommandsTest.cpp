// The commands: what each does, and what it answers.
#include <new>

#include "CarbonEventHandlerFixture.h"

namespace {

using namespace platform::literals;
using platform::Event;

class CommandsTest : public CarbonEventHandlerFixture {
 protected:
  // The handler's own answer, without what the platform does then.
  platform::OSStatus quit() {
    Event event("cmds"_4cc, 1);
    event.setParameter("----"_4cc, platform::HICommand{0, "quit"_4cc, 0, 0});
    return caught(Commands)(event);
  }
};

const std::string kShowProgress = "showSheetWindow(ProgressSheet, PrinterSelectWindow)";

TEST_F(CommandsTest, DownloadWithoutSelectionIsLoggedAndHandled) {
  addNetworkPrinter();
  forget();
  EXPECT_EQ(command("Down"_4cc), 0);
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{3, "Failed to download firmware: Invalid list selection"}}));
  EXPECT_EQ(takeToolkitChanges(), Lines{});
}

TEST_F(CommandsTest, DownloadOfARowWithoutRecordIsLoggedAndHandled) {
  screen().list("PrinterSelectWindow", kList)->add(5);
  select(5);
  EXPECT_EQ(command("Down"_4cc), 0);
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{3, "Failed to download firmware: Invalid index into list"}}));
}

TEST_F(CommandsTest, DownloadToANetworkPrinterAsksFirst) {
  addNetworkPrinter();
  select(1);
  EXPECT_EQ(command("Down"_4cc), 0);
  EXPECT_EQ(doubles.strings.askedFor(), Lines{"NETWORK_PRINTER_CONFIRMATION"});
  EXPECT_EQ(takeToolkitChanges(),
            (Lines{"setControlText(ConfirmDownloadSheet/tCnf.0, Update?)",
                   "showSheetWindow(ConfirmDownloadSheet, PrinterSelectWindow)"}));
  EXPECT_FALSE(network.isConnecting());
  EXPECT_EQ(doubles.log.takeEntries(), Entries{});
}

TEST_F(CommandsTest, DownloadToAUsbPrinterStartsAtOnce) {
  addUsbPrinter();
  select(1);
  EXPECT_EQ(command("Down"_4cc), 0);
  EXPECT_EQ(doubles.strings.askedFor(), Lines{});
  EXPECT_EQ(takeToolkitChanges(),
            (Lines{"setControlText(ProgressSheet/tPNm.0, Veltra KX350T (VX0042))", kShowProgress}));
  EXPECT_EQ(doubles.events.waiting(), Lines{"FwDl 1"});
}

TEST_F(CommandsTest, YesStartsTheDownload) {
  addNetworkPrinter();
  select(1);
  command("Down"_4cc);
  forget();
  EXPECT_EQ(command("Yes "_4cc), 0);
  EXPECT_EQ(takeToolkitChanges(),
            (Lines{"hideSheetWindow(ConfirmDownloadSheet)",
                   "setControlText(ProgressSheet/tPNm.0, Front desk (192.0.2.7))", kShowProgress}));
  EXPECT_TRUE(network.isConnecting());
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{5, "Downloading firmware to Bonjour printer: Front desk(192.0.2.7)"},
                     {5, "Connecting to I/O transport..."}}));
}

TEST_F(CommandsTest, YesForAPrinterThatWentAwayFails) {
  EXPECT_EQ(command("Yes "_4cc), -9874);
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{3, "Failed to download firmware: Invalid list selection"}}));
  EXPECT_EQ(takeToolkitChanges(), Lines{"hideSheetWindow(ConfirmDownloadSheet)"});
}

TEST_F(CommandsTest, NoHidesTheQuestion) {
  addNetworkPrinter();
  select(1);
  command("Down"_4cc);
  forget();
  EXPECT_EQ(command("No  "_4cc), 0);
  EXPECT_EQ(takeToolkitChanges(), Lines{"hideSheetWindow(ConfirmDownloadSheet)"});
  EXPECT_FALSE(network.isConnecting());
}

TEST_F(CommandsTest, DownloadThatCannotStartIsLoggedAndNotHandled) {
  network.beforeSocket = [] { throw std::runtime_error("no socket left"); };
  addNetworkPrinter();
  select(1);
  EXPECT_EQ(command("Yes "_4cc), -9874);
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{5, "Downloading firmware to Bonjour printer: Front desk(192.0.2.7)"},
                     {3, "Failed to download firmware: no socket left"}}));
  EXPECT_EQ(takeToolkitChanges(),
            (Lines{"hideSheetWindow(ConfirmDownloadSheet)",
                   "setControlText(ProgressSheet/tPNm.0, Front desk (192.0.2.7))"}));
}

TEST_F(CommandsTest, LackOfMemoryIsLoggedAndNotHandled) {
  network.beforeSocket = [] { throw std::bad_alloc(); };
  addNetworkPrinter();
  select(1);
  EXPECT_EQ(command("Yes "_4cc), -9874);
  EXPECT_EQ(doubles.log.takeEntries().back(),
            (LogEntry{3, "Failed to download firmware: std::bad_alloc"}));
}

TEST_F(CommandsTest, OutOfRangeWhileStartingIsLoggedAndNotHandled) {
  network.beforeSocket = [] { throw std::out_of_range("beyond"); };
  addNetworkPrinter();
  select(1);
  EXPECT_EQ(command("Yes "_4cc), -9874);
  EXPECT_EQ(doubles.log.takeEntries().back(), (LogEntry{3, "Failed to download firmware: beyond"}));
}

TEST_F(CommandsTest, OtherExceptionsPassThrough) {
  network.beforeSocket = [] { throw std::logic_error("misuse"); };
  addNetworkPrinter();
  select(1);
  EXPECT_THROW(command("Yes "_4cc), std::logic_error);
}

TEST_F(CommandsTest, ResumeThatCannotBePostedIsOnlyLogged) {
  addUsbPrinter();
  doubles.events.fail(FakeEvents::Operation::CreateEvent, -50);
  select(1);
  EXPECT_EQ(command("Down"_4cc), 0);
  EXPECT_EQ(doubles.log.takeEntries().back(),
            (LogEntry{3, withStatus("Failed to create or post FirmwareDownloader event.")}));
}

TEST_F(CommandsTest, DoneHidesTheProgress) {
  EXPECT_EQ(command("DlOk"_4cc), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"hideSheetWindow(ProgressSheet)"});
}

TEST_F(CommandsTest, FailedShowsTheFailure) {
  EXPECT_EQ(command("DlNo"_4cc), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, FailedSheet)",
                                               "showSheetWindow(FailedSheet, ProgressSheet)"}));
}

TEST_F(CommandsTest, UpToDateShowsThatItIs) {
  EXPECT_EQ(command("DlUd"_4cc), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(), (Lines{"createWindowFromNib(main, UpToDateSheet)",
                                               "showSheetWindow(UpToDateSheet, ProgressSheet)"}));
}

TEST_F(CommandsTest, CloseRemovesTheAlertThenTheProgress) {
  command("DlNo"_4cc);
  forget();
  EXPECT_EQ(command("Clos"_4cc), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"hideSheetWindow(FailedSheet)", "disposeWindow(FailedSheet)",
                   "hideSheetWindow(ProgressSheet)"}));
}

TEST_F(CommandsTest, QuitDisposesOfTheWindowAndPassesOn) {
  EXPECT_EQ(quit(), -9874);
  EXPECT_FALSE(screen().exists("PrinterSelectWindow"));
}

TEST_F(CommandsTest, SecondQuitOnlyPassesOn) {
  quit();
  forget();
  EXPECT_EQ(quit(), -9874);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(CommandsTest, QuitCommandEndsInThePlatformsOwnQuit) {
  EXPECT_EQ(command("quit"_4cc), -9874);
  EXPECT_EQ(command("DlOk"_4cc), -9874);  // the handlers are gone
}

TEST_F(CommandsTest, UnknownCommandIsLoggedAndPassedOn) {
  EXPECT_EQ(command("xxxx"_4cc), -9874);
  EXPECT_EQ(command(0), -9874);
  EXPECT_EQ(doubles.log.takeEntries(),
            (Entries{{5, "Unknown UI command: 2021161080"}, {5, "Unknown UI command: 0"}}));
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(CommandsTest, CommandCodesAreComparedWhole) {
  for (const auto code : {"Yes\0"_4cc, "No \0"_4cc, "down"_4cc, "QUIT"_4cc}) {
    EXPECT_EQ(command(code), -9874);
  }
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
  EXPECT_EQ(doubles.log.takeEntries().size(), 4u);
}

TEST_F(CommandsTest, CommandWithoutHandlerObjectIsNotHandled) {
  Event event("cmds"_4cc, 1);
  event.setParameter("----"_4cc, platform::HICommand{0, "DlOk"_4cc, 0, 0});
  EXPECT_EQ(caught(Commands).withoutUserData(event), -9874);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(CommandsTest, CommandEventWithoutCommandIsNotHandled) {
  EXPECT_EQ(caught(Commands)(Event("cmds"_4cc, 1)), -9874);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
  EXPECT_EQ(doubles.log.takeEntries(), Entries{});
}

}  // namespace
