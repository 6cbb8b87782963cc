#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "RunLoopWorld.h"

using namespace std::chrono_literals;
using platform::RunLoop;
using testing::ElementsAre;

namespace {

using Clock = std::chrono::steady_clock;

// Longer than the host needs to tell of a ready descriptor.
constexpr auto kMoment = 50ms;

class RunLoopContract : public testing::TestWithParam<RunLoopImplementation> {
 protected:
  RunLoopContract() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, mSockets.data()), 0);
  }
  ~RunLoopContract() override {
    for (const int descriptor : mSockets) close(descriptor);
  }

  RunLoop& loop() { return mWorld->runLoop(); }
  int near() const { return mSockets[0]; }
  void makeReadable() { EXPECT_EQ(write(mSockets[1], "x", 1), 1); }
  void readOne() {
    char byte = 0;
    EXPECT_EQ(read(near(), &byte, 1), 1);
  }
  auto say(const char* word) {
    return [this, word] { mSaid.emplace_back(word); };
  }
  bool waitUntilReadable(std::chrono::milliseconds atMost) {
    return loop().waitUntilReady(near(), RunLoop::Interest::Readable, Clock::now() + atMost);
  }

  std::unique_ptr<RunLoopWorld> mWorld = GetParam().make();
  std::array<int, 2> mSockets{};
  std::vector<std::string> mSaid;
};

INSTANTIATE_TEST_SUITE_P(Every, RunLoopContract, testing::ValuesIn(runLoopImplementations()),
                         [](const auto& each) { return each.param.name; });

TEST_P(RunLoopContract, ReadableDescriptorCallsBackUntilItIsRead) {
  int calls = 0;
  const auto watch = loop().watch(near(), RunLoop::Interest::Readable, [&] {
    if (++calls == 3) readOne();
  });
  mWorld->runFor(kMoment);
  EXPECT_EQ(calls, 0);
  makeReadable();
  EXPECT_EQ(calls, 0);
  mWorld->runFor(kMoment);
  EXPECT_EQ(calls, 3);
}

TEST_P(RunLoopContract, WritableDescriptorCallsBack) {
  std::unique_ptr<RunLoop::Watch> watch;
  watch = loop().watch(near(), RunLoop::Interest::Writable, [&] {
    mSaid.emplace_back("writable");
    watch->setEnabled(false);
  });
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("writable"));
}

TEST_P(RunLoopContract, BothInterestsInOneDescriptorAreTold) {
  std::unique_ptr<RunLoop::Watch> reading;
  std::unique_ptr<RunLoop::Watch> writing;
  reading = loop().watch(near(), RunLoop::Interest::Readable, [&] {
    mSaid.emplace_back("readable");
    reading.reset();
  });
  writing = loop().watch(near(), RunLoop::Interest::Writable, [&] {
    mSaid.emplace_back("writable");
    writing.reset();
  });
  makeReadable();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, testing::UnorderedElementsAre("readable", "writable"));
}

TEST_P(RunLoopContract, EndOfStreamIsReadable) {
  std::unique_ptr<RunLoop::Watch> watch;
  watch = loop().watch(near(), RunLoop::Interest::Readable, [&] {
    mSaid.emplace_back("readable");
    watch->setEnabled(false);
  });
  shutdown(mSockets[1], SHUT_WR);
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("readable"));
}

TEST_P(RunLoopContract, DisabledWatchIsSilentUntilItIsEnabledAgain) {
  const auto watch = loop().watch(near(), RunLoop::Interest::Readable, [&] {
    readOne();
    mSaid.emplace_back("readable");
  });
  watch->setEnabled(false);
  makeReadable();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
  watch->setEnabled(true);
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("readable"));
}

TEST_P(RunLoopContract, DestroyedWatchIsSilent) {
  auto watch = loop().watch(near(), RunLoop::Interest::Readable, say("readable"));
  makeReadable();
  watch.reset();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
}

TEST_P(RunLoopContract, WatchMayEndFromItsOwnCallback) {
  std::unique_ptr<RunLoop::Watch> watch;
  const auto word = std::make_shared<std::string>("once");
  watch = loop().watch(near(), RunLoop::Interest::Readable, [&watch, word, this] {
    watch.reset();
    mSaid.push_back(*word);  // what the callback holds is still there
  });
  makeReadable();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("once"));
}

