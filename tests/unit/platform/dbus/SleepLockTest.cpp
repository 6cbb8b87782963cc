#include <csignal>

#include "BusTest.h"
#include "platform/dbus/PowerLock.h"

namespace {

using platform::DownloadOutcome;
using platform::Text;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr char kLockedAll[] =
    "lock sleep:shutdown:handle-lid-switch | fwupdate | A printer gets firmware. | block";
constexpr char kUnlockedAll[] = "unlock sleep:shutdown:handle-lid-switch";

class SleepLockTest : public BusTest {
 protected:
  void offerLogin(const std::string& behaviour = "") {
    offer(PrivateBus::Kind::System, {"login1" + behaviour});
  }

  void begin() { lock->downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5")); }
  void end() { lock->downloadEnded(DownloadOutcome::Failed); }

  // The services tell of the lock before the bus passes it on.
  void waitForLock() {
    EXPECT_EQ(news(), kLockedAll);
    ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.timers() == 0; }));
  }

  void waitForReport() {
    ASSERT_TRUE(runLoop.runUntil([&] { return !reports.empty(); }));
  }

  Lines reports;
  std::unique_ptr<platform::DownloadObserver> lock =
      platform::makePowerLock(runLoop, {"fwupdate", "A printer gets firmware."},
                              [this](const std::string& entry) { reports.push_back(entry); });
};

TEST_F(SleepLockTest, ADownloadIsLockedFromItsBeginningToItsEnd) {
  offerLogin();
  begin();
  EXPECT_EQ(news(), kLockedAll);
  lock->downloadEnded(DownloadOutcome::Succeeded);
  EXPECT_EQ(news(), kUnlockedAll);
  EXPECT_THAT(reports, IsEmpty());
}

TEST_F(SleepLockTest, EachDownloadHasALockOfItsOwn) {
  offerLogin();
  for (int i = 0; i < 3; ++i) {
    begin();
    EXPECT_EQ(news(), kLockedAll);
    end();
    EXPECT_EQ(news(), kUnlockedAll);
  }
}

TEST_F(SleepLockTest, ADownloadThatFailsAtOnceAsksNobody) {
  offerLogin();
  begin();
  end();
  runLoop.runAllLater();
  begin();
  EXPECT_EQ(news(), kLockedAll);
  end();
  EXPECT_EQ(news(), kUnlockedAll);
  EXPECT_FALSE(services->hasNews());
}

TEST_F(SleepLockTest, TheEndOfTheProgramUnlocks) {
  offerLogin();
  begin();
  EXPECT_EQ(news(), kLockedAll);
  lock.reset();
  EXPECT_EQ(news(), kUnlockedAll);
}

TEST_F(SleepLockTest, ProcessesThatAreStartedMeanwhileDoNotHoldIt) {
  offerLogin();
  begin();
  waitForLock();
  const PeerProcess other("/bin/sleep", {"3600"}, PeerProcess::Machine::Here);
  end();
  EXPECT_EQ(news(), kUnlockedAll);
}

TEST_F(SleepLockTest, AnAnswerAfterTheEndUnlocksAtOnce) {
  offerLogin("=waits");
  begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  end();
  services->answer();
  EXPECT_EQ(news(), kLockedAll);
  EXPECT_EQ(news(), kUnlockedAll);
  EXPECT_THAT(reports, IsEmpty());
}

TEST_F(SleepLockTest, AnAnswerThatComesLateIsTaken) {
  offerLogin("=waits");
  begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  runLoop.advance(seconds(60));
  services->answer();
  EXPECT_EQ(news(), kLockedAll);
  end();
  EXPECT_EQ(news(), kUnlockedAll);
}

TEST_F(SleepLockTest, NoAnswerIsReported) {
  offerLogin("=waits");
  begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  runLoop.advance(std::chrono::milliseconds(4999));
  EXPECT_THAT(reports, IsEmpty());
  runLoop.advance(std::chrono::milliseconds(1));
  EXPECT_THAT(reports,
              ElementsAre("Unable to keep the computer awake during downloads: no answer"));
}

TEST_F(SleepLockTest, WhoMayNotLockTheLidLocksTheRest) {
  offerLogin("=refuses:handle-lid-switch");
  begin();
  EXPECT_EQ(news(),
            "refused sleep:shutdown:handle-lid-switch | fwupdate | A printer gets firmware. | "
            "block");
  EXPECT_EQ(news(), "lock sleep:shutdown | fwupdate | A printer gets firmware. | block");
  waitForReport();
  end();
  EXPECT_EQ(news(), "unlock sleep:shutdown");
  EXPECT_THAT(reports, ElementsAre("Unable to block more than sleep:shutdown during downloads: "
                                   "org.freedesktop.DBus.Error.AccessDenied"));
}

