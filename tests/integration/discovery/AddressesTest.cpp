// Which address a printer gets.
#include <net/if.h>

#include "DiscoveryTest.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

class AddressesTest : public DiscoveryTest, public testing::WithParamInterface<bool> {
 protected:
  AddressesTest() {
    if (GetParam()) startDaemon();
  }

  Bytes firstAddress() const { return recorder->addresses.at(0); }

  // The record of 10.91.N.`host`, port 9100.
  static testing::Matcher<Bytes> isIPv4OfHost(std::uint8_t host) {
    return ElementsAre(16, 2, 0x23, 0x8C, 10, 91, testing::AnyOf(0, 1), host,  //
                       0, 0, 0, 0, 0, 0, 0, 0);
  }
};

TEST_P(AddressesTest, PrinterThatSpeaksIPv6OnlyGivesItsIPv4Address) {
  auto printer = announce({"--over-ipv6", "Printer"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer", seconds(4)));
  EXPECT_THAT(firstAddress(), isIPv4OfHost(2));
}

TEST_P(AddressesTest, PrinterWithoutIPv6IsFound) {
  auto printer = announce({"--no-ipv6", "Printer"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer", seconds(4)));
  EXPECT_THAT(firstAddress(), isIPv4OfHost(2));
}

TEST_P(AddressesTest, PrinterWithoutIPv4GetsIPv6AddressAfterSomeSeconds) {
  auto printer = announce({"--no-ipv4", "Printer"});
  search();
  ASSERT_TRUE(waitFor("added Printer"));
  EXPECT_FALSE(waitFor("resolved Printer", seconds(4)));
  ASSERT_TRUE(waitFor("resolved Printer", seconds(8)));
  const Bytes address = firstAddress();
  ASSERT_EQ(address.size(), 28u);
  EXPECT_THAT(Bytes(address.begin(), address.begin() + 10),
              ElementsAre(28, 30, 0x23, 0x8C, 0, 0, 0, 0, 0xFE, 0x80));
  EXPECT_THAT(address[24], testing::AnyOf(if_nametoindex("net0"), if_nametoindex("net1")));
  EXPECT_THAT(Bytes(address.begin() + 25, address.end()), ElementsAre(0, 0, 0));
}

TEST_P(AddressesTest, ServiceOfThisMachineHasAnAddressThatOthersReach) {
  auto printer = announce({"Printer"}, Announcement::Machine::Here);
  search();
  ASSERT_TRUE(waitFor("resolved Printer", seconds(4)));
  EXPECT_THAT(firstAddress(), isIPv4OfHost(1));
}

TEST_P(AddressesTest, MachineWithoutLinksHasItsLoopbackAddress) {
  for (const char* link : {"net0", "net1"}) {
    ASSERT_EQ(privatenetwork::run({"ip", "link", "set", link, "down"}), 0);
  }
  auto printer = announce({"Printer"}, Announcement::Machine::Here);
  search();
  ASSERT_TRUE(waitFor("resolved Printer", seconds(4)));
  EXPECT_THAT(firstAddress(), ElementsAre(16, 2, 0x23, 0x8C, 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0));
}

INSTANTIATE_TEST_SUITE_P(With, AddressesTest, testing::Bool(), stackName);

}  // namespace