TEST_P(RunLoopContract, WatchMayEndAnotherThatIsReadyToo) {
  std::unique_ptr<RunLoop::Watch> first;
  std::unique_ptr<RunLoop::Watch> second;
  std::array<int, 2> others{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, others.data()), 0);
  const auto endBoth = [&] {
    mSaid.emplace_back("called");
    first.reset();
    second.reset();
  };
  first = loop().watch(near(), RunLoop::Interest::Readable, endBoth);
  second = loop().watch(others[0], RunLoop::Interest::Readable, endBoth);
  makeReadable();
  ASSERT_EQ(write(others[1], "x", 1), 1);
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("called"));
  for (const int descriptor : others) close(descriptor);
}

TEST_P(RunLoopContract, DescriptorMayBeClosedAndReusedAfterItsWatchHasEnded) {
  std::array<int, 2> others{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, others.data()), 0);
  auto watch = loop().watch(others[0], RunLoop::Interest::Readable, say("old"));
  watch.reset();
  close(others[0]);
  const int reused = fcntl(near(), F_DUPFD, others[0]);
  ASSERT_EQ(reused, others[0]);
  watch = loop().watch(reused, RunLoop::Interest::Readable, [&] {
    readOne();
    mSaid.emplace_back("new");
  });
  makeReadable();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("new"));
  watch.reset();
  close(reused);
  close(others[1]);
}

TEST_P(RunLoopContract, OneShotTimerFiresOnceAndNotTooEarly) {
  const auto timer = loop().startTimer(60ms, false, say("fired"));
  mWorld->runFor(20ms);
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(200ms);
  EXPECT_THAT(mSaid, ElementsAre("fired"));
}

TEST_P(RunLoopContract, RepeatingTimerFiresUntilItIsDestroyed) {
  std::unique_ptr<RunLoop::Timer> timer;
  timer = loop().startTimer(10ms, true, [&] {
    mSaid.emplace_back("fired");
    if (mSaid.size() == 3) timer.reset();
  });
  mWorld->runFor(200ms);
  EXPECT_THAT(mSaid, ElementsAre("fired", "fired", "fired"));
}

TEST_P(RunLoopContract, TimerWithoutDelayFiresFromTheLoop) {
  const auto timer = loop().startTimer(0ms, false, say("fired"));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("fired"));
}

TEST_P(RunLoopContract, TimersFireInTheOrderInWhichTheyAreDue) {
  const auto late = loop().startTimer(80ms, false, say("late"));
  const auto early = loop().startTimer(20ms, false, say("early"));
  mWorld->runFor(200ms);
  EXPECT_THAT(mSaid, ElementsAre("early", "late"));
}

TEST_P(RunLoopContract, DestroyedTimerDoesNotFire) {
  auto timer = loop().startTimer(10ms, false, say("fired"));
  timer.reset();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
}

TEST_P(RunLoopContract, TimerMayEndFromItsOwnCallback) {
  std::unique_ptr<RunLoop::Timer> timer;
  const auto word = std::make_shared<std::string>("once");
  timer = loop().startTimer(5ms, true, [&timer, word, this] {
    timer.reset();
    mSaid.push_back(*word);
  });
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("once"));
}

TEST_P(RunLoopContract, VeryLongTimerDoesNotFireNow) {
  const auto timer = loop().startTimer(std::chrono::hours(24 * 365), false, say("fired"));
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
}

TEST_P(RunLoopContract, PutOffCallsComeLaterAndInOrder) {
  loop().callLater(say("first"));
  loop().callLater([this] {
    mSaid.emplace_back("second");
    loop().callLater(say("fourth"));
  });
  loop().callLater(say("third"));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("first", "second", "third", "fourth"));
}

TEST_P(RunLoopContract, WaitEndsWithTheDescriptorOrTheTime) {
  const auto begin = Clock::now();
  EXPECT_FALSE(waitUntilReadable(kMoment));
  EXPECT_GE(Clock::now() - begin, kMoment);
  EXPECT_TRUE(loop().waitUntilReady(near(), RunLoop::Interest::Writable, Clock::now() + 20s));
  makeReadable();
  EXPECT_TRUE(waitUntilReadable(20s));
  EXPECT_FALSE(waitUntilReadable(0ms));
}

TEST_P(RunLoopContract, WaitEndsWhenTheDescriptorBecomesReady) {
  std::thread other([this] { makeReadable(); });
  EXPECT_TRUE(waitUntilReadable(20s));
  other.join();
}

