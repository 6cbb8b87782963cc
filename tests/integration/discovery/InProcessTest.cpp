// Hosts without a daemon.
#include <sys/types.h>
#include <unistd.h>

#include "Crowd.h"
#include "DiscoveryTest.h"
#include "OnlyStack.h"
#include "platform/avahi/InProcessResponder.h"

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class InProcessTest : public DiscoveryTest {};

// The program runs as a user without any rights, for the lifetime of this object.
class Unprivileged {
 public:
  Unprivileged() : mHolds(seteuid(kNobody) == 0) {}
  ~Unprivileged() { EXPECT_EQ(seteuid(0), 0); }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;

  bool holds() const { return mHolds; }

 private:
  static constexpr uid_t kNobody = 65534;
  bool mHolds;
};

// What a search is told.
class Told : public platform::BrowseListener {
 public:
  void appeared(const platform::ServiceName& service, platform::Place) override {
    names.push_back(service.name);
  }
  void disappeared(const platform::ServiceName& service, platform::Place) override {
    gone.push_back(service.name);
  }
  void allForNow() override {}
  void browsingFailed() override { ADD_FAILURE(); }

  std::vector<std::string> names;
  std::vector<std::string> gone;
};

TEST_F(InProcessTest, PrintersAreFoundWithoutSystemBus) {
  privatenetwork::stopBus();
  auto printer = announce({"Printer", "usb_MFG=Veltra"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_EQ(recorder->txt, (Bytes{14, 'u', 's', 'b', '_', 'M', 'F', 'G', '=',  //
                                  'V', 'e', 'l', 't', 'r', 'a'}));
  printer->withdraw();
  ASSERT_TRUE(waitFor("removed Printer"));
  EXPECT_THAT(told(), ElementsAre("added Printer", "resolved Printer", "removed Printer"));
}

TEST_F(InProcessTest, SearchThatIsDroppedIsToldNothing) {
  const platform::AvahiPollAdapter poll(runLoop);
  Told dropped;
  Told kept;
  const auto responder = platform::startInProcessResponder(poll);
  auto first = responder->browse("_pdl-datastream._tcp", "local", dropped);
  const auto second = responder->browse("_pdl-datastream._tcp", "local", kept);
  first.reset();
  auto printer = announce({"Printer"});
  ASSERT_TRUE(runLoop.runUntil([&] { return !kept.names.empty(); }, std::chrono::seconds(20)));
  printer->withdraw();
  ASSERT_TRUE(runLoop.runUntil([&] { return !kept.gone.empty(); }, std::chrono::seconds(20)));
  EXPECT_THAT(dropped.names, IsEmpty());
  EXPECT_THAT(dropped.gone, IsEmpty());
}

TEST_F(InProcessTest, PrintersAreFoundWithoutSpecialRights) {
  auto printer = announce({"Printer"});
  const Unprivileged user;
  if (!user.holds()) GTEST_SKIP() << "this user namespace has no other user";
  search();
  EXPECT_TRUE(waitFor("resolved Printer"));
}

TEST_F(InProcessTest, DaemonMayComeToAnUnprivilegedProgram) {
  auto printer = announce({"Printer"});
  std::optional<Unprivileged> user(std::in_place);
  if (!user->holds()) GTEST_SKIP() << "this user namespace has no other user";
  find("Printer");
  user.reset();
  startDaemon();
  user.emplace();
  runLoop.runFor(milliseconds(6000));
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);
}

TEST_F(InProcessTest, ResolveIsRenewedUntilThePrinterAnswers) {
  Crowd printer({"--count", "1", "late 1 8"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer 0001"));
  EXPECT_THAT(told(), ElementsAre("added Printer 0001", "resolved Printer 0001"));
}

TEST_F(InProcessTest, StackThatCannotStartIsAnErrorAndTheDaemonIsWaitedFor) {
  std::optional<OnlyStack> alone(std::in_place);
  ASSERT_TRUE(alone->holds());
  auto printer = announce({"Printer"});
  testing::internal::CaptureStderr();
  search();
  runLoop.runFor(milliseconds(100));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(told(), ElementsAre("error"));
  alone.reset();
  startDaemon();
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_THAT(told(), ElementsAre("error", "added Printer", "resolved Printer"));
}

TEST_F(InProcessTest, BusAndDaemonThatComeLaterAreFoundWhenNothingCouldServe) {
  privatenetwork::stopBus();
  std::optional<OnlyStack> alone(std::in_place);
  ASSERT_TRUE(alone->holds());
  auto printer = announce({"Printer"});
  search();
  runLoop.runFor(milliseconds(5500));
  EXPECT_THAT(told(), ElementsAre("error"));  // said once, though it is tried again
  alone.reset();
  privatenetwork::startBus();
  startDaemon();
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_THAT(told(), ElementsAre("error", "added Printer", "resolved Printer"));
}

TEST_F(InProcessTest, BusAndDaemonThatComeLaterTakeOver) {
  privatenetwork::stopBus();
  auto printer = announce({"Printer"});
  find("Printer");
  privatenetwork::startBus();
  startDaemon();
  runLoop.runFor(milliseconds(10000));
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(runLoop.timers(), 0u);  // the stack in this process would have some
}

// The daemon of the other machine would know the name of ours.
TEST_F(InProcessTest, NothingIsPublished) {
  privatenetwork::startPeersDaemon();
  char host[256] = {};
  ASSERT_EQ(gethostname(host, sizeof host - 1), 0);
  const std::string ask =
      "test -n \"$(timeout 3 avahi-resolve -4n '" + std::string(host) + ".local' 2>/dev/null)\"";
  search();
  runLoop.runFor(milliseconds(1500));
  EXPECT_NE(privatenetwork::runOnPeer({"sh", "-c", ask}), 0);
  privatenetwork::startDaemon({"host-name=" + std::string(host)});
  EXPECT_EQ(privatenetwork::runOnPeer({"sh", "-c", ask}), 0);
}

}  // namespace