TEST_F(SleepLockTest, WhoMayNotLockShutdownLocksSleepAlone) {
  offerLogin("=refuses:shutdown");
  begin();
  news();
  news();
  EXPECT_EQ(news(), "lock sleep | fwupdate | A printer gets firmware. | block");
  waitForReport();
  end();
  EXPECT_EQ(news(), "unlock sleep");
  EXPECT_THAT(reports, ElementsAre("Unable to block more than sleep during downloads: "
                                   "org.freedesktop.DBus.Error.AccessDenied"));
}

TEST_F(SleepLockTest, WhoMayLockNothingIsToldOnce) {
  offerLogin("=refuses");
  for (int i = 0; i < 2; ++i) {
    begin();
    EXPECT_EQ(news().substr(0, 33), "refused sleep:shutdown:handle-lid");
    EXPECT_EQ(news().substr(0, 24), "refused sleep:shutdown |");
    EXPECT_EQ(news().substr(0, 15), "refused sleep |");
    waitForReport();
    end();
  }
  EXPECT_THAT(reports, ElementsAre("Unable to keep the computer awake during downloads: "
                                   "org.freedesktop.DBus.Error.AccessDenied"));
}

TEST_F(SleepLockTest, ALockThatComesWithAnErrorIsNone) {
  offerLogin("=fails");
  begin();
  Lines told;
  while (told.size() < 6 && !HasFailure()) {
    told.push_back(news());
    EXPECT_NE(told.back(), "no news");
  }
  EXPECT_THAT(
      told, UnorderedElementsAre(
                kLockedAll, kUnlockedAll,
                "lock sleep:shutdown | fwupdate | A printer gets firmware. | block",
                "unlock sleep:shutdown", "lock sleep | fwupdate | A printer gets firmware. | block",
                "unlock sleep"));
  waitForReport();
  end();
  EXPECT_THAT(reports, ElementsAre("Unable to keep the computer awake during downloads: "
                                   "org.freedesktop.DBus.Error.Failed"));
}

TEST_F(SleepLockTest, AnAnswerWithoutALockIsNotUnderstood) {
  offerLogin("=confused");
  begin();
  EXPECT_EQ(news().substr(0, 34), "confused sleep:shutdown:handle-lid");
  EXPECT_EQ(news().substr(0, 25), "confused sleep:shutdown |");
  EXPECT_EQ(news().substr(0, 16), "confused sleep |");
  waitForReport();
  EXPECT_EQ(runLoop.timers(), 0u);
  end();
  EXPECT_THAT(reports, ElementsAre("Unable to keep the computer awake during downloads: "
                                   "not understood"));
}

TEST_F(SleepLockTest, WithoutLogindThatIsReportedOnce) {
  begin();
  waitForReport();
  end();
  begin();
  runLoop.runUntil([&] { return runLoop.timers() == 0; });
  end();
  EXPECT_THAT(reports, ElementsAre("Unable to keep the computer awake during downloads: "
                                   "org.freedesktop.DBus.Error.ServiceUnknown"));
}

TEST_F(SleepLockTest, WithoutBusThatIsReportedOnceFromTheRunLoop) {
  systemBus.stop();
  begin();
  EXPECT_THAT(reports, IsEmpty());
  runLoop.runAllLater();
  end();
  begin();
  runLoop.runAllLater();
  end();
  EXPECT_THAT(reports,
              ElementsAre("Unable to keep the computer awake during downloads: no system bus"));
}

TEST_F(SleepLockTest, AStoppedBusHoldsNothingUpAndIsUsedWhenItGoesOn) {
  offerLogin();
  systemBus.signal(SIGSTOP);
  sessionBus.signal(SIGSTOP);
  begin();
  runLoop.runAllLater();
  end();
  begin();
  runLoop.runAllLater();
  systemBus.signal(SIGCONT);
  EXPECT_EQ(news(), kLockedAll);
  end();
  EXPECT_EQ(news(), kUnlockedAll);
}

TEST_F(SleepLockTest, ABusThatGoesBeforeTheAnswerIsReported) {
  offerLogin("=waits");
  begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  systemBus.stop();
  waitForReport();
  end();
  EXPECT_THAT(reports, ElementsAre("Unable to keep the computer awake during downloads: "
                                   "the system bus has gone"));
}

TEST_F(SleepLockTest, TheLockOutlivesItsBus) {
  offerLogin();
  begin();
  waitForLock();
  const std::size_t watches = runLoop.enabledWatches();
  systemBus.stop();
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.enabledWatches() < watches; }));
  runLoop.runAllLater();
  EXPECT_FALSE(services->hasNews());
  end();
  EXPECT_EQ(news(), kUnlockedAll);
  EXPECT_THAT(reports, IsEmpty());
}

TEST_F(SleepLockTest, TheNextDownloadFindsTheBusThatHasReturned) {
  offerLogin();
  begin();
  EXPECT_EQ(news(), kLockedAll);
  systemBus.stop();
  end();
  EXPECT_EQ(news(), kUnlockedAll);
  systemBus.start();
  offerLogin();
  begin();
  EXPECT_EQ(news(), kLockedAll);
}

}  // namespace
