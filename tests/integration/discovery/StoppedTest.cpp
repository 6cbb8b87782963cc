// A daemon, or a bus, that is there and does not answer: nobody waits for it.
#include "Crowd.h"
#include "DiscoveryTest.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class StoppedTest : public DiscoveryTest, public testing::WithParamInterface<const char*> {
 protected:
  StoppedTest() { startDaemon(); }

  // However busy this machine is, it is far from what a call costs that waits for an answer.
  static constexpr seconds kAtOnce{5};

  using Clock = std::chrono::steady_clock;

  // Notes how long the loop is ever held up.
  void watchLoop() {
    mLast = Clock::now();
    mTick = runLoop.startTimer(milliseconds(20), true, [this] {
      const auto now = Clock::now();
      longestHold = std::max(longestHold, now - mLast);
      mLast = now;
    });
  }

  // A search that is given up: the destruction must not wait, either.
  void giveUp() {
    mTick.reset();
    const auto begin = Clock::now();
    recorder.reset();
    EXPECT_LT(Clock::now() - begin, kAtOnce);
  }

  Clock::duration longestHold{0};

 private:
  Clock::time_point mLast;
  std::unique_ptr<platform::RunLoop::Timer> mTick;
};

TEST_P(StoppedTest, PrintersAreFoundBesideOneThatIsStoppedAtTheStart) {
  signal(GetParam(), "STOP");
  auto printer = announce({"Printer"});
  watchLoop();
  const auto begin = Clock::now();
  search();
  EXPECT_LT(Clock::now() - begin, kAtOnce);
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_LT(longestHold, kAtOnce);
  giveUp();
}

TEST_P(StoppedTest, OneThatGoesOnTakesOver) {
  signal(GetParam(), "STOP");
  auto printer = announce({"Printer"});
  find("Printer");
  signal(GetParam(), "CONT");
  waitForCarryOver();
  runLoop.runFor(seconds(2));
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);  // the stack in this process would have some
}

TEST_P(StoppedTest, NothingWaitsForOneThatIsStoppedWhileItIsAsked) {
  auto silent = announce({"--no-address", "Silent"});
  search();
  ASSERT_TRUE(waitFor("added Silent"));
  watchLoop();
  signal(GetParam(), "STOP");
  runLoop.runFor(seconds(8));
  EXPECT_LT(longestHold, kAtOnce);
  EXPECT_THAT(told(), ElementsAre("added Silent"));
  giveUp();
}

// Its questions have not been accepted, so that their time does not run.
TEST_P(StoppedTest, ResolveGoesOnWithIt) {
  Crowd printer({"--count", "1", "late 1 3"});
  search();
  recorder->timeoutSeconds = 5;
  ASSERT_TRUE(waitFor("added Printer 0001"));
  signal(GetParam(), "STOP");
  runLoop.runFor(milliseconds(4000));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001"));
  signal(GetParam(), "CONT");
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
}

INSTANTIATE_TEST_SUITE_P(Of, StoppedTest, testing::Values("avahi-daemon", "bus"),
                         [](const testing::TestParamInfo<const char*>& process) {
                           return process.param == std::string("bus") ? "Bus" : "Daemon";
                         });

}  // namespace
