#include <gtest/gtest.h>

#include "Failures.h"

namespace {

TEST(Failures, NoneIsDone) { EXPECT_EQ(Failures().status(), 0); }

TEST(Failures, OneIsEnoughForAFailure) {
  Failures failures;
  failures.add(false);
  EXPECT_EQ(failures.status(), 1);
}

TEST(Failures, WhatIsNotPermittedHasAStatusOfItsOwn) {
  Failures failures;
  failures.add(true);
  failures.add(true);
  EXPECT_EQ(failures.status(), 4);
}

TEST(Failures, AnotherFailureCountsForMoreThanAMissingRight) {
  Failures failures;
  failures.add(true);
  failures.add(false);
  failures.add(true);
  EXPECT_EQ(failures.status(), 1);
}

}  // namespace
