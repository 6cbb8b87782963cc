#include <gtest/gtest.h>

#include "FakeRunLoop.h"
#include "SearchTime.h"

namespace {

using namespace std::chrono_literals;

class SearchTimeTest : public testing::Test {
 protected:
  bool isOverAfter(std::chrono::milliseconds time) {
    runLoop.advance(time);
    return isOver;
  }

  FakeRunLoop runLoop;
  bool isOver = false;
  SearchTime search{runLoop, 3s, [this] { isOver = true; }};
};

TEST_F(SearchTimeTest, EndsWhenTheTimeIsOver) {
  search.setComplete(false);
  EXPECT_FALSE(isOverAfter(2999ms));
  EXPECT_TRUE(isOverAfter(1ms));
}

TEST_F(SearchTimeTest, GoesOnForASecondWhenAllAreThere) {
  search.setComplete(true);
  EXPECT_FALSE(isOverAfter(999ms));
  EXPECT_TRUE(isOverAfter(1ms));
}

TEST_F(SearchTimeTest, OtherArrivalsDoNotDragThatSecondOut) {
  search.setComplete(true);
  EXPECT_FALSE(isOverAfter(500ms));
  search.setComplete(true);
  EXPECT_TRUE(isOverAfter(500ms));
}

TEST_F(SearchTimeTest, LooksOnForOneThatLeavesWhenItIsFound) {
  search.setComplete(true);
  EXPECT_FALSE(isOverAfter(500ms));
  search.setComplete(false);
  EXPECT_FALSE(isOverAfter(2499ms));
  EXPECT_TRUE(isOverAfter(1ms));
}

TEST_F(SearchTimeTest, GoesOnForASecondWhenItHasReturned) {
  search.setComplete(true);
  EXPECT_FALSE(isOverAfter(900ms));
  search.setComplete(false);
  EXPECT_FALSE(isOverAfter(200ms));
  search.setComplete(true);
  EXPECT_FALSE(isOverAfter(999ms));
  EXPECT_TRUE(isOverAfter(1ms));
}

TEST_F(SearchTimeTest, GoesOnPastAnArrivalOfAllPrinters) {
  EXPECT_FALSE(isOverAfter(2s));
  search.extend();
  EXPECT_FALSE(isOverAfter(2s));
  EXPECT_TRUE(isOverAfter(60s));
}

}  // namespace