TEST_P(RunLoopContract, WaitEndsWhenTheOtherEndGoes) {
  shutdown(mSockets[1], SHUT_RDWR);
  EXPECT_TRUE(waitUntilReadable(20s));
  EXPECT_TRUE(loop().waitUntilReady(near(), RunLoop::Interest::Writable, Clock::now() + 20s));
}

TEST_P(RunLoopContract, NothingIsCalledDuringAWaitAndAllOfItAfterwards) {
  loop().callLater(say("first"));
  loop().callLater(say("second"));
  const auto late = loop().startTimer(30ms, false, say("late"));
  const auto early = loop().startTimer(10ms, false, say("early"));
  EXPECT_FALSE(waitUntilReadable(kMoment));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("first", "second", "early", "late"));
}

TEST_P(RunLoopContract, WhatIsLeftFromOneWaitIsLeftFromTheNext) {
  const auto early = loop().startTimer(1ms, false, say("early"));
  const auto late = loop().startTimer(60ms, false, say("late"));
  loop().callLater(say("first"));
  EXPECT_FALSE(waitUntilReadable(20ms));
  loop().callLater(say("between"));
  EXPECT_FALSE(waitUntilReadable(80ms));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(200ms);
  EXPECT_THAT(mSaid, testing::UnorderedElementsAre("first", "early", "between", "late"));
  EXPECT_EQ(mSaid[0], "first");
}

TEST_P(RunLoopContract, WaitInsideACallbackCallsNoOther) {
  loop().callLater([this] {
    mSaid.emplace_back("begins");
    waitUntilReadable(kMoment);
    mSaid.emplace_back("ends");
  });
  loop().callLater(say("second"));
  const auto timer = loop().startTimer(0ms, false, say("timer"));
  mWorld->runFor(4 * kMoment);
  ASSERT_EQ(mSaid.size(), 4u);
  const auto begun = std::ranges::find(mSaid, "begins");
  EXPECT_EQ(*std::next(begun), "ends");
}

TEST_P(RunLoopContract, WatchIsSilentDuringAWaitAndStillReadyAfterwards) {
  std::unique_ptr<RunLoop::Watch> watch;
  watch = loop().watch(near(), RunLoop::Interest::Writable, [&] {
    mSaid.emplace_back("writable");
    watch.reset();
  });
  EXPECT_FALSE(waitUntilReadable(kMoment));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("writable"));
}

TEST_P(RunLoopContract, WatchedDescriptorMayBeWaitedForToo) {
  const auto watch = loop().watch(near(), RunLoop::Interest::Readable, [&] {
    readOne();
    mSaid.emplace_back("readable");
  });
  std::thread other([this] { makeReadable(); });
  EXPECT_TRUE(waitUntilReadable(20s));
  other.join();
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre("readable"));
}

TEST_P(RunLoopContract, WatchThatWasDisabledStaysSoAfterAWait) {
  const auto watch = loop().watch(near(), RunLoop::Interest::Writable, say("writable"));
  watch->setEnabled(false);
  EXPECT_FALSE(waitUntilReadable(10ms));
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
}

TEST_P(RunLoopContract, WatchAndTimersMayEndRightAfterAWait) {
  auto watch = loop().watch(near(), RunLoop::Interest::Writable, say("writable"));
  auto once = loop().startTimer(1ms, false, say("fired"));
  auto often = loop().startTimer(1ms, true, say("fired"));
  EXPECT_FALSE(waitUntilReadable(kMoment));
  watch.reset();
  once.reset();
  often.reset();
  mWorld->runFor(kMoment);
  EXPECT_THAT(mSaid, ElementsAre());
}

TEST_P(RunLoopContract, RepeatingTimerFiresOnceForTheTimeOfAWait) {
  std::unique_ptr<RunLoop::Timer> timer;
  timer = loop().startTimer(10ms, true, [&] {
    mSaid.emplace_back("fired");
    if (mSaid.size() == 1) loop().callLater(say("after"));
    if (mSaid.size() == 4) timer.reset();
  });
  EXPECT_FALSE(waitUntilReadable(2 * kMoment));
  EXPECT_THAT(mSaid, ElementsAre());
  mWorld->runFor(200ms);
  EXPECT_THAT(mSaid, ElementsAre("fired", "after", "fired", "fired"));
}

TEST_P(RunLoopContract, PutOffCallsAreDroppedWithTheLoop) {
  const auto held = std::make_shared<int>(0);
  loop().callLater([this, held] { mSaid.emplace_back("called"); });
  EXPECT_EQ(held.use_count(), 2);
  mWorld.reset();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_THAT(mSaid, ElementsAre());
}

}  // namespace
