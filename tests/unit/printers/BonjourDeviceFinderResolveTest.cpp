// Resolved services: which are kept, what is logged, how the resolve ends.
#include "BonjourDeviceFinderFixture.h"

namespace {

constexpr const char* kService = "Printer._pdl-datastream._tcp.local";

class BonjourDeviceFinderResolveTest : public BonjourDeviceFinderFixture {
 protected:
  // Announces, and forgets everything up to the answer.
  void announceAndResolve(const Announcement& announcement) {
    start();
    services.announce(announcement);
    doubles.runLoop.runLater();
    takeCalls();
    takeEntries();
    run();
  }

  // What is logged for the answer of a service with these strings.
  Entries entriesFor(const std::vector<std::string>& strings) {
    Announcement announcement = printer("Printer");
    announcement.txt = txt(strings);
    announceAndResolve(announcement);
    return takeEntries();
  }

  void expectResolveIsOver() {
    EXPECT_EQ(takeCalls(),
              (Lines{"Printer.unschedule()", "Printer.setClient(none)", "Printer.cancel()"}));
  }
};

const LogEntry kNotMatched{5, "-> Not matched, discarding"};

TEST_F(BonjourDeviceFinderResolveTest, MatchingServiceBecomesRow) {
  announceAndResolve(printer("Printer"));
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
  EXPECT_EQ(takeEntries(), (Entries{{5, "usb_MFG: Veltra"},
                                    {5, "usb_MDL: KX350T"},
                                    {5, "-> Adding: Printer"},
                                    {5, "Adding printer with ID=1"}}));
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, ManufacturerWithoutModelDoesNotMatch) {
  EXPECT_EQ(entriesFor({"txtvers=1", "usb_MFG=Veltra"}),
            (Entries{{5, "usb_MFG: Veltra"}, {5, "usb_MDL: <null>"}, kNotMatched}));
  EXPECT_EQ(rows(), Lines{});
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, ModelWithoutManufacturerDoesNotMatch) {
  EXPECT_EQ(entriesFor({"usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: <null>"}, {5, "usb_MDL: KX350T"}, kNotMatched}));
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, EmptyRecordDoesNotMatch) {
  EXPECT_EQ(entriesFor({""}),
            (Entries{{5, "usb_MFG: <null>"}, {5, "usb_MDL: <null>"}, kNotMatched}));
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, LetterCaseOfValueCounts) {
  EXPECT_EQ(entriesFor({"usb_MFG=VELTRA", "usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: VELTRA"}, {5, "usb_MDL: KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, LetterCaseOfModelCounts) {
  EXPECT_EQ(entriesFor({"usb_MFG=Veltra", "usb_MDL=kx350t"}),
            (Entries{{5, "usb_MFG: Veltra"}, {5, "usb_MDL: kx350t"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, LetterCaseOfKeyCounts) {
  EXPECT_EQ(entriesFor({"USB_MFG=Veltra", "usb_mdl=KX350T"}),
            (Entries{{5, "usb_MFG: <null>"}, {5, "usb_MDL: <null>"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, BlanksAreNotTrimmed) {
  EXPECT_EQ(entriesFor({"usb_MFG=Veltra ", "usb_MDL= KX350T"}),
            (Entries{{5, "usb_MFG: Veltra "}, {5, "usb_MDL:  KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, LongerValueDoesNotMatch) {
  EXPECT_EQ(entriesFor({"usb_MFG=Veltra Inc.", "usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: Veltra Inc."}, {5, "usb_MDL: KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, KeyWithoutValueDoesNotMatch) {
  EXPECT_EQ(entriesFor({"usb_MFG", "usb_MDL="}),
            (Entries{{5, "usb_MFG: "}, {5, "usb_MDL: "}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, ValueThatIsNoTextDoesNotMatch) {
  EXPECT_EQ(entriesFor({"usb_MFG=Veltr\xE1", "usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: <null>"}, {5, "usb_MDL: KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, ValueWithZeroByteDoesNotMatch) {
  EXPECT_EQ(entriesFor({std::string("usb_MFG=Veltra\0", 15), "usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: Veltra"}, {5, "usb_MDL: KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, ByteOrderMarkIsNoPartOfTheText) {
  EXPECT_EQ(entriesFor({"usb_MFG=\xEF\xBB\xBFVeltra", "usb_MDL=KX350T"}),
            (Entries{{5, "usb_MFG: Veltra"},
                     {5, "usb_MDL: KX350T"},
                     {5, "-> Adding: Printer"},
                     {5, "Adding printer with ID=1"}}));
}

TEST_F(BonjourDeviceFinderResolveTest, FirstOfSeveralValuesCounts) {
  EXPECT_EQ(entriesFor({"usb_MDL=KX350T", "usb_MFG=Veltra", "usb_MFG=Other"}),
            (Entries{{5, "usb_MFG: Veltra"},
                     {5, "usb_MDL: KX350T"},
                     {5, "-> Adding: Printer"},
                     {5, "Adding printer with ID=1"}}));
}

TEST_F(BonjourDeviceFinderResolveTest, TruncatedRecordIsReadAsFarAsItGoes) {
  Announcement announcement = printer("Printer");
  announcement.txt = platform::makeData({14,  'u', 's', 'b', '_', 'M', 'F', 'G', '=',  //
                                         'V', 'e', 'l', 't', 'r', 'a',                 //
                                         14,  'u', 's', 'b', '_', 'M', 'D', 'L', '=', 'K'});
  announceAndResolve(announcement);
  EXPECT_EQ(takeEntries(), (Entries{{5, "usb_MFG: Veltra"}, {5, "usb_MDL: <null>"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, FinderWithoutModelMatchesNothing) {
  finder.emplace(text("Veltra"), platform::Text(), *view);
  announceAndResolve(printer("Printer"));
  EXPECT_EQ(takeEntries(), (Entries{{5, "usb_MFG: Veltra"}, {5, "usb_MDL: KX350T"}, kNotMatched}));
}

TEST_F(BonjourDeviceFinderResolveTest, ServiceWithoutTxtRecordIsDiscarded) {
  Announcement announcement = printer("Printer");
  announcement.txt = nullptr;
  announceAndResolve(announcement);
  EXPECT_EQ(takeEntries(),
            (Entries{{3, std::string("No data in TXT record for service: ") + kService}}));
  EXPECT_EQ(rows(), Lines{});
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, ServiceWithoutAddressesIsNotAdded) {
  Announcement announcement = printer("Printer");
  announcement.addresses = nullptr;
  announceAndResolve(announcement);
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "usb_MFG: Veltra"},
                     {5, "usb_MDL: KX350T"},
                     {3, std::string("-> No addresses found for service: ") + kService}}));
  EXPECT_EQ(rows(), Lines{});
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, ServiceWithNullAddressIsNotAdded) {
  Announcement announcement = printer("Printer");
  announcement.addresses = addresses({nullptr, address(8)});
  announceAndResolve(announcement);
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "usb_MFG: Veltra"},
                     {5, "usb_MDL: KX350T"},
                     {3, std::string("-> No name or IP address found for service: ") + kService}}));
  expectResolveIsOver();
}

TEST_F(BonjourDeviceFinderResolveTest, ServiceWithEmptyListOfAddressesIsNotAdded) {
  Announcement announcement = printer("Printer");
  announcement.addresses = addresses({});
  announceAndResolve(announcement);
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "usb_MFG: Veltra"},
                     {5, "usb_MDL: KX350T"},
                     {3, std::string("-> No name or IP address found for service: ") + kService}}));
}

TEST_F(BonjourDeviceFinderResolveTest, ServiceWithoutNameIsNotAdded) {
  announceAndResolve(printer("\xFF"));
  EXPECT_EQ(takeEntries(), (Entries{{5, "usb_MFG: Veltra"},
                                    {5, "usb_MDL: KX350T"},
                                    {3,
                                     "-> No name or IP address found for service: "
                                     "<null>._pdl-datastream._tcp.local"}}));
  EXPECT_EQ(rows(), Lines{});
}

TEST_F(BonjourDeviceFinderResolveTest, OnlyFirstOfSeveralAddressesIsUsed) {
  Announcement announcement = printer("Printer");
  const platform::Data ipv6 =
      platform::makeData({28, 30, 0x23, 0x8C, 0, 0, 0, 0, 0xFE, 0x80, 0, 0, 0, 0,
                          0,  0,  0,    0,    0, 0, 0, 0, 0,    1,    0, 0, 0, 0});
  announcement.addresses = addresses({address(7), ipv6, address(9)});
  announceAndResolve(announcement);
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
}

TEST_F(BonjourDeviceFinderResolveTest, FirstAddressIsUsedAlsoWhenItIsIPv6) {
  Announcement announcement = printer("Printer");
  const platform::Data ipv6 =
      platform::makeData({28, 30, 0x23, 0x8C, 0, 0, 0, 0, 0x20, 0x01, 0x0D, 0xB8, 0, 0,
                          0,  0,  0,    0,    0, 0, 0, 0, 0,    0x42, 0,    0,    0, 0});
  announcement.addresses = addresses({ipv6, address(7)});
  announceAndResolve(announcement);
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 2001:db8::42"});
}

TEST_F(BonjourDeviceFinderResolveTest, ResolveThatTimesOutIsLoggedAndLeftAsItIs) {
  Announcement silent = printer("Printer");
  silent.answers = false;
  announceAndResolve(silent);
  doubles.runLoop.advance(std::chrono::milliseconds(29999));
  EXPECT_EQ(takeEntries(), Entries{});
  doubles.runLoop.advance(std::chrono::milliseconds(1));
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: domain=10 error code=-72007 [0xfffee6b9]"}}));
  EXPECT_EQ(takeCalls(), Lines{});
  EXPECT_EQ(rows(), Lines{});
}

TEST_F(BonjourDeviceFinderResolveTest, ServicesAreResolvedIndependently) {
  start();
  Announcement silent = printer("Silent");
  silent.answers = false;
  services.announce(silent);
  services.announce(printer("Printer"));
  run();
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
}

}  // namespace
