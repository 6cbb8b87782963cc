#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

#include "PrivateBus.h"
#include "platform/dbus/SilentSessionBus.h"

namespace {

using namespace std::chrono_literals;

class SilentSessionBusTest : public testing::Test {
 protected:
  static std::string address() { return std::getenv("DBUS_SESSION_BUS_ADDRESS"); }

  PrivateBus bus{PrivateBus::Kind::Session};
  const std::string before = address();
};

TEST_F(SilentSessionBusTest, ABusThatAnswersIsKept) {
  EXPECT_FALSE(platform::leaveSilentSessionBus(1min));
  EXPECT_EQ(address(), before);
}

TEST_F(SilentSessionBusTest, ABusThatIsStoppedIsLeft) {
  bus.signal(SIGSTOP);
  EXPECT_TRUE(platform::leaveSilentSessionBus(1ms));
  EXPECT_EQ(address(), "disabled:");
  EXPECT_FALSE(platform::leaveSilentSessionBus(1min));
}

TEST_F(SilentSessionBusTest, NobodyIsWaitedForWhereNoBusIs) {
  bus.stop();
  EXPECT_FALSE(platform::leaveSilentSessionBus(1min));
  EXPECT_EQ(address(), before);
}

// The library would ask other programs where it is.
TEST_F(SilentSessionBusTest, ABusElsewhereIsNotAsked) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1);
  EXPECT_FALSE(platform::leaveSilentSessionBus(1min));
  EXPECT_EQ(address(), "autolaunch:");
}

}  // namespace
