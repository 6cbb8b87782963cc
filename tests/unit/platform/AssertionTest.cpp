#include <gtest/gtest.h>

#include <csignal>

#include "AssertionLine.h"
#include "platform/Assertion.h"

namespace {

TEST(AssertionDeathTest, PrintsItsPlaceAndAborts) {
  EXPECT_EXIT(platform::assertAt(false, "len > 0", "operator()", "Host/Common/osx/Log", 60),
              testing::KilledBySignal(SIGABRT),
              assertionLine("len > 0", "operator()", "Host/Common/osx/Log", 60));
}

TEST(AssertionDeathTest, PrintsPercentSignsAsTheyAre) {
  EXPECT_DEATH(platform::assertionFailed("a % b", "%s", "%n", 0),
               testing::Eq("Assertion failed: (a % b), function %s, file %n, line 0.\n"));
}

TEST(Assertion, DoesNothingWhenItHolds) {
  platform::assertAt(true, "len > 0", "operator()", "Host/Common/osx/Log", 60);
}

}  // namespace
