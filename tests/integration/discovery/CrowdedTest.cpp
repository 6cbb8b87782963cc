// Many services, and few that the daemon lets ask.
#include "Crowd.h"
#include "DiscoveryTest.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

class CrowdedTest : public DiscoveryTest {
 protected:
  // How many have been resolved, or have failed.
  std::size_t countOf(const std::string& outcome) const {
    return static_cast<std::size_t>(
        std::count_if(told().begin(), told().end(),
                      [&](const std::string& line) { return line.starts_with(outcome); }));
  }
};

// A browse for services and one for domains leave four questions at a time.
TEST_F(CrowdedTest, DaemonThatRefusesMostQuestionsAnswersAllInTheEnd) {
  privatenetwork::startDaemon({"objects-per-client-max=6", "[publish]", "disable-publishing=yes"});
  Crowd crowd({"--count", "60", "--ours", "60", "--link", "net0"});
  search();
  ASSERT_TRUE(runLoop.runUntil([&] { return countOf("resolved ") == 60; }, seconds(40)));
  EXPECT_EQ(countOf("failed "), 0u);
}

TEST_F(CrowdedTest, RefusalGivesNobodyAnIPv6Address) {
  privatenetwork::startDaemon({"objects-per-client-max=3", "[publish]", "disable-publishing=yes"});
  Crowd crowd({"--count", "12", "--ours", "12", "--link", "net0"});
  search();
  for (std::size_t resolved = 1; resolved <= 12; ++resolved) {
    ASSERT_TRUE(runLoop.runUntil([&] { return countOf("resolved ") >= resolved; }, seconds(30)));
    EXPECT_EQ(recorder->addresses.at(0).at(1), 2);
  }
}

TEST_F(CrowdedTest, ServiceWithoutTxtRecordIsToldWithoutIt) {
  startDaemon();
  Crowd crowd({"--count", "1", "--link", "net0", "no-text 1"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer 0001 without TXT"));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001 without TXT"));
}

}  // namespace
