// Links that break and come back.
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
};

TEST_P(LinksTest, PrinterStaysWhileOneLinkIsLeft) {
  auto printer = announce({"Printer"});
  find("Printer");
  set("net0", "down");
  runLoop.runFor(milliseconds(2500));
  EXPECT_THAT(told(), IsEmpty());
  set("net1", "down");
  ASSERT_TRUE(waitFor("removed Printer"));
  EXPECT_THAT(told(), ElementsAre("removed Printer"));
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
