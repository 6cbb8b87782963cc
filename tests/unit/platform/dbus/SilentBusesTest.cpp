#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "BusServices.h"
#include "PrivateBus.h"
#include "platform/dbus/SilentBuses.h"

namespace {

using namespace std::chrono_literals;

class SilentBusesTest : public testing::Test {
 protected:
  static std::string address() { return std::getenv("DBUS_SESSION_BUS_ADDRESS"); }

  PrivateBus bus{PrivateBus::Kind::Session};
  const std::string before = address();
};

TEST_F(SilentBusesTest, ABusThatAnswersIsKept) {
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
  EXPECT_EQ(address(), before);
}

TEST_F(SilentBusesTest, ABusThatIsStoppedIsLeft) {
  bus.signal(SIGSTOP);
  EXPECT_EQ(platform::leaveSilentBuses(1ms), "session bus");
  EXPECT_EQ(address(), "disabled:");
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
}

TEST_F(SilentBusesTest, NobodyIsWaitedForWhereNoBusIs) {
  bus.stop();
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
  EXPECT_EQ(address(), before);
}

// The library would ask other programs where it is.
TEST_F(SilentBusesTest, ABusElsewhereIsNotAsked) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1);
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
  EXPECT_EQ(address(), "autolaunch:");
}

// The one of assistive technology is a bus of its own, whose address the session's one tells.
class AccessibilityBusTest : public SilentBusesTest {
 protected:
  void announce(const std::string& address) {
    services.emplace(PrivateBus::Kind::Session, Services{"accessibility=" + address});
  }

  using Services = std::vector<std::string>;
  PrivateBus accessibility{PrivateBus::Kind::System};
  const std::string accessibilityAddress = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  std::optional<BusServices> services;
};

TEST_F(AccessibilityBusTest, BusesThatAnswerAreKept) {
  announce(accessibilityAddress);
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
  EXPECT_EQ(address(), before);
}

TEST_F(AccessibilityBusTest, ASessionIsLeftWhereItIsStopped) {
  announce(accessibilityAddress);
  accessibility.signal(SIGSTOP);
  EXPECT_EQ(platform::leaveSilentBuses(5s), "accessibility bus");
  EXPECT_EQ(address(), "disabled:");
}

TEST_F(AccessibilityBusTest, NobodyIsWaitedForWhereItIsGone) {
  announce(accessibilityAddress);
  accessibility.stop();
  EXPECT_EQ(platform::leaveSilentBuses(1min), "");
  EXPECT_EQ(address(), before);
}

TEST_F(AccessibilityBusTest, ASessionIsKeptWhereNobodyTellsItsAddress) {
  announce("waits");
  accessibility.signal(SIGSTOP);
  EXPECT_EQ(platform::leaveSilentBuses(2s), "");
  EXPECT_EQ(address(), before);
}

}  // namespace
