// The lock of a download with systemd's own logind, which no other machine of the tests has.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "PeerProcess.h"
#include "PollRunLoop.h"
#include "ShellCommand.h"
#include "platform/dbus/PowerLock.h"

namespace {

using std::chrono::seconds;

class LogindTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(runLoop.runUntil([&] { return listing().find("inhibitors") != std::string::npos; },
                                 seconds(60)))
        << listing();
  }

  static std::string listing() {
    const Outcome outcome = runInShell("systemd-inhibit --list --no-pager");
    return outcome.output + outcome.errors;
  }

  static bool isLocked() {
    const std::string list = listing();
    return list.find("fwupdate") != std::string::npos &&
           list.find("shutdown:sleep:handle-lid-switch") != std::string::npos &&
           list.find("A printer gets firmware.") != std::string::npos &&
           list.find("block") != std::string::npos;
  }

  static bool isUnlocked() { return listing().find("fwupdate") == std::string::npos; }

  std::unique_ptr<platform::DownloadObserver> makeLock() {
    return platform::makePowerLock(runLoop, {"fwupdate", "A printer gets firmware."},
                                   [this](const std::string& entry) { reported += entry; });
  }

  PeerProcess logind{"/bin/sh",
                     {"-c",
                      "mkdir -p /run/systemd/seats /run/systemd/sessions /run/systemd/users "
                      "/run/systemd/inhibit && exec /lib/systemd/systemd-logind"},
                     PeerProcess::Machine::Here};
  PollRunLoop runLoop;
  std::string reported;
};

TEST_F(LogindTest, ListsTheLockFromTheBeginningOfADownloadToItsEnd) {
  const auto lock = makeLock();
  lock->downloadBegan(platform::Text(), platform::Text());
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.timers() == 1; }, seconds(60)));
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.timers() == 0; }, seconds(60)));  // answered
  EXPECT_TRUE(isLocked()) << listing();
  lock->downloadEnded(platform::DownloadOutcome::Succeeded);
  EXPECT_TRUE(runLoop.runUntil(isUnlocked, seconds(60))) << listing();
  EXPECT_EQ(reported, "");
}

TEST_F(LogindTest, ForgetsTheLockOfAProcessThatIsKilled) {
  const pid_t child = fork();
  if (child == 0) {
    PollRunLoop loop;
    const auto lock =
        platform::makePowerLock(loop, {"fwupdate", "A printer gets firmware."}, nullptr);
    lock->downloadBegan(platform::Text(), platform::Text());
    loop.runFor(std::chrono::hours(1));
    _exit(0);
  }
  EXPECT_TRUE(runLoop.runUntil(isLocked, seconds(60))) << listing();
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(runLoop.runUntil(isUnlocked, seconds(60))) << listing();
}

}  // namespace
