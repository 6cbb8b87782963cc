// When a service that was resolved asks again, and what it makes of the answer.
#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "FakeResponder.h"
#include "FakeRunLoop.h"
#include "platform/avahi/AvahiService.h"

namespace {

using platform::AvahiService;
using platform::Place;
using platform::QuestionQueue;
using testing::ElementsAre;
using testing::IsEmpty;

class AvahiServiceTest : public testing::Test {
 protected:
  static constexpr Place kNet2{2, AVAHI_PROTO_INET};
  static constexpr Place kNet3{3, AVAHI_PROTO_INET};

  AvahiServiceTest() {
    service.useResponder(&responder);
    service.setClient(
        [](platform::NetService*, platform::StreamError* error, void* info) {
          static_cast<AvahiServiceTest*>(info)->told.push_back(error->error == 0 ? "resolved"
                                                                                 : "failed");
        },
        this);
    service.schedule();
  }

  // It is resolved on the first link.
  void resolve() {
    service.addPlace(kNet2);
    service.addPlace(kNet3);
    service.resolveWithTimeout(30, nullptr);
    answer("net2/4 for 4", 2);
    ASSERT_THAT(told, ElementsAre("resolved"));
    service.cancel();
    told.clear();
    responder.asked.clear();
  }

  // As long as it takes until an address is confirmed whose place has gone.
  void waitForGoodbyes() {
    runLoop.advance(std::chrono::milliseconds(1000));
    runLoop.runAllLater();
  }

  void answer(const std::string& question, std::uint8_t host) {
    runLoop.runAllLater();
    responder.answer(question, {platform::makeData({10, 0, 0, host}), platform::makeData({0})});
    runLoop.runAllLater();
  }

  FakeRunLoop runLoop;
  FakeResponder responder;
  QuestionQueue queue{runLoop};
  std::vector<std::string> told;
  AvahiService service{runLoop, queue, {"Printer", "_pdl-datastream._tcp", "local"}, 0, [this] {
                         told.push_back("moved");
                       }};
};

TEST_F(AvahiServiceTest, AddressIsConfirmedWhenItsPlaceGoes) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  answer("net3/4 for 4", 2);
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(AvahiServiceTest, OtherAddressElsewhereIsTold) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  answer("net3/4 for 4", 3);
  EXPECT_THAT(told, ElementsAre("moved"));
}

TEST_F(AvahiServiceTest, PlaceOfTheConfirmationIsTheNewOne) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  answer("net3/4 for 4", 2);
  service.addPlace(kNet2);
  service.removePlace(kNet3);
  waitForGoodbyes();
  answer("net2/4 for 4", 4);
  EXPECT_THAT(told, ElementsAre("moved"));
}

TEST_F(AvahiServiceTest, AddressThatNobodyConfirmsIsGone) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  runLoop.runAllLater();
  responder.accept("net3/4 for 4");
  runLoop.runAllLater();
  for (int i = 0; i < 30; ++i) {
    EXPECT_THAT(told, IsEmpty());
    runLoop.advance(std::chrono::seconds(1));
    runLoop.runAllLater();
  }
  EXPECT_THAT(told, ElementsAre("moved"));
}

TEST_F(AvahiServiceTest, PlaceThatDidNotAnswerMayGo) {
  resolve();
  service.removePlace(kNet3);
  waitForGoodbyes();
  EXPECT_THAT(responder.asked, IsEmpty());
}

TEST_F(AvahiServiceTest, ServiceThatSaysGoodbyeEverywhereIsNotAskedAgain) {
  resolve();
  service.removePlace(kNet2);
  runLoop.advance(std::chrono::milliseconds(999));
  runLoop.runAllLater();
  service.removePlace(kNet3);
  waitForGoodbyes();
  EXPECT_THAT(responder.asked, IsEmpty());
}

TEST_F(AvahiServiceTest, AddressIsConfirmedByANewResponderWhereItWas) {
  resolve();
  FakeResponder other;
  service.useResponder(&other);
  service.addPlace(kNet3);
  service.addPlace(kNet2);
  service.confirm();
  // Not by the first that was told of.
  runLoop.runAllLater();
  EXPECT_THAT(other.questions(), ElementsAre("net2/4 for 4"));
  other.answer("net2/4 for 4", {platform::makeData({10, 0, 0, 9}), platform::makeData({0})});
  runLoop.runAllLater();
  EXPECT_THAT(told, ElementsAre("moved"));
}

TEST_F(AvahiServiceTest, AddressIsConfirmedOnce) {
  resolve();
  service.confirm();
  runLoop.runAllLater();
  EXPECT_THAT(responder.asked, IsEmpty());
}

TEST_F(AvahiServiceTest, ServiceThatWasNeverResolvedHasNothingToConfirm) {
  service.addPlace(kNet2);
  service.confirm();
  runLoop.runAllLater();
  EXPECT_THAT(responder.asked, IsEmpty());
}

TEST_F(AvahiServiceTest, ConfirmationEndsWithTheResponder) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  runLoop.runAllLater();
  service.useResponder(nullptr);
  EXPECT_THAT(responder.questions(), IsEmpty());
  runLoop.advance(std::chrono::minutes(1));
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(AvahiServiceTest, ClientThatResolvesAgainTakesTheConfirmationOver) {
  resolve();
  service.removePlace(kNet2);
  waitForGoodbyes();
  service.resolveWithTimeout(30, nullptr);
  answer("net3/4 for 4", 3);
  EXPECT_THAT(told, ElementsAre("resolved"));
}

}  // namespace
