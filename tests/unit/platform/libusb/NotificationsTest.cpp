#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "FakeRunLoop.h"
#include "platform/libusb/Notifications.h"

namespace {

using platform::InterestNotification;
using platform::io_iterator_t;
using platform::io_object_t;
using platform::MatchNotification;
using platform::ObjectReference;
using platform::OwnedNotificationPort;
using testing::ElementsAre;
using testing::IsEmpty;

class Entry : public platform::RegistryObject {};

class NotificationsTest : public testing::Test {
 protected:
  io_object_t addEntry() { return mTable->add(std::make_shared<Entry>()); }

  // One that tells of entries, on the port and the loop, and has been read to its end.
  void makeArmed() {
    mPort->addTo(mLoop);
    makeMatch();
    EXPECT_EQ(mMatch->next(), 0u);
  }

  void makeMatch() {
    mMatch = std::make_shared<MatchNotification>(mPort->port(), platform::MatchingDictionary{},
                                                 matched, this);
    mMatch->setNumber(kIterator);
  }

  void announce() { mMatch->announce(ObjectReference::adopt(mTable, addEntry())); }

  std::shared_ptr<InterestNotification> makeInterest(io_object_t service) {
    return std::make_shared<InterestNotification>(
        mPort->port(), ObjectReference::retain(mTable, service), gone, this);
  }

  static void matched(void* refCon, io_iterator_t iterator) {
    static_cast<NotificationsTest*>(refCon)->mMatched.push_back(iterator);
  }

  static void gone(void* refCon, platform::io_service_t service, std::uint32_t message, void*) {
    EXPECT_EQ(message, platform::kIOMessageServiceIsTerminated);
    static_cast<NotificationsTest*>(refCon)->mGone.push_back(service);
  }

  static constexpr io_iterator_t kIterator = 4711;

  FakeRunLoop mLoop;
  std::shared_ptr<platform::ObjectTable> mTable = std::make_shared<platform::ObjectTable>();
  std::unique_ptr<OwnedNotificationPort> mPort = std::make_unique<OwnedNotificationPort>();
  std::shared_ptr<MatchNotification> mMatch;
  std::vector<io_iterator_t> mMatched;
  std::vector<io_object_t> mGone;
};

TEST_F(NotificationsTest, ArrivalIsToldFromTheRunLoop) {
  makeArmed();
  announce();
  EXPECT_THAT(mMatched, IsEmpty());
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, ElementsAre(kIterator));
  EXPECT_NE(mMatch->next(), 0u);
}

TEST_F(NotificationsTest, ArrivalsAreToldOnceUntilTheIteratorIsReadToItsEnd) {
  makeArmed();
  announce();
  announce();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, ElementsAre(kIterator));
  EXPECT_NE(mMatch->next(), 0u);
  announce();
  EXPECT_NE(mMatch->next(), 0u);
  EXPECT_NE(mMatch->next(), 0u);
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, ElementsAre(kIterator));
  EXPECT_EQ(mMatch->next(), 0u);
  announce();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, ElementsAre(kIterator, kIterator));
}

TEST_F(NotificationsTest, IteratorThatWasNeverReadIsToldOfNothing) {
  mPort->addTo(mLoop);
  makeMatch();
  announce();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, IsEmpty());
  EXPECT_NE(mMatch->next(), 0u);
}

TEST_F(NotificationsTest, PortWithoutARunLoopKeepsItsNotificationsInOrder) {
  makeMatch();
  mMatch->next();
  const io_object_t service = addEntry();
  const auto interest = makeInterest(service);
  announce();
  interest->sendTerminated();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, IsEmpty());
  mPort->addTo(mLoop);
  EXPECT_TRUE(mLoop.runLater());
  EXPECT_THAT(mMatched, ElementsAre(kIterator));
  EXPECT_THAT(mGone, ElementsAre(service));
}

TEST_F(NotificationsTest, NothingIsToldAfterTheEndOfThePort) {
  makeArmed();
  const auto interest = makeInterest(addEntry());
  announce();
  interest->sendTerminated();
  mPort.reset();
  mLoop.runAllLater();
  announce();
  interest->sendTerminated();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, IsEmpty());
  EXPECT_THAT(mGone, IsEmpty());
}

TEST_F(NotificationsTest, NothingIsToldAfterTheEndOfTheNotification) {
  makeArmed();
  auto interest = makeInterest(addEntry());
  announce();
  interest->sendTerminated();
  mMatch.reset();
  interest.reset();
  mLoop.runAllLater();
  EXPECT_THAT(mMatched, IsEmpty());
  EXPECT_THAT(mGone, IsEmpty());
}

TEST_F(NotificationsTest, InterestKeepsItsService) {
  mPort->addTo(mLoop);
  const io_object_t service = addEntry();
  auto interest = makeInterest(service);
  mTable->release(service);
  EXPECT_NE(mTable->find<Entry>(service), nullptr);
  interest->sendTerminated();
  EXPECT_THAT(mGone, IsEmpty());
  mLoop.runAllLater();
  EXPECT_THAT(mGone, ElementsAre(service));
  interest.reset();
  EXPECT_EQ(mTable->find<Entry>(service), nullptr);
}

// As a receiver does that drops what it knows of the device.
TEST_F(NotificationsTest, NotificationMayEndInItsOwnCallback) {
  mPort->addTo(mLoop);
  struct Owner {
    std::shared_ptr<InterestNotification> interest;
    int calls = 0;
  } owner;
  const io_object_t service = addEntry();
  owner.interest = std::make_shared<InterestNotification>(
      mPort->port(), ObjectReference::adopt(mTable, service),
      [](void* refCon, platform::io_service_t, std::uint32_t, void*) {
        static_cast<Owner*>(refCon)->interest.reset();
        ++static_cast<Owner*>(refCon)->calls;
      },
      &owner);
  owner.interest->sendTerminated();
  owner.interest->sendTerminated();
  mLoop.runAllLater();
  EXPECT_EQ(owner.calls, 1);
  EXPECT_EQ(mTable->find<Entry>(service), nullptr);
}

}  // namespace
