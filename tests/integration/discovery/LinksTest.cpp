// Links that break and come back.
#include "Crowd.h"
#include "DiscoveryTest.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class LinksTest : public DiscoveryTest, public testing::WithParamInterface<bool> {
 protected:
  LinksTest() {
    if (GetParam()) startDaemon();
  }

  static void set(const std::string& link, const std::string& state) {
    ASSERT_EQ(privatenetwork::run({"ip", "link", "set", link, state}), 0);
    if (state == "down") return;
    const std::string address = link == "net0" ? "10.91.0.1/24" : "10.91.1.1/24";
    privatenetwork::run({"sh", "-c", "ip addr add " + address + " dev " + link + " 2>/dev/null"});
  }

  // The address is 10.91.N.2.
  std::string linkOfAddress() const { return recorder->addresses[0][6] == 0 ? "net0" : "net1"; }
  std::string otherLink() const { return recorder->addresses[0][6] == 0 ? "net1" : "net0"; }
};

TEST_P(LinksTest, PrinterStaysWhileItsLinkIsLeft) {
  auto printer = announce({"Printer"});
  find("Printer");
  set(otherLink(), "down");
  runLoop.runFor(milliseconds(2500));
  EXPECT_THAT(told(), IsEmpty());
  set(linkOfAddress(), "down");
  ASSERT_TRUE(waitFor("removed Printer"));
  EXPECT_THAT(told(), ElementsAre("removed Printer"));
}

TEST_P(LinksTest, PrinterGetsItsOtherAddressWhenItsLinkGoes) {
  auto printer = announce({"Printer"});
  find("Printer");
  const auto before = recorder->addresses;
  set(linkOfAddress(), "down");
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_THAT(told(), ElementsAre("removed Printer", "added Printer", "resolved Printer"));
  EXPECT_NE(recorder->addresses, before);
}

// One row cannot stand for two printers, and rows are told apart by their names.
TEST_P(LinksTest, TwoPrintersOfOneNameAreOneUntilTheFirstGoes) {
  Crowd printers({"--count", "1", "--link", "net0", "--link", "net1", "two 1"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  runLoop.runFor(milliseconds(1500));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001"));
  const auto before = recorder->addresses;
  recorder->told.clear();
  set(before[0][5] == 100 ? "net0" : "net1", "down");
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  EXPECT_THAT(told(),
              ElementsAre("removed Printer 0001", "added Printer 0001", "resolved Printer 0001"));
  EXPECT_NE(recorder->addresses, before);
}

TEST_P(LinksTest, PrinterComesBackWithTheLink) {
  auto printer = announce({"Printer"});
  find("Printer");
  set("net0", "down");
  set("net1", "down");
  ASSERT_TRUE(waitFor("removed Printer"));
  set("net1", "up");
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_THAT(told(), ElementsAre("removed Printer", "added Printer", "resolved Printer"));
}

TEST_P(LinksTest, PrinterIsFoundOnLinkThatComesLater) {
  set("net0", "down");
  set("net1", "down");
  auto printer = announce({"Printer"});
  search();
  runLoop.runFor(milliseconds(500));
  EXPECT_THAT(told(), IsEmpty());
  set("net0", "up");
  ASSERT_TRUE(waitFor("resolved Printer"));
}

INSTANTIATE_TEST_SUITE_P(With, LinksTest, testing::Bool(), stackName);

}  // namespace
