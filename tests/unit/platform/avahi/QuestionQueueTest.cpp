// Who is let through when, with a clock that a test turns by hand.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "FakeRunLoop.h"
#include "platform/avahi/QuestionQueue.h"

namespace {

using platform::QuestionQueue;
using std::chrono::milliseconds;
using testing::ElementsAre;

class QuestionQueueTest : public testing::Test {
 protected:
  using Ticket = std::unique_ptr<QuestionQueue::Ticket>;

  Ticket enter(unsigned rank, const std::string& name) {
    return queue.enter(rank, [this, name] { called.push_back(name); });
  }

  // They hold their tickets.
  void enterMany(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) tickets.push_back(enter(0, "one of many"));
    runLoop.runAllLater();
  }

  // The responder has got the questions of those that have been called.
  void receive() {
    for (; received < std::min(called.size(), tickets.size()); ++received) {
      if (tickets[received] != nullptr) tickets[received]->received();
    }
  }

  void pass(milliseconds time) {
    receive();
    runLoop.advance(time);
    runLoop.runAllLater();
  }

  FakeRunLoop runLoop;
  QuestionQueue queue{runLoop};
  std::vector<std::string> called;
  std::vector<Ticket> tickets;
  std::size_t received = 0;
};

TEST_F(QuestionQueueTest, TurnComesFromTheRunLoop) {
  const Ticket ticket = enter(0, "one");
  EXPECT_TRUE(called.empty());
  runLoop.runAllLater();
  EXPECT_THAT(called, ElementsAre("one"));
}

TEST_F(QuestionQueueTest, LowRanksComeFirstAndEqualOnesInTheirOrder) {
  const Ticket third = enter(1, "third");
  const Ticket first = enter(0, "first");
  const Ticket second = enter(0, "second");
  runLoop.runAllLater();
  EXPECT_THAT(called, ElementsAre("first", "second", "third"));
}

TEST_F(QuestionQueueTest, AFewAreLetThroughAtATime) {
  enterMany(100);
  EXPECT_EQ(called.size(), 32u);
}

TEST_F(QuestionQueueTest, TicketThatIsGivenBackLetsTheNextThrough) {
  enterMany(33);
  tickets.front().reset();
  runLoop.runAllLater();
  EXPECT_EQ(called.size(), 33u);
}

TEST_F(QuestionQueueTest, QuestionsThatNobodyHasReceivedLetNobodyThrough) {
  enterMany(33);
  runLoop.advance(std::chrono::minutes(1));
  runLoop.runAllLater();
  EXPECT_EQ(called.size(), 32u);
}

TEST_F(QuestionQueueTest, TicketThatIsHeldForLongLetsTheNextThrough) {
  enterMany(33);
  pass(milliseconds(99));
  EXPECT_EQ(called.size(), 32u);
  pass(milliseconds(1));
  EXPECT_EQ(called.size(), 33u);
}

TEST_F(QuestionQueueTest, TicketHeldForLongMakesRoomOnce) {
  enterMany(100);
  pass(milliseconds(100));
  EXPECT_EQ(called.size(), 64u);
  for (int i = 0; i < 32; ++i) tickets[static_cast<std::size_t>(i)].reset();
  runLoop.runAllLater();
  EXPECT_EQ(called.size(), 64u);
}

TEST_F(QuestionQueueTest, SilentOnesDelayNobodyByASecond) {
  enterMany(200);
  const Ticket living = enter(0, "living");
  for (int i = 0; i < 6; ++i) pass(milliseconds(100));
  EXPECT_EQ(called.back(), "living");
}

TEST_F(QuestionQueueTest, QuestionsInAllAreBounded) {
  enterMany(600);
  for (int i = 0; i < 50; ++i) pass(milliseconds(100));
  EXPECT_EQ(called.size(), 512u);
  tickets.front().reset();
  runLoop.runAllLater();
  EXPECT_EQ(called.size(), 513u);
}

TEST_F(QuestionQueueTest, WhoLeavesTheQueueIsNotCalled) {
  Ticket ticket = enter(0, "one");
  ticket.reset();
  runLoop.runAllLater();
  EXPECT_TRUE(called.empty());
}

TEST_F(QuestionQueueTest, TicketMayBeGivenBackInsideTheCall) {
  Ticket ticket;
  ticket = queue.enter(0, [&] { ticket.reset(); });
  const Ticket next = enter(0, "next");
  runLoop.runAllLater();
  EXPECT_THAT(called, ElementsAre("next"));
  EXPECT_EQ(runLoop.timers(), 0u);
}

}  // namespace
