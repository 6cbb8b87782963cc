// Browsing: the start, the events of a browser, the end.
#include "BonjourDeviceFinderFixture.h"
#include "Log.h"

namespace {

class BonjourDeviceFinderTest : public BonjourDeviceFinderFixture {
 protected:
  // A browse event as the platform tells it.
  void tell(unsigned long flags, platform::NetService* service) {
    platform::StreamError none;
    BonjourDeviceFinder::serviceBrowseCallback(nullptr, flags, service, &none, &*finder);
  }
};

// Start and end.

TEST_F(BonjourDeviceFinderTest, NothingIsBrowsedBeforeTheStart) {
  finder.reset();
  EXPECT_EQ(takeCalls(), Lines{});
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderTest, StartSearchesForRawPrintServicesInAllDomains) {
  finder->start();
  EXPECT_EQ(takeCalls(), (Lines{"createBrowser()", "browser.schedule()",
                                "browser.searchForServices(\"\", \"_pdl-datastream._tcp\")"}));
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderTest, BrowserThatCannotBeCreatedIsLogged) {
  services.script().answerNext("createBrowser", -1);
  finder->start();
  finder.reset();
  EXPECT_EQ(takeCalls(), Lines{"createBrowser()"});
  EXPECT_EQ(takeEntries(), (Entries{{3, "Failed to create Bonjour service browser."}}));
}

TEST_F(BonjourDeviceFinderTest, SearchThatCannotStartIsLoggedAndTheBrowserKept) {
  services.script().answerNext("browser.searchForServices", -1);
  finder->start();
  EXPECT_EQ(services.browsers(), 1u);
  EXPECT_EQ(takeEntries(), (Entries{{3, "Failed to start Bonjour service search."}}));
  finder.reset();
  EXPECT_EQ(services.browsers(), 0u);
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderTest, EndStopsUnschedulesAndInvalidatesTheBrowser) {
  start();
  finder.reset();
  EXPECT_EQ(takeCalls(), (Lines{"browser.stopSearch()", "browser.unschedule()",
                                "browser.invalidate()", "browser.destroy()"}));
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderTest, NothingIsHeardAfterTheEnd) {
  start();
  services.announce(printer("Printer"));
  finder.reset();
  run();
  EXPECT_EQ(takeEntries(), Entries{});
  EXPECT_EQ(rows(), Lines{});
}

// Arrival.

TEST_F(BonjourDeviceFinderTest, ServiceThatAppearsIsResolvedWithinThirtySeconds) {
  start();
  services.announce(printer("Printer"));
  ASSERT_TRUE(doubles.runLoop.runLater());
  EXPECT_EQ(takeCalls(), (Lines{"Printer.setClient(set)", "Printer.schedule()",
                                "Printer.resolveWithTimeout(30)"}));
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0x0, service: "
                                     "Printer._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderTest, MoreComingPlaysNoPart) {
  FakeNetService service(services.script(), printer("Printer"));
  tell(1, &service);
  EXPECT_TRUE(service.isResolving());
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0x1, service: "
                                     "Printer._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderTest, FlagsAreLoggedInHexadecimal) {
  FakeNetService service(services.script(), printer("Printer"));
  tell(0xBEEF02, &service);
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0xbeef02, service: "
                                     "Printer._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderTest, LoggerStaysInHexadecimalMode) {
  FakeNetService service(services.script(), printer("Printer"));
  Log<5>() << std::dec;
  tell(2, &service);
  takeEntries();
  Log<5>() << 255 << std::flush;
  EXPECT_EQ(takeEntries(), (Entries{{5, "ff"}}));
}

TEST_F(BonjourDeviceFinderTest, ServiceWithoutClientIsLeftAlone) {
  start();
  services.script().answerNext("Printer.setClient", -1);
  services.announce(printer("Printer"));
  run();
  EXPECT_EQ(takeCalls(), Lines{"Printer.setClient(set)"});
  EXPECT_EQ(takeEntries().size(), 1u);
}

TEST_F(BonjourDeviceFinderTest, ResolveThatCannotStartIsUndoneSilently) {
  start();
  services.script().answerNext("Printer.resolveWithTimeout", -1);
  services.announce(printer("Printer"));
  run();
  EXPECT_EQ(takeCalls(),
            (Lines{"Printer.setClient(set)", "Printer.schedule()", "Printer.resolveWithTimeout(30)",
                   "Printer.unschedule()", "Printer.setClient(none)"}));
  EXPECT_EQ(takeEntries().size(), 1u);
}

TEST_F(BonjourDeviceFinderTest, ServiceReportedTwiceIsAddedTwice) {
  start();
  services.announce(printer("Printer"));
  services.announce(printer("Printer", 8));
  run();
  EXPECT_EQ(rows(), (Lines{"1 Printer Bonjour 192.0.2.7", "2 Printer Bonjour 192.0.2.8"}));
}

// Domains.

TEST_F(BonjourDeviceFinderTest, DomainIsLoggedAndIgnored) {
  FakeNetService domain(services.script(), printer("Domain"));
  tell(2, &domain);
  EXPECT_FALSE(domain.isResolving());
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0x2, service: "
                                     "Domain._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderTest, DomainIsIgnoredAlsoWhenItIsRemoved) {
  start();
  services.announce(printer("Printer"));
  run();
  takeEntries();
  FakeNetService domain(services.script(), printer("Printer"));
  tell(2 | 8, &domain);
  EXPECT_FALSE(domain.isResolving());
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0xa, service: "
                                     "Printer._pdl-datastream._tcp.local"}}));
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
}

// Removal.

TEST_F(BonjourDeviceFinderTest, ServiceThatGoesLeavesTheList) {
  start();
  services.announce(printer("Printer"));
  services.announce(printer("Other", 8));
  run();
  takeCalls();
  takeEntries();
  services.withdraw("Printer");
  run();
  EXPECT_EQ(rows(), Lines{"2 Other Bonjour 192.0.2.8"});
  EXPECT_EQ(takeCalls(), Lines{});
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0x8, service: "
                                     "Printer._pdl-datastream._tcp.local"},
                                    {5, "<- Removing: Printer._pdl-datastream._tcp.local"},
                                    {5, "Removing printer with ID=1"}}));
}

TEST_F(BonjourDeviceFinderTest, RemovalOfServiceThatWasNeverAddedIsHarmless) {
  start();
  Announcement other = printer("Scanner");
  other.txt = txt({"usb_MFG=Other"});
  services.announce(other);
  run();
  takeEntries();
  services.withdraw("Scanner");
  run();
  EXPECT_EQ(takeEntries(), (Entries{{5,
                                     "Bonjour service callback: flags=0x8, service: "
                                     "Scanner._pdl-datastream._tcp.local"},
                                    {5, "<- Removing: Scanner._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderTest, ServiceThatGoesBeforeItIsResolvedIsNotAdded) {
  start();
  Announcement silent = printer("Printer");
  silent.answers = false;
  services.announce(silent);
  run();
  services.withdraw("Printer");
  run();
  doubles.runLoop.advance(std::chrono::seconds(60));
  EXPECT_EQ(rows(), Lines{});
  EXPECT_EQ(takeEntries().size(), 3u);
}

TEST_F(BonjourDeviceFinderTest, ServiceThatComesBackGetsRowOfItsOwn) {
  start();
  services.announce(printer("Printer"));
  run();
  services.withdraw("Printer");
  run();
  services.announce(printer("Printer", 9));
  run();
  EXPECT_EQ(rows(), Lines{"2 Printer Bonjour 192.0.2.9"});
}

}  // namespace
