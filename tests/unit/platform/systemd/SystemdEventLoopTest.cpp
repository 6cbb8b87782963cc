// How the loop ends, beyond what every loop promises.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/SystemdRunLoop.h"

namespace {

class SystemdEventLoopTest : public testing::Test {
 protected:
  // What came out of it; empty for nothing.
  std::string run() {
    try {
      loop.run();
      return "";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }

  void later(std::function<void()> call) { runLoop->callLater(std::move(call)); }

  platform::SystemdEventLoop loop;
  std::unique_ptr<platform::RunLoop> runLoop = platform::makeSystemdRunLoop(loop);
};

TEST_F(SystemdEventLoopTest, QuitBeforeItRunsCallsNothing) {
  bool isCalled = false;
  later([&] { isCalled = true; });
  loop.quit();
  EXPECT_EQ(run(), "");
  EXPECT_FALSE(isCalled);
}

TEST_F(SystemdEventLoopTest, NothingIsCalledBetweenQuitAndTheNextRun) {
  std::string calls;
  const auto first = runLoop->startTimer(std::chrono::milliseconds(0), true, [&] {
    calls += 't';
    loop.quit();
  });
  const auto second = runLoop->startTimer(std::chrono::milliseconds(0), true, [&] {
    calls += 't';
    loop.quit();
  });
  EXPECT_EQ(run(), "");
  EXPECT_EQ(calls, "t");
  EXPECT_EQ(run(), "");
  EXPECT_EQ(calls, "tt");
}

TEST_F(SystemdEventLoopTest, ExceptionOfACallEndsTheRunAndComesOutOfIt) {
  bool isCalled = false;
  later([] { throw std::runtime_error("first"); });
  later([&] {
    isCalled = true;
    loop.quit();
  });
  EXPECT_EQ(run(), "first");
  EXPECT_FALSE(isCalled);
  EXPECT_EQ(run(), "");
  EXPECT_TRUE(isCalled);
}

TEST_F(SystemdEventLoopTest, ExceptionAfterQuitComesOutOfTheSameRun) {
  later([&] {
    loop.quit();
    throw std::runtime_error("last");
  });
  EXPECT_EQ(run(), "last");
  loop.quit();
  EXPECT_EQ(run(), "");
}

TEST_F(SystemdEventLoopTest, FirstExceptionOfARunCounts) {
  loop.guard([] { throw std::runtime_error("first"); });
  loop.guard([] { throw std::runtime_error("second"); });
  EXPECT_EQ(run(), "first");
}

}  // namespace
