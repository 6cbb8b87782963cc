// When a resolve asks whom for what, with a responder and a clock that a test turns by hand.
#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FakeResponder.h"
#include "FakeRunLoop.h"
#include "platform/avahi/Resolution.h"

namespace {

using platform::Place;
using platform::QuestionQueue;
using platform::Resolution;
using platform::Resolved;
using platform::ServiceName;
using platform::Whereabouts;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

class ResolutionTest : public testing::Test {
 protected:
  static constexpr Place kNet2IPv4{2, AVAHI_PROTO_INET};
  static constexpr Place kNet2IPv6{2, AVAHI_PROTO_INET6};
  static constexpr Place kNet3IPv4{3, AVAHI_PROTO_INET};
  static constexpr Place kLoopback{1, AVAHI_PROTO_INET};

  void start(std::set<Place> places, double timeout = 30) {
    whereabouts.responder = &responder;
    whereabouts.places = std::move(places);
    resolution = std::make_unique<Resolution>(
        runLoop, queue, service, whereabouts, 0, timeout,
        [this](const Resolved* resolved, Place place) {
          outcomes.push_back(resolved == nullptr ? "timed out"
                             : resolved->txt == nullptr
                                 ? "no TXT"
                                 : "resolved on net" + std::to_string(place.interface));
          resolution.reset();
        });
    runLoop.runAllLater();
  }

  void pass(milliseconds time) {
    runLoop.advance(time);
    runLoop.runAllLater();
  }

  void accept(const std::string& question) {
    responder.accept(question);
    runLoop.runAllLater();
  }

  void refuse(const std::string& question) {
    responder.refuse(question);
    runLoop.runAllLater();
  }

  void answer(const std::string& question, const Resolved& resolved = {nullptr, kTxt}) {
    const std::size_t before = outcomes.size();
    responder.answer(question, resolved);
    EXPECT_EQ(outcomes.size(), before);  // never from inside the answer
    runLoop.runAllLater();
  }

  // Accepts what is asked and lets its turn pass, so many times.
  void leaveUnanswered(int turns, milliseconds turn = seconds(1)) {
    for (int i = 0; i < turns; ++i) {
      ASSERT_EQ(responder.questions().size(), 1u);
      accept(responder.questions().front());
      pass(turn);
    }
  }

  static inline const platform::Data kTxt = platform::makeData({0});

