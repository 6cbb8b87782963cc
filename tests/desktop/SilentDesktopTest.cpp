// Buses that are stopped, services that answer late, never or with an error, and a /proc that
// cannot be read: the window answers all the time, and the printer has its firmware at the end.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <optional>
#include <thread>

#include "BusServices.h"
#include "DesktopTest.h"
#include "PrivateNetwork.h"

namespace {

using namespace std::chrono_literals;
using Services = std::vector<std::string>;

class SilentDesktop : public DesktopTest {
 protected:
  void offer(const Services& ofTheSystem, const Services& ofTheDesktop) {
    mSystem.emplace(PrivateBus::Kind::System, ofTheSystem);
    mDesktop.emplace(PrivateBus::Kind::Session, ofTheDesktop);
  }

  void startWithPrinter(const std::string& secondsOfBurning = "2") {
    mPrinter = startPrinter("Office", {"--burn-seconds", secondsOfBurning});
    startProgram();
    cell("Office");
  }

  bool hasEnded() const {
    return timesLogged("Firmware download is complete, the printer will restart.") > 0;
  }

  // The window answers from now on to the end of the download, which succeeds.
  void expectUpdate() {
    EXPECT_GE(answersUntil([&] { return hasEnded(); }), 10);
    labelWith(" was updated to version 200 at ");
    expectBurn();
  }

  void expectBurn() {
    mPrinter->waitFor("burn");
    EXPECT_EQ(burnedSha256(*mPrinter), DEMO_BRAND_SHA256);
  }

  std::unique_ptr<VirtualPrinterProcess> mPrinter;
  std::optional<BusServices> mSystem;
  std::optional<BusServices> mDesktop;
};

class StoppedBus : public SilentDesktop, public testing::WithParamInterface<PrivateBus::Kind> {
 protected:
  ~StoppedBus() override { signal("CONT"); }

  void signal(const std::string& name) {
    if (GetParam() == PrivateBus::Kind::System) {
      privatenetwork::signalBus(name);
    } else {
      desktop().signalSessionBus(name == "STOP" ? SIGSTOP : SIGCONT);
    }
  }
};

TEST_P(StoppedBus, InTheMiddleOfADownload) {
  offer({"login1"}, {"screensaver", "notifications"});
  startWithPrinter();
  startUpdate("Office");
  mSystem->news();
  mDesktop->news();
  signal("STOP");
  expectUpdate();
  signal("CONT");
  EXPECT_EQ(mSystem->news(), "unlock sleep:shutdown:handle-lid-switch");
  EXPECT_EQ(mDesktop->news(), "screensaver released 4711");
}

TEST_P(StoppedBus, BeforeADownload) {
  offer({"login1"}, {"screensaver", "notifications"});
  startWithPrinter();
  signal("STOP");
  startUpdate("Office");
  expectUpdate();
}

INSTANTIATE_TEST_SUITE_P(Of, StoppedBus,
                         testing::Values(PrivateBus::Kind::System, PrivateBus::Kind::Session),
                         [](const auto& bus) {
                           return bus.param == PrivateBus::Kind::System ? "System" : "Session";
                         });

// Nobody can look at the window by assistive technology then.
class SilentFromTheStart : public SilentDesktop {
 protected:
  void updateUnseen(const std::string& bus) {
    mPrinter = startPrinter("Office");
    startProgramUnseen();
    EXPECT_EQ(timesLogged("Unable to use the " + bus + ": no answer"), 1u);
    EXPECT_TRUE(waitForLog("Adding printer with ID=1"));
    press("Home");
    press("Return");
    waitForKeyboard("Confirm the Download");
    std::this_thread::sleep_for(1s);  // the question takes nothing before
    press("alt+d");
    expectBurn();
  }
};

TEST_F(SilentFromTheStart, SessionBus) {
  desktop().signalSessionBus(SIGSTOP);
  updateUnseen("session bus");
  desktop().signalSessionBus(SIGCONT);
}

TEST_F(SilentFromTheStart, AccessibilityBus) {
  desktop().signalAccessibilityBus(SIGSTOP);
  updateUnseen("accessibility bus");
  desktop().signalAccessibilityBus(SIGCONT);
}

TEST_F(SilentDesktop, SystemBusIsStoppedBeforeTheStart) {
  mPrinter = startPrinter("Office", {"--burn-seconds", "2"});
  privatenetwork::signalBus("STOP");
  startProgram();
  startUpdate("Office");
  expectUpdate();
}

TEST_F(SilentDesktop, ServicesAnswerWhenNothingIsWantedAnyMore) {
  offer({"login1=waits"}, {"screensaver=waits"});
  startWithPrinter();
  startUpdate("Office");
  EXPECT_EQ(mSystem->news(), "waiting Inhibit");
  EXPECT_EQ(mDesktop->news(), "waiting Inhibit");
  expectUpdate();
  mSystem->answer();
  mDesktop->answer();
  mSystem->news();
  EXPECT_EQ(mSystem->news(), "unlock sleep:shutdown:handle-lid-switch");
  mDesktop->news();
  EXPECT_EQ(mDesktop->news(), "screensaver released 4711");
}

TEST_F(SilentDesktop, ServicesAnswerWithErrors) {
  offer({"login1=refuses"}, {"portal=refuses", "screensaver=refuses", "notifications=refuses"});
  startWithPrinter();
  startUpdate("Office");
  expectUpdate();
  EXPECT_EQ(timesLogged("Unable to keep the computer awake during downloads: "
                        "org.freedesktop.DBus.Error.AccessDenied"),
            1u);
}

TEST_F(SilentDesktop, NotificationDaemonHangs) {
  offer({"login1"}, {"notifications=waits"});
  startWithPrinter("5");
  startUpdate("Office");
  desktop().lookElsewhere();
  expectUpdate();
  EXPECT_EQ(mDesktop->news(), "waiting GetCapabilities");
  int questions = 0;
  answersUntil([&] { return ++questions == 20; });
  program().signal(SIGTERM);
  EXPECT_EQ(program().waitForExit(20s), 0) << program().output();
}

TEST_F(SilentDesktop, ProcessesCannotBeRead) {
  mPrinter = startPrinter("Office", {"--burn-seconds", "2"});
  const auto executable = copyInstallation();
  const auto withoutProcesses = output() / "program";
  std::ofstream(withoutProcesses) << "#!/bin/sh\n"
                                     "exec unshare --mount sh -c '\n"
                                     "  mount -t tmpfs none /proc && exec \"$0\" \"$@\"' "
                                  << executable << " \"$@\"\n";
  std::filesystem::permissions(withoutProcesses, std::filesystem::perms::owner_all);
  startProgramAt(withoutProcesses);
  startUpdate("Office");
  expectUpdate();
}

}  // namespace
