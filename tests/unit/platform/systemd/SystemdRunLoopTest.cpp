// What the run loop makes of its host's event queue, beyond what every loop promises.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/SystemdRunLoop.h"

namespace {

using std::chrono::milliseconds;

class SystemdRunLoopTest : public testing::Test {
 protected:
  SystemdRunLoopTest() { EXPECT_EQ(pipe(mPipe.data()), 0); }
  ~SystemdRunLoopTest() override {
    for (const int end : mPipe) close(end);
  }

  std::array<int, 2> mPipe{-1, -1};
  platform::SystemdEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeSystemdRunLoop(mLoop);
};

TEST_F(SystemdRunLoopTest, WatchThatHasEndedKeepsNothingOpen) {
  mRunLoop->watch(mPipe[1], platform::RunLoop::Interest::Writable, [] {}).reset();
  close(std::exchange(mPipe[1], -1));
  char byte = 0;
  EXPECT_EQ(read(mPipe[0], &byte, 1), 0);
}

TEST_F(SystemdRunLoopTest, WatchThatIsEnabledAgainCallsMoreThanOnce) {
  int calls = 0;
  const auto watch = mRunLoop->watch(mPipe[1], platform::RunLoop::Interest::Writable, [&] {
    if (++calls == 3) mLoop.quit();
  });
  watch->setEnabled(false);
  watch->setEnabled(true);
  const auto end = mRunLoop->startTimer(milliseconds(10000), false, [&] { mLoop.quit(); });
  mLoop.run();
  EXPECT_EQ(calls, 3);
}

TEST_F(SystemdRunLoopTest, TimeThatIsOverAtItsStartIsDueAtOnce) {
  bool isDue = false;
  const auto timer = mRunLoop->startTimer(milliseconds(-5), false, [&] {
    isDue = true;
    mLoop.quit();
  });
  const auto end = mRunLoop->startTimer(milliseconds(10000), false, [&] { mLoop.quit(); });
  mLoop.run();
  EXPECT_TRUE(isDue);
}

TEST_F(SystemdRunLoopTest, RepeatingTimerComesAgainAfterItsDelay) {
  std::string calls;
  std::unique_ptr<platform::RunLoop::Timer> once;
  const auto repeating = mRunLoop->startTimer(milliseconds(20), true, [&] {
    calls += 'r';
    if (once) return;
    once = mRunLoop->startTimer(milliseconds(30), false, [&] {
      calls += 'o';
      mLoop.quit();
    });
  });
  mLoop.run();
  EXPECT_EQ(calls, "rro");
}

TEST_F(SystemdRunLoopTest, WaitDoesNotGiveUpBeforeItsTime) {
  for (int i = 0; i < 10; ++i) {
    const auto deadline = std::chrono::steady_clock::now() + milliseconds(1);
    EXPECT_FALSE(
        mRunLoop->waitUntilReady(mPipe[0], platform::RunLoop::Interest::Readable, deadline));
    EXPECT_GE(std::chrono::steady_clock::now(), deadline);
  }
}

}  // namespace