  FakeRunLoop runLoop;
  FakeResponder responder;
  QuestionQueue queue{runLoop};
  const ServiceName service{"Printer", "_pdl-datastream._tcp", "local"};
  Whereabouts whereabouts;
  std::unique_ptr<Resolution> resolution;
  Lines outcomes;
};

TEST_F(ResolutionTest, OnePlaceAtATimeIsAskedForAnIPv4Address) {
  start({kNet2IPv4, kNet2IPv6, kNet3IPv4});
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
  leaveUnanswered(4);
  EXPECT_THAT(responder.asked, ElementsAre("net2/4 for 4", "net2/6 for 4", "net3/4 for 4",
                                           "net2/4 for 4", "net2/6 for 4"));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/6 for 4"));
}

TEST_F(ResolutionTest, PlaceThatAnsweredBeforeIsAskedFirst) {
  whereabouts.answered = kNet3IPv4;
  start({kNet2IPv4, kNet2IPv6, kNet3IPv4});
  EXPECT_THAT(responder.questions(), ElementsAre("net3/4 for 4"));
}

TEST_F(ResolutionTest, AnswerEndsTheResolutionAndNamesItsPlace) {
  start({kNet2IPv4, kNet3IPv4});
  leaveUnanswered(1);
  accept("net3/4 for 4");
  answer("net3/4 for 4");
  EXPECT_THAT(outcomes, ElementsAre("resolved on net3"));
  EXPECT_THAT(responder.questions(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(ResolutionTest, IPv6IsAskedForWhenFiveTurnsWereUnanswered) {
  start({kNet2IPv4});
  leaveUnanswered(4);
  accept("net2/4 for 4");
  pass(milliseconds(999));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
  pass(milliseconds(1));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 6"));
  answer("net2/4 for 6");
  EXPECT_THAT(outcomes, IsEmpty());
  responder.asked.clear();
  leaveUnanswered(3);
  EXPECT_THAT(outcomes, ElementsAre("resolved on net2"));
  EXPECT_THAT(responder.asked, ElementsAre("net2/4 for 4", "net2/4 for 4"));
}

TEST_F(ResolutionTest, IPv4AddressThatComesLateIsStillTaken) {
  start({kNet2IPv4, kNet3IPv4});
  leaveUnanswered(5);
  answer("net2/4 for 6");
  leaveUnanswered(2);
  EXPECT_THAT(outcomes, IsEmpty());
  answer("net3/4 for 4");
  EXPECT_THAT(outcomes, ElementsAre("resolved on net3"));
}

TEST_F(ResolutionTest, SecondBestAnswerCountsWhenTheTimeIsOver) {
  start({kNet2IPv4}, 6);
  leaveUnanswered(5);
  answer("net2/4 for 6");
  accept("net2/4 for 4");
  pass(milliseconds(999));
  EXPECT_THAT(outcomes, IsEmpty());
  pass(milliseconds(1));
  EXPECT_THAT(outcomes, ElementsAre("resolved on net2"));
}

TEST_F(ResolutionTest, RefusalDoesNotLetIPv6BeAsked) {
  start({kNet2IPv4});
  for (int i = 0; i < 20; ++i) {
    refuse("net2/4 for 4");
    pass(milliseconds(3200));
  }
  leaveUnanswered(4);
  EXPECT_THAT(responder.asked, testing::Each("net2/4 for 4"));
}

TEST_F(ResolutionTest, RefusedQuestionIsAskedAgainAfterAGrowingWhile) {
  responder.refuses = true;
  start({kNet2IPv4});
  EXPECT_EQ(responder.asked.size(), 1u);
  std::size_t asked = 1;
  for (const int wait : {100, 200, 400, 800, 1600, 3200, 3200}) {
    pass(milliseconds(wait - 1));
    EXPECT_EQ(responder.asked.size(), asked);
    pass(milliseconds(1));
    EXPECT_EQ(responder.asked.size(), ++asked);
  }
  responder.refuses = false;
  pass(milliseconds(3200));
  accept("net2/4 for 4");
  refuse("net2/4 for 4");
  pass(milliseconds(100));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
}

TEST_F(ResolutionTest, TimeOutCountsFromTheFirstAcceptedQuestion) {
  start({kNet2IPv4});
  pass(std::chrono::minutes(5));
  refuse("net2/4 for 4");
  pass(milliseconds(100));
  accept("net2/4 for 4");
  pass(milliseconds(29999));
  EXPECT_THAT(outcomes, IsEmpty());
  pass(milliseconds(1));
  EXPECT_THAT(outcomes, ElementsAre("timed out"));
  EXPECT_THAT(responder.questions(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(ResolutionTest, LaterQuestionsDoNotRestartTheTimeOut) {
  start({kNet2IPv4});
  leaveUnanswered(5);
  leaveUnanswered(12, seconds(2));
  accept(responder.questions().front());
  EXPECT_THAT(outcomes, IsEmpty());
  pass(seconds(1));
  EXPECT_THAT(outcomes, ElementsAre("timed out"));
}

TEST_F(ResolutionTest, NoTimeOutIsNoEnd) {
  start({kNet2IPv4}, 0);
  accept("net2/4 for 4");
  pass(std::chrono::hours(1));
  EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(ResolutionTest, ServiceWithoutTxtRecordIsToldWhenNoneComes) {
  start({kNet2IPv4});
  leaveUnanswered(5);
  leaveUnanswered(1, seconds(2));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for any without TXT"));
  answer("net2/4 for any without TXT", {});
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
  leaveUnanswered(3);
  EXPECT_THAT(outcomes, ElementsAre("no TXT"));
}

TEST_F(ResolutionTest, TxtRecordThatComesLateIsStillTaken) {
  start({kNet2IPv4});
  leaveUnanswered(5);
  leaveUnanswered(1, seconds(2));
  answer("net2/4 for any without TXT", {});
  answer("net2/4 for 4");
  EXPECT_THAT(outcomes, ElementsAre("resolved on net2"));
}

TEST_F(ResolutionTest, KindsOfQuestionsTakeTurnsInTheEnd) {
  start({kNet2IPv4});
  leaveUnanswered(5);
  responder.asked.clear();
  leaveUnanswered(4, seconds(2));
  EXPECT_THAT(responder.asked, ElementsAre("net2/4 for any without TXT", "net2/4 for 4",
                                           "net2/4 for 6", "net2/4 for any without TXT"));
}

TEST_F(ResolutionTest, LoopbackIsAskedWhenNothingElseComesInTime) {
  start({kLoopback});
  EXPECT_THAT(responder.questions(), IsEmpty());
  pass(milliseconds(99));
  EXPECT_THAT(responder.questions(), IsEmpty());
  pass(milliseconds(1));
  EXPECT_THAT(responder.questions(), ElementsAre("net1/4 for 4"));
}

TEST_F(ResolutionTest, LoopbackIsAskedAfterTheOthers) {
  start({kLoopback, kNet2IPv4, kNet3IPv4});
  leaveUnanswered(2);
  EXPECT_THAT(responder.asked, ElementsAre("net2/4 for 4", "net3/4 for 4", "net1/4 for 4"));
}

TEST_F(ResolutionTest, PlaceThatIsAddedIsAsked) {
  start({});
  whereabouts.places.insert(kNet3IPv4);
  resolution->update();
  runLoop.runAllLater();
  EXPECT_THAT(responder.questions(), ElementsAre("net3/4 for 4"));
}

TEST_F(ResolutionTest, PlaceThatIsGoneIsNotAskedAnyMore) {
  start({kNet2IPv4, kNet3IPv4});
  accept("net2/4 for 4");
  whereabouts.places.erase(kNet2IPv4);
  resolution->update();
  EXPECT_THAT(responder.questions(), IsEmpty());
  runLoop.runAllLater();
  EXPECT_THAT(responder.questions(), ElementsAre("net3/4 for 4"));
}

TEST_F(ResolutionTest, ServiceThatIsNowhereLeavesTheQueue) {
  whereabouts.responder = &responder;
  whereabouts.places = {kNet2IPv4};
  resolution = std::make_unique<Resolution>(runLoop, queue, service, whereabouts, 0, 30,
                                            [](const Resolved*, Place) {});
  whereabouts.places.clear();
  resolution->update();
  runLoop.runAllLater();
  EXPECT_THAT(responder.asked, IsEmpty());
}

TEST_F(ResolutionTest, NewResponderIsAskedInTheSamePlaces) {
  start({kNet2IPv4});
  whereabouts.places.clear();
  resolution->update();
  EXPECT_THAT(responder.questions(), IsEmpty());
  FakeResponder other;
  whereabouts.responder = &other;
  whereabouts.places = {kNet2IPv4};
  resolution->update();
  runLoop.runAllLater();
  EXPECT_THAT(other.questions(), ElementsAre("net2/4 for 4"));
  other.answer("net2/4 for 4", {nullptr, kTxt});
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, ElementsAre("resolved on net2"));
}

TEST_F(ResolutionTest, AnswerOfTheLastMomentIsDroppedWithTheResolution) {
  start({kNet2IPv4});
  responder.answer("net2/4 for 4");
  resolution.reset();
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(ResolutionTest, AnswerFromAPlaceThatHasJustGoneIsDropped) {
  start({kNet2IPv4, kNet3IPv4});
  responder.answer("net2/4 for 4", {nullptr, kTxt});
  whereabouts.places.erase(kNet2IPv4);
  resolution->update();
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, IsEmpty());
}

}  // namespace
