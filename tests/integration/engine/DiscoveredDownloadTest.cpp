// From the announcement of a printer on a network of its own to the burned image: the program's
// discovery, with the daemon and without, gives the address that its transport connects to.
#include "BrowserRecorder.h"
#include "DownloadFixture.h"
#include "NetworkTransport.h"
#include "PrivateNetwork.h"
#include "platform/avahi/AvahiServiceDiscovery.h"

int main(int argc, char** argv) {
  privatenetwork::enter(argc, argv, {"--no-daemon"});
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

namespace {

using testing::ElementsAre;

class DiscoveredDownloadTest : public DownloadFixture,
                               public testing::WithParamInterface<const char*> {
 protected:
  DiscoveredDownloadTest() {
    if (std::string(GetParam()) == "daemon") privatenetwork::startDaemon();
    mDiscovery = platform::makeAvahiServiceDiscovery(mLoop);
    mBrowser.emplace(*mDiscovery);
    mBrowser->resolves = true;
    EXPECT_TRUE(mBrowser->search());
  }

  // Long enough away for its goodbye to be noticed.
  void announcePrinter() {
    startPrinter({"merge"}, {"--address", "0.0.0.0", "--announce", GetParam(), "--name", "Printer",
                             "--manufacturer", "Veltra", "--return-seconds", "2.5"});
  }

  void waitUntilTold(const std::string& line, std::size_t times) {
    ASSERT_TRUE(mLoop.runUntil([&] { return mBrowser->count(line) == times; }))
        << testing::PrintToString(mBrowser->told);
  }

  void downloadToResolvedAddress() {
    ASSERT_FALSE(mBrowser->addresses.empty());
    downloadFirmwareThroughNetwork(platform::makeData(mBrowser->addresses[0]), *mDownloader);
    runUntilOutcome();
  }

  std::unique_ptr<platform::ServiceDiscovery> mDiscovery;
  std::optional<BrowserRecorder> mBrowser;
};

bool contains(const std::vector<std::uint8_t>& bytes, const std::string& text) {
  return std::search(bytes.begin(), bytes.end(), text.begin(), text.end()) != bytes.end();
}

TEST_P(DiscoveredDownloadTest, FoundPrinterIsUpdatedLeavesAndReturnsUpToDate) {
  announcePrinter();
  waitUntilTold("resolved Printer", 1);
  EXPECT_TRUE(contains(mBrowser->txt, "\x0eusb_MFG=Veltra"));
  EXPECT_TRUE(contains(mBrowser->txt, "\x0eusb_MDL=KX350T"));
  downloadToResolvedAddress();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlOk"));

  waitUntilTold("removed Printer", 1);
  waitUntilTold("resolved Printer", 2);
  downloadToResolvedAddress();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlUd"));

  EXPECT_EQ(stopPrinter(), 0);
  waitUntilTold("removed Printer", 2);
  EXPECT_THAT(mBrowser->told, ElementsAre("added Printer", "resolved Printer", "removed Printer",
                                          "added Printer", "resolved Printer", "removed Printer"));
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate + kReceivedQuery);
  EXPECT_THAT(mPrinter->entries("announced"), testing::SizeIs(2));
}

TEST_P(DiscoveredDownloadTest, TxtRecordIsWhatTheOptionsSay) {
  startPrinter({}, {"--address", "0.0.0.0", "--announce", GetParam(), "--name", "Printer",
                    "--model", "KX9", "--no-txt", "usb_MFG", "--txt", R"(note=a\x00b)"});
  waitUntilTold("resolved Printer", 1);
  EXPECT_TRUE(contains(mBrowser->txt, "\x0busb_MDL=KX9"));
  EXPECT_FALSE(contains(mBrowser->txt, "usb_MFG"));
  EXPECT_TRUE(contains(mBrowser->txt, std::string("\x08note=a\0b", 9)));
}

TEST_P(DiscoveredDownloadTest, SecondPrinterOfTheSameNameTakesAnother) {
  announcePrinter();
  waitUntilTold("resolved Printer", 1);
  const VirtualPrinterProcess second(
      {"--address", "0.0.0.0", "--announce", GetParam(), "--name", "Printer"});
  waitUntilTold("resolved Printer #2", 1);
}

INSTANTIATE_TEST_SUITE_P(Through, DiscoveredDownloadTest, testing::Values("daemon", "in-process"),
                         [](const auto& test) {
                           return test.param[0] == 'd' ? "Daemon" : "InProcess";
                         });

}  // namespace
