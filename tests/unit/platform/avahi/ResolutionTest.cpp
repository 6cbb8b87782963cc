// When a resolve asks whom for what, with a responder and a clock that a test turns by hand.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "FakeRunLoop.h"
#include "platform/avahi/Resolution.h"

namespace {

using platform::avahi::Place;
using platform::avahi::Resolution;
using platform::avahi::Resolved;
using platform::avahi::Responder;
using platform::avahi::ServiceName;
using platform::avahi::Whereabouts;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Lines = std::vector<std::string>;

// Questions are written as "net2/4 for 4": interface, protocol and address family.
class FakeResponder : public Responder {
 public:
  std::unique_ptr<Query> browse(const std::string&, const std::string&,
                                platform::avahi::BrowseListener&) override {
    return nullptr;
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                 AvahiProtocol addressFamily, ResolveCallback callback) override {
    EXPECT_EQ(service.name, "Printer");
    ++asked;
    if (refuses) return nullptr;
    return std::make_unique<Question>(*this, text(place, addressFamily), std::move(callback));
  }

  Lines questions() const {
    Lines lines;
    for (const Question* question : mQuestions) lines.push_back(question->text);
    return lines;
  }

  void answer(const std::string& question, const std::optional<Resolved>& resolved) {
    const auto hasText = [&](const Question* open) { return open->text == question; };
    const auto found = std::find_if(mQuestions.begin(), mQuestions.end(), hasText);
    ASSERT_NE(found, mQuestions.end()) << question;
    (*found)->callback(resolved);
  }

  bool refuses = false;
  int asked = 0;

 private:
  struct Question : Query {
    Question(FakeResponder& of, std::string words, ResolveCallback told)
        : text(std::move(words)), callback(std::move(told)), mOf(of) {
      mOf.mQuestions.push_back(this);
    }
    ~Question() override { std::erase(mOf.mQuestions, this); }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    const std::string text;
    const ResolveCallback callback;

   private:
    FakeResponder& mOf;
  };

  static std::string text(Place place, AvahiProtocol family) {
    const auto shown = [](AvahiProtocol protocol) {
      return std::string(protocol == AVAHI_PROTO_INET ? "4" : "6");
    };
    return "net" + std::to_string(place.interface) + "/" + shown(place.protocol) + " for " +
           shown(family);
  }

  std::vector<Question*> mQuestions;
};

class ResolutionTest : public testing::Test {
 protected:
  static constexpr Place kNet2IPv4{2, AVAHI_PROTO_INET};
  static constexpr Place kNet2IPv6{2, AVAHI_PROTO_INET6};
  static constexpr Place kNet3IPv4{3, AVAHI_PROTO_INET};
  static constexpr Place kLoopback{1, AVAHI_PROTO_INET};

  void start(std::set<Place> places, double timeout = 30) {
    whereabouts = {&responder, std::move(places)};
    resolution.emplace(runLoop, service, whereabouts, timeout,
                       [this](const std::optional<Resolved>& resolved) {
                         outcomes.push_back(resolved ? "resolved" : "timed out");
                         resolution.reset();
                       });
  }

  void pass(milliseconds time) {
    runLoop.advance(time);
    runLoop.runAllLater();
  }

  void answer(const std::string& question, const std::optional<Resolved>& resolved) {
    responder.answer(question, resolved);
    EXPECT_THAT(outcomes, IsEmpty());  // never from inside the answer
    runLoop.runAllLater();
  }

