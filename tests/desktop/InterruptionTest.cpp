// Whether the computer and the desktop let a download end, and what they get back afterwards.
#include <gmock/gmock.h>

#include <csignal>

#include "BusServices.h"
#include "DesktopTest.h"

namespace {

constexpr char kLock[] =
    "lock sleep:shutdown:handle-lid-switch | fwupdate | A printer is getting new firmware. | block";
constexpr char kUnlock[] = "unlock sleep:shutdown:handle-lid-switch";
constexpr char kStayAwake[] = "screensaver fwupdate | A printer is getting new firmware.";
constexpr char kMaySleep[] = "screensaver released 4711";

class InterruptionTest : public DesktopTest {
 protected:
  BusServices mSystem{PrivateBus::Kind::System, {"login1"}};
  BusServices mDesktop{PrivateBus::Kind::Session, {"screensaver", "notifications"}};

  void expectLocked() {
    EXPECT_EQ(mSystem.news(), kLock);
    EXPECT_EQ(mDesktop.news(), kStayAwake);
  }

  void expectUnlocked() {
    EXPECT_EQ(mSystem.news(), kUnlock);
    EXPECT_EQ(mDesktop.news(), kMaySleep);
  }
};

TEST_F(InterruptionTest, NothingInterruptsADownloadUntilItsOutcome) {
  const auto printer = startPrinter("Office");
  startProgram();
  EXPECT_FALSE(mSystem.hasNews());
  startUpdate("Office");
  expectLocked();
  expectUnlocked();
  printer->waitFor("burn");
  EXPECT_FALSE(mDesktop.hasNews());  // the window is the active one
}

// The desktop sees that the program has gone when that has no time to say so.
TEST_F(InterruptionTest, FaultOfTheProgramUnlocks) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "60"});
  startProgram();
  startUpdate("Office");
  expectLocked();
  program().signal(SIGABRT);
  EXPECT_EQ(mSystem.news(), kUnlock);
  EXPECT_EQ(mDesktop.news(), "left without giving back");
}

TEST_F(InterruptionTest, WhoLooksElsewhereIsNotified) {
  const auto printer = startPrinter("<b>R&D", {"--burn-seconds", "5"});
  startProgram();
  startUpdate("<b>R&D");
  expectLocked();
  desktop().lookElsewhere();
  expectUnlocked();
  EXPECT_THAT(mDesktop.news(),
              testing::MatchesRegex(
                  "notification fwupdate [|] 0 [|] fwupdate [|] Printer updated [|] .*&lt;b&gt;"
                  "R&amp;D.* was updated to version 200[.] [|] desktop-entry [|] fwupdate [|] -1"));
}

// How services of the computer and the desktop behave, and what the log says of it.
struct Unwilling {
  std::string how;
  std::string why;
};

class UnwillingServices : public DesktopTest, public testing::WithParamInterface<Unwilling> {
 protected:
  BusServices mSystem{PrivateBus::Kind::System, {"login1=" + GetParam().how}};
  BusServices mDesktop{PrivateBus::Kind::Session,
                       {"screensaver=" + GetParam().how, "notifications=" + GetParam().how}};
};

TEST_P(UnwillingServices, HoldNoDownloadUp) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "7"});
  startProgram();
  startUpdate("Office");
  const std::string entry = "Unable to keep the computer awake during downloads: " + GetParam().why;
  EXPECT_TRUE(waitForLog(entry));
  labelWith("Office (");
  labelWith(" was updated to version 200 at ");
  EXPECT_EQ(timesLogged(entry), 1u);
}

INSTANTIATE_TEST_SUITE_P(That, UnwillingServices,
                         testing::Values(Unwilling{"waits", "no answer"},
                                         Unwilling{"refuses",
                                                   "org.freedesktop.DBus.Error.AccessDenied"}),
                         [](const auto& unwilling) { return unwilling.param.how; });

}  // namespace
