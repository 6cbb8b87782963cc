#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "DownloadLimit.h"
#include "FakeRunLoop.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class DownloadLimitTest : public testing::Test {
 protected:
  void tell(const char* event) { limit.told(nlohmann::ordered_json::parse(event)); }

  std::string cause() const { return limit.cause().cause; }

  FakeRunLoop runLoop;
  int over = 0;
  DownloadLimit limit{runLoop, seconds(10), [this] { ++over; }};
};

TEST_F(DownloadLimitTest, IsOverAtItsTimeAndOnce) {
  runLoop.advance(milliseconds(9999));
  EXPECT_EQ(over, 0);
  EXPECT_FALSE(limit.isOver());
  runLoop.advance(milliseconds(1));
  EXPECT_EQ(over, 1);
  EXPECT_TRUE(limit.isOver());
  runLoop.advance(seconds(3600));
  EXPECT_EQ(over, 1);
}

TEST_F(DownloadLimitTest, APrinterThatWritesItsMemoryHasTheTimeForThat) {
  tell(R"({"event":"phase","phase":"burning-firmware","bound_ms":3600000})");
  runLoop.advance(seconds(10));
  EXPECT_EQ(over, 0);
  EXPECT_FALSE(limit.isOver());
}

TEST_F(DownloadLimitTest, OneThatHasNoTimeForThatHasNoMore) {
  tell(R"({"event":"phase","phase":"burning-firmware"})");
  runLoop.advance(seconds(10));
  EXPECT_EQ(over, 1);
}

TEST_F(DownloadLimitTest, SaysInWhichPhaseTheTimeWasOver) {
  EXPECT_EQ(cause(), "The printer could not be reached within %1.");
  tell(R"({"event":"phase","phase":"connecting","bound_ms":0})");
  EXPECT_EQ(cause(), "The printer could not be reached within %1.");
  EXPECT_EQ(limit.cause().subject, "10 s");
  EXPECT_STREQ(
      limit.cause().nextStep,
      "Check that the printer is switched on, connected and not printing, then try again.");
  tell(R"({"event":"phase","phase":"asking-for-version","bound_ms":0})");
  EXPECT_EQ(cause(), "The printer did not answer within %1.");
  tell(R"({"event":"phase","phase":"sending-firmware","bound_ms":0})");
  tell(R"({"event":"progress","bytes":1,"total":2})");
  EXPECT_EQ(cause(), "The printer did not take all of the firmware within %1.");
  EXPECT_STREQ(limit.cause().nextStep, "Switch the printer off and on, then try again.");
  tell(R"({"event":"phase","phase":"burning-firmware","bound_ms":0})");
  EXPECT_EQ(cause(),
            "The printer did not confirm the firmware in the time that it may take to write it.");
}

}  // namespace