  FakeRunLoop runLoop;
  FakeResponder responder;
  const ServiceName service{"Printer", "_pdl-datastream._tcp", "local"};
  Whereabouts whereabouts;
  std::optional<Resolution> resolution;
  Lines outcomes;
};

TEST_F(ResolutionTest, EveryPlaceIsAskedForAnIPv4Address) {
  start({kNet2IPv4, kNet2IPv6, kNet3IPv4});
  EXPECT_THAT(responder.questions(),
              UnorderedElementsAre("net2/4 for 4", "net2/6 for 4", "net3/4 for 4"));
}

TEST_F(ResolutionTest, FirstAnswerEndsAllQuestions) {
  start({kNet2IPv4, kNet2IPv6});
  answer("net2/6 for 4", Resolved{});
  EXPECT_THAT(outcomes, ElementsAre("resolved"));
  EXPECT_THAT(responder.questions(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(ResolutionTest, SecondAnswerOfTheSameMomentIsIgnored) {
  start({kNet2IPv4, kNet2IPv6});
  responder.answer("net2/4 for 4", Resolved{});
  responder.answer("net2/6 for 4", Resolved{});
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, ElementsAre("resolved"));
}

TEST_F(ResolutionTest, FailedQuestionIsAskedAgainAndIPv6Too) {
  start({kNet2IPv4});
  answer("net2/4 for 4", std::nullopt);
  EXPECT_THAT(responder.questions(), IsEmpty());
  pass(milliseconds(99));
  EXPECT_THAT(responder.questions(), IsEmpty());
  pass(milliseconds(1));
  EXPECT_THAT(responder.questions(), UnorderedElementsAre("net2/4 for 4", "net2/4 for 6"));
  answer("net2/4 for 6", Resolved{});
  EXPECT_THAT(outcomes, ElementsAre("resolved"));
}

TEST_F(ResolutionTest, QuestionsThatAreStillOpenStayOpen) {
  start({kNet2IPv4, kNet3IPv4});
  answer("net2/4 for 4", std::nullopt);
  EXPECT_THAT(responder.questions(), ElementsAre("net3/4 for 4"));
  pass(milliseconds(100));
  EXPECT_EQ(responder.asked, 5);
}

TEST_F(ResolutionTest, RefusedQuestionIsNoBusyLoop) {
  responder.refuses = true;
  start({kNet2IPv4});
  runLoop.runAllLater();
  EXPECT_EQ(responder.asked, 1);
  pass(milliseconds(100));
  EXPECT_EQ(responder.asked, 3);
  responder.refuses = false;
  pass(milliseconds(100));
  EXPECT_EQ(responder.questions().size(), 2u);
}

TEST_F(ResolutionTest, QuestionsAreRenewedUntilTheTimeIsOver) {
  start({kNet2IPv4});
  for (int i = 0; i < 5; ++i) {
    pass(seconds(5));
    answer("net2/4 for 4", std::nullopt);
    pass(milliseconds(100));
  }
  pass(milliseconds(4499));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(responder.questions().size(), 2u);
  pass(milliseconds(1));
  EXPECT_THAT(outcomes, ElementsAre("timed out"));
  EXPECT_THAT(responder.questions(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(ResolutionTest, TimeOutCountsAlsoWithoutResponder) {
  resolution.emplace(runLoop, service, whereabouts, 30, [this](const auto& resolved) {
    outcomes.push_back(resolved ? "resolved" : "timed out");
  });
  pass(seconds(30));
  EXPECT_THAT(outcomes, ElementsAre("timed out"));
}

TEST_F(ResolutionTest, NoTimeOutIsNoEnd) {
  start({kNet2IPv4}, 0);
  pass(std::chrono::hours(1));
  EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(ResolutionTest, LoopbackIsAskedAfterTheOthers) {
  start({kLoopback, kNet2IPv4});
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
  pass(milliseconds(99));
  EXPECT_THAT(responder.questions(), ElementsAre("net2/4 for 4"));
  pass(milliseconds(1));
  EXPECT_THAT(responder.questions(), UnorderedElementsAre("net1/4 for 4", "net2/4 for 4"));
}

TEST_F(ResolutionTest, PlaceThatIsAddedIsAsked) {
  start({kNet2IPv4});
  whereabouts.places.insert(kNet3IPv4);
  resolution->update();
  EXPECT_THAT(responder.questions(), UnorderedElementsAre("net2/4 for 4", "net3/4 for 4"));
  EXPECT_EQ(responder.asked, 2);
}

TEST_F(ResolutionTest, PlaceThatIsGoneIsNotAskedAnyMore) {
  start({kNet2IPv4, kNet3IPv4});
  whereabouts.places.erase(kNet2IPv4);
  resolution->update();
  EXPECT_THAT(responder.questions(), ElementsAre("net3/4 for 4"));
}

TEST_F(ResolutionTest, NewResponderIsAskedInTheSamePlaces) {
  start({kNet2IPv4});
  whereabouts.places.clear();
  resolution->update();
  EXPECT_THAT(responder.questions(), IsEmpty());
  FakeResponder other;
  whereabouts = {&other, {kNet2IPv4}};
  resolution->update();
  EXPECT_THAT(other.questions(), ElementsAre("net2/4 for 4"));
  other.answer("net2/4 for 4", Resolved{});
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, ElementsAre("resolved"));
}

TEST_F(ResolutionTest, AnswerOfTheLastMomentIsDroppedWithTheResolution) {
  start({kNet2IPv4});
  responder.answer("net2/4 for 4", Resolved{});
  resolution.reset();
  runLoop.runAllLater();
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

}  // namespace
