// Printers that announce nonsense.
#include "DiscoveryTest.h"
#include "MulticastPacket.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class HostilePrinterTest : public DiscoveryTest, public testing::WithParamInterface<bool> {
 protected:
  HostilePrinterTest() {
    if (GetParam()) startDaemon();
  }

  // Returns when somebody listens, since packets are sent once.
  void search() {
    DiscoveryTest::search();
    const auto listens = [] {
      return privatenetwork::run({"grep", "--quiet", ":14E9 ", "/proc/net/udp"}) == 0;
    };
    ASSERT_TRUE(runLoop.runUntil(listens));
  }

  // Whatever the packet said, other printers are found and lost as ever.
  void expectDiscoveryGoesOn() {
    auto printer = announce({"Printer"});
    ASSERT_TRUE(waitFor("resolved Printer"));
    printer->withdraw();
    ASSERT_TRUE(waitFor("removed Printer"));
  }

  void sendService(const std::string& name, const std::vector<std::uint8_t>& txt) {
    MulticastPacket packet(name, "hostile");
    packet.addTxt(txt);
    packet.addLocationAndAddress();
    packet.send();
    runLoop.runFor(milliseconds(500));
  }
};

TEST_P(HostilePrinterTest, WellFormedPacketIsUnderstood) {
  search();
  sendService("Crafted", {3, 'a', '=', '1'});
  ASSERT_TRUE(waitFor("resolved Crafted"));
  EXPECT_EQ(recorder->txt, (Bytes{3, 'a', '=', '1'}));
}

TEST_P(HostilePrinterTest, NameThatIsNoTextIsHarmless) {
  search();
  sendService("bad\xFF\xC0\x80", {3, 'a', '=', '1'});
  expectDiscoveryGoesOn();
}

TEST_P(HostilePrinterTest, NameWithControlCharactersIsHarmless) {
  search();
  sendService(std::string("bad\0\n\x1B[2J%s%n", 13), {3, 'a', '=', '1'});
  sendService("\\.\\\\ .local", {3, 'a', '=', '1'});
  expectDiscoveryGoesOn();
}

TEST_P(HostilePrinterTest, LongestNamesAreHarmless) {
  search();
  sendService(std::string(63, 'x'), {3, 'a', '=', '1'});
  EXPECT_TRUE(waitFor("resolved " + std::string(63, 'x')));
  sendService(std::string(63, '\x01'), {3, 'a', '=', '1'});
  expectDiscoveryGoesOn();
}

TEST_P(HostilePrinterTest, MalformedTxtRecordIsHarmless) {
  search();
  sendService("Cut", {200, 'a', '=', '1'});
  sendService("Nothing", {});
  sendService("Zeros", std::vector<std::uint8_t>(600, 0));
  sendService("Long", std::vector<std::uint8_t>(1024, 255));
  expectDiscoveryGoesOn();
}

TEST_P(HostilePrinterTest, ServiceThatIsNeverCompletedTimesOutAlone) {
  search();
  recorder->timeoutSeconds = 2;
  MulticastPacket("Halfway", "hostile").send();
  ASSERT_TRUE(waitFor("added Halfway"));
  ASSERT_TRUE(waitFor("failed Halfway 10 -72007", seconds(3)));
  expectDiscoveryGoesOn();
}

INSTANTIATE_TEST_SUITE_P(With, HostilePrinterTest, testing::Bool(), stackName);

}  // namespace
