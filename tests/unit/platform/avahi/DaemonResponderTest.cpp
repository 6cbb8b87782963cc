// What the daemon is asked on the bus, and what is made of its answers: also of those that no
// daemon should give.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AvahiArguments.h"
#include "FakeAvahiDaemon.h"
#include "FakeRunLoop.h"
#include "PrivateBus.h"
#include "platform/avahi/DaemonResponder.h"

namespace {

using platform::DaemonResponder;
using platform::Place;
using platform::Resolved;
using platform::Responder;
using platform::ServiceName;
using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

constexpr char kBrowser[] = "org.freedesktop.Avahi.ServiceBrowser";
constexpr char kDomains[] = "org.freedesktop.Avahi.DomainBrowser";
constexpr char kResolver[] = "org.freedesktop.Avahi.ServiceResolver";

const ServiceName kOffice{"Office", "_pdl-datastream._tcp", "local"};

void appendDomain(DBusMessage* message) {
  append(message, 2);
  append(message, 0);
  append(message, "printers.example");
}

class DaemonResponderTest : public testing::Test,
                            protected platform::BrowseListener,
                            protected platform::DomainListener {
 protected:
  DaemonResponderTest() {
    until([this] { return responder->state() == DaemonResponder::State::Ready; });
  }

  void until(const std::function<bool()>& done) {
    EXPECT_TRUE(runLoop.runUntil([&] {
      daemon.turn();
      return done();
    }));
  }

  // The daemon has heard everything that was sent to it, and all it said has been told.
  void settle() {
    const std::size_t before = daemon.calls().size();
    const auto last = responder->browseDomains(*this);
    until([&] { return daemon.calls().size() > before; });
    daemon.signal("/DomainBrowserNew", kDomains, "ItemNew", [](DBusMessage* message) {
      append(message, 0);
      append(message, 0);
      append(message, "settled");
    });
    until([this] { return !told.empty() && told.back() == "+settled"; });
    told.pop_back();
  }

  void browse() {
    query = responder->browse("_pdl-datastream._tcp", "local", *this);
    until([this] { return lastCall().starts_with("/ ServiceBrowserNew"); });
  }

  void browseSignal(
      const std::string& member,
      const std::function<void(DBusMessage*)>& fill = [](DBusMessage*) {}) {
    daemon.signal("/ServiceBrowserNew", kBrowser, member, fill);
  }

  void resolve(bool wantsTxt = true) {
    query = responder->resolve(
        kOffice, {{2, 0}, AVAHI_PROTO_INET, wantsTxt},
        [this](Responder::News news, const Resolved& resolved) { answered(news, resolved); });
    until([this] { return !told.empty(); });
  }

  void resolveSignal(
      const std::string& member,
      const std::function<void(DBusMessage*)>& fill = [](DBusMessage*) {}) {
    daemon.signal("/ServiceResolverNew", kResolver, member, fill);
  }

  std::string lastCall() const { return daemon.calls().empty() ? "" : daemon.calls().back(); }

  PrivateBus bus{PrivateBus::Kind::System};
  FakeAvahiDaemon daemon;
  FakeRunLoop runLoop;
  Lines told;
  Resolved answer;
  std::unique_ptr<DaemonResponder> responder =
      platform::connectToDaemon(runLoop, [this](DaemonResponder::State state) {
        if (state == DaemonResponder::State::Lost) told.push_back("lost");
      });
  std::unique_ptr<Responder::Query> query;

 private:
  void appeared(const ServiceName& service, Place place) override {
    told.push_back("+" + service.name + "." + service.type + "." + service.domain + " at " +
                   std::to_string(place.interface) + "/" + std::to_string(place.protocol));
  }
  void disappeared(const ServiceName& service, Place place) override {
    told.push_back("-" + service.name + "." + service.type + "." + service.domain + " at " +
                   std::to_string(place.interface) + "/" + std::to_string(place.protocol));
  }
  void allForNow() override { told.push_back("all for now"); }
  void browsingFailed() override { told.push_back("failed"); }
  void domainAppeared(const std::string& domain) override { told.push_back("+" + domain); }
  void domainDisappeared(const std::string& domain) override { told.push_back("-" + domain); }

  void answered(Responder::News news, const Resolved& resolved) {
    told.push_back(news == Responder::News::Accepted   ? "accepted"
                   : news == Responder::News::Answered ? "answered"
                                                       : "refused");
    answer = resolved;
  }
};

TEST_F(DaemonResponderTest, ServicesAreLookedForEverywhere) {
  browse();
  EXPECT_EQ(lastCall(), "/ ServiceBrowserNew: -1 -1 '_pdl-datastream._tcp' 'local' 0");
  EXPECT_EQ(responder->defaultDomain(), "local");
}

TEST_F(DaemonResponderTest, TellsWhatAppearsAndGoes) {
  browse();
  browseSignal("ItemNew", appendItem);
  browseSignal("AllForNow");
  browseSignal("CacheExhausted");
  browseSignal("ItemRemove", appendItem);
  settle();
  EXPECT_THAT(told, ElementsAre("+Office._pdl-datastream._tcp.local at 2/0", "all for now",
                                "-Office._pdl-datastream._tcp.local at 2/0"));
}

TEST_F(DaemonResponderTest, TellsOfASearchThatTheDaemonGivesUp) {
  browse();
  browseSignal("Failure");
  settle();
  EXPECT_THAT(told, ElementsAre("failed"));
}

TEST_F(DaemonResponderTest, TellsOfASearchThatTheDaemonRefuses) {
  daemon.refuse("ServiceBrowserNew");
  browse();
  settle();
  EXPECT_THAT(told, ElementsAre("failed"));
}

TEST_F(DaemonResponderTest, SignalsOfOthersAndUnreadableOnesSayNothing) {
  browse();
  browseSignal("ItemNew");
  browseSignal("ItemNew", [](DBusMessage* message) { append(message, "Office"); });
  daemon.signal("/elsewhere", kBrowser, "ItemNew", appendItem);
  daemon.signal("/ServiceBrowserNew", kDomains, "ItemNew", appendItem);
  settle();
  EXPECT_THAT(told, IsEmpty());
}

// Anybody on the bus may send signals: a forged printer would get the firmware of the right one.
TEST_F(DaemonResponderTest, SignalsOfSomebodyElseSayNothing) {
  browse();
  daemon.forge("/ServiceBrowserNew", kBrowser, "ItemNew", appendItem);
  daemon.forge("/", DBUS_INTERFACE_DBUS, "NameOwnerChanged", [](DBusMessage* message) {
    for (const char* const text : {"org.freedesktop.Avahi", ":1.0", ""}) append(message, text);
  });
  settle();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(responder->state(), DaemonResponder::State::Ready);
}

TEST_F(DaemonResponderTest, DomainsAreAskedForAndTold) {
  query = responder->browseDomains(*this);
  until([this] { return lastCall() == "/ DomainBrowserNew: -1 -1 '' 0 0"; });
  daemon.signal("/DomainBrowserNew", kDomains, "ItemNew", appendDomain);
  daemon.signal("/DomainBrowserNew", kDomains, "Failure");
  daemon.signal("/DomainBrowserNew", kDomains, "AllForNow", appendDomain);
  daemon.signal("/DomainBrowserNew", kDomains, "ItemRemove", appendDomain);
  until([this] { return told.size() == 2; });
  EXPECT_THAT(told, ElementsAre("+printers.example", "-printers.example"));
}

TEST_F(DaemonResponderTest, AnswerHasTheAddressAndTheRecordInItsOwnOrder) {
  resolve();
  EXPECT_EQ(lastCall(), "/ ServiceResolverNew: 2 0 'Office' '_pdl-datastream._tcp' 'local' 0 0");
  resolveSignal("Found", [](DBusMessage* message) { appendAnswer(message, {}); });
  settle();
  EXPECT_THAT(told, ElementsAre("accepted", "answered"));
  EXPECT_EQ(*answer.address, (Bytes{16, 2, 0x23, 0x8C, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(*answer.txt, (Bytes{3, 'a', '=', '1', 3, 'b', '=', '2'}));
}

TEST_F(DaemonResponderTest, RecordThatIsNotWantedIsNotAskedForNorRead) {
  resolve(false);
  EXPECT_EQ(lastCall(), "/ ServiceResolverNew: 2 0 'Office' '_pdl-datastream._tcp' 'local' 0 4");
  resolveSignal("Found", [](DBusMessage* message) { appendAnswer(message, {}); });
  settle();
  EXPECT_THAT(told, ElementsAre("accepted", "answered"));
  EXPECT_EQ(answer.txt, nullptr);
}

TEST_F(DaemonResponderTest, OnlyTheFirstAnswerCounts) {
  resolve();
  resolveSignal("Found", [](DBusMessage* message) { appendAnswer(message, {}); });
  resolveSignal("Found",
                [](DBusMessage* message) { appendAnswer(message, {.address = "192.0.2.8"}); });
  resolveSignal("Failure");
  settle();
  EXPECT_THAT(told, ElementsAre("accepted", "answered"));
  EXPECT_EQ((*answer.address)[7], 7);
}

TEST_F(DaemonResponderTest, QuestionWithoutAnAnswerIsRefusedOnce) {
  resolve();
  resolveSignal("Failure");
  resolveSignal("Failure");
  settle();
  EXPECT_THAT(told, ElementsAre("accepted", "refused"));
}

TEST_F(DaemonResponderTest, QuestionThatTheDaemonDoesNotTakeIsRefused) {
  daemon.refuse("ServiceResolverNew");
  resolve();
  EXPECT_THAT(told, ElementsAre("refused"));
}

TEST_F(DaemonResponderTest, AddressThatIsNoneIsRefused) {
  resolve();
  resolveSignal("Found",
                [](DBusMessage* message) { appendAnswer(message, {.address = "nowhere"}); });
  settle();
  EXPECT_THAT(told, ElementsAre("accepted", "refused"));
}

TEST_F(DaemonResponderTest, AnswerOfOtherArgumentsSaysNothing) {
  resolve();
  resolveSignal("Found", appendItem);
  resolveSignal("Seen", [](DBusMessage* message) { appendAnswer(message, {}); });
  settle();
  EXPECT_THAT(told, ElementsAre("accepted"));
}

TEST_F(DaemonResponderTest, QuestionThatIsDroppedIsFreed) {
  browse();
  settle();
  query.reset();
  until([this] { return lastCall() == "/ServiceBrowserNew Free:"; });
  browseSignal("ItemNew", appendItem);
  settle();
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(DaemonResponderTest, QuestionThatIsDroppedBeforeTheDaemonTakesItIsFreed) {
  query = responder->browse("_pdl-datastream._tcp", "local", *this);
  query.reset();
  until([this] { return lastCall() == "/ServiceBrowserNew Free:"; });
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(DaemonResponderTest, DaemonThatLeavesIsLost) {
  daemon.leaveTheBus();
  until([this] { return !told.empty(); });
  EXPECT_THAT(told, ElementsAre("lost"));
  EXPECT_EQ(responder->state(), DaemonResponder::State::Lost);
}

}  // namespace
