// Daemons that come, go and return while the program runs.
#include "Crowd.h"
#include "DiscoveryTest.h"
#include "platform/avahi/DaemonVersion.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class DaemonTest : public DiscoveryTest {};

TEST_F(DaemonTest, DaemonThatAppearsTakesOverSilently) {
  auto printer = announce({"Printer"});
  find("Printer");
  startDaemon();
  waitForCarryOver();
  EXPECT_THAT(told(), IsEmpty());
  printer->withdraw();
  ASSERT_TRUE(waitFor("removed Printer"));
  auto other = announce({"Other"});
  ASSERT_TRUE(waitFor("resolved Other"));
  EXPECT_THAT(told(), ElementsAre("removed Printer", "added Other", "resolved Other"));
}

TEST_F(DaemonTest, StatusSaysWhoSearches) {
  using Searcher = platform::DiscoveryStatus::Searcher;
  const auto waitForSearcher = [this](Searcher searcher) {
    return runLoop.runUntil([&] { return status.searcher() == searcher; }, seconds(20));
  };
  EXPECT_EQ(status.searcher(), Searcher::Nobody);
  search();
  EXPECT_TRUE(waitForSearcher(Searcher::Program));
  startDaemon();
  EXPECT_TRUE(waitForSearcher(Searcher::Daemon));
  privatenetwork::stopDaemon();
  EXPECT_TRUE(waitForSearcher(Searcher::Program));
}

class DaemonVersion : public DaemonTest {
 protected:
  std::string answer() {
    std::string given;
    const auto question =
        platform::askDaemonVersion(runLoop, [&](const std::string& version) { given = version; });
    if (question == nullptr) return "null";
    runLoop.runUntil([&] { return !given.empty(); }, seconds(20));
    return given;
  }
};

TEST_F(DaemonVersion, IsWhatTheDaemonSays) {
  startDaemon();
  EXPECT_THAT(answer(), testing::MatchesRegex("avahi 0\\..*"));
}

TEST_F(DaemonVersion, IsNoneWithoutADaemon) { EXPECT_EQ(answer(), "not running"); }

TEST_F(DaemonVersion, IsNotAskedForWithoutABus) {
  privatenetwork::stopBus();
  EXPECT_EQ(answer(), "null");
}

TEST_F(DaemonTest, PrinterThatIsGoneWhenTheDaemonTakesOverIsRemoved) {
  auto printer = announce({"Printer"});
  auto gone = announce({"Gone"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer"));
  ASSERT_TRUE(waitFor("resolved Gone"));
  recorder->told.clear();
  gone->vanish();
  startDaemon();
  waitForCarryOver();
  EXPECT_THAT(told(), ElementsAre("removed Gone"));
}

TEST_F(DaemonTest, RestartedDaemonLosesNothing) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::stopDaemon();
  runLoop.runFor(milliseconds(300));
  startDaemon();
  waitForCarryOver();
  EXPECT_THAT(told(), IsEmpty());
  printer->withdraw();
  EXPECT_TRUE(waitFor("removed Printer"));
}

TEST_F(DaemonTest, DaemonMayBeRestartedAgainAndAgain) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  for (int i = 0; i < 3; ++i) {
    privatenetwork::stopDaemon("KILL");
    startDaemon();
    runLoop.runFor(milliseconds(200));
  }
  waitForCarryOver();
  EXPECT_THAT(told(), IsEmpty());
  auto other = announce({"Other"});
  EXPECT_TRUE(waitFor("resolved Other"));
}

TEST_F(DaemonTest, DaemonThatToleratesNoOtherStackCanReturn) {
  const std::vector<std::string> lines{"disallow-other-stacks=yes", "[publish]",
                                       "disable-publishing=yes"};
  privatenetwork::startDaemon(lines);
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::stopDaemon();
  runLoop.runFor(seconds(1));
  privatenetwork::startDaemon(lines);
  waitForCarryOver();
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(DaemonTest, WhatChangedWithoutTheDaemonIsToldWhenItReturns) {
  startDaemon();
  auto gone = announce({"Gone"});
  auto stays = announce({"Stays"});
  search();
  ASSERT_TRUE(waitFor("resolved Gone"));
  ASSERT_TRUE(waitFor("resolved Stays"));
  recorder->told.clear();
  privatenetwork::stopDaemon();
  runLoop.runFor(milliseconds(100));
  gone->withdraw();
  auto fresh = announce({"New"});
  runLoop.runFor(milliseconds(500));
  EXPECT_THAT(told(), IsEmpty());
  startDaemon();
  ASSERT_TRUE(waitFor("removed Gone"));
  EXPECT_THAT(told(), ElementsAre("added New", "resolved New", "removed Gone"));
}

TEST_F(DaemonTest, DaemonThatDoesNotReturnIsReplaced) {
  startDaemon();
  auto stays = announce({"Stays"});
  auto gone = announce({"Gone"});
  search();
  ASSERT_TRUE(waitFor("resolved Gone"));
  ASSERT_TRUE(waitFor("resolved Stays"));
  recorder->told.clear();
  privatenetwork::stopDaemon("KILL");
  gone->withdraw();
  auto fresh = announce({"New"});
  ASSERT_TRUE(waitFor("removed Gone"));
  EXPECT_THAT(told(), ElementsAre("added New", "resolved New", "removed Gone"));
  startDaemon();
  waitForCarryOver();
  EXPECT_EQ(told().size(), 3u);
}

TEST_F(DaemonTest, ResolveGoesOnWithTheDaemonThatReturns) {
  startDaemon();
  Crowd printer({"--count", "1", "late 1 3"});
  search();
  ASSERT_TRUE(waitFor("added Printer 0001"));
  privatenetwork::stopDaemon();
  runLoop.runFor(milliseconds(100));
  startDaemon();
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001"));
}

TEST_F(DaemonTest, ResolveGoesOnWhenTheDaemonTakesOver) {
  Crowd printer({"--count", "1", "late 1 2"});
  search();
  ASSERT_TRUE(waitFor("added Printer 0001"));
  startDaemon();
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001"));
}

TEST_F(DaemonTest, BusThatEndsIsNoEndOfDiscovery) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::stopBus();
  auto other = announce({"Other"});
  ASSERT_TRUE(waitFor("resolved Other"));
  EXPECT_THAT(told(), ElementsAre("added Other", "resolved Other"));
}

TEST_F(DaemonTest, BusThatReturnsWithItsDaemonIsUsedAgain) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::stopDaemon();
  privatenetwork::stopBus();
  runLoop.runFor(seconds(1));
  privatenetwork::startBus();
  startDaemon();
  runLoop.runFor(seconds(10));
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);  // the stack in this process would have some
}

TEST_F(DaemonTest, IdleProgramHasNoTimers) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  runLoop.runFor(milliseconds(200));
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(DaemonTest, NoTimersAreLeftAfterTheDaemonHasReturned) {
  startDaemon();
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::stopDaemon();
  startDaemon();
  waitForCarryOver();
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(DaemonTest, ResolveIsRenewedUntilThePrinterAnswers) {
  startDaemon();
  Crowd printer({"--count", "1", "late 1 8"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001"));
}

TEST_F(DaemonTest, ResolveEndsByTheTimeOutOfTheProgram) {
  startDaemon();
  auto printer = announce({"--no-address", "Printer"});
  recorder.emplace(*discovery);
  recorder->resolves = true;
  recorder->timeoutSeconds = 11;
  ASSERT_TRUE(recorder->search());
  ASSERT_TRUE(waitFor("added Printer"));
  runLoop.runFor(milliseconds(10700));
  EXPECT_THAT(told(), ElementsAre("added Printer"));
  runLoop.runFor(milliseconds(500));
  EXPECT_THAT(told(), ElementsAre("added Printer", "failed Printer 10 -72007"));
}

}  // namespace
