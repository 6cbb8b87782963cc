// What the crowd is told to do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "orders.h"

namespace {

using crowd::Responder;
using crowd::Time;

class OrdersTest : public testing::Test {
 protected:
  void obey(const std::string& order) { crowd::obey(responder, order, Time(1000)); }

  Responder responder{{5, 2, true, false, {0}}};
};

TEST_F(OrdersTest, OrderIsForAllOfItsRange) {
  obey("silent 2-4");
  EXPECT_FALSE(responder.member(1).silent);
  EXPECT_TRUE(responder.member(2).silent);
  EXPECT_TRUE(responder.member(4).silent);
  EXPECT_FALSE(responder.member(5).silent);
}

TEST_F(OrdersTest, OrderMayBeForOne) {
  obey("vanish 5");
  EXPECT_TRUE(responder.member(4).present);
  EXPECT_FALSE(responder.member(5).present);
}

TEST_F(OrdersTest, EachWordDoesWhatItSays) {
  for (const char* order :
       {"elsewhere 1", "moving 1", "long-text 1", "two 1", "no-text 1", "late 1 20"}) {
    obey(order);
  }
  EXPECT_TRUE(responder.member(1).namesAnotherHost);
  EXPECT_TRUE(responder.member(1).movesWhenAsked);
  EXPECT_TRUE(responder.member(1).hasLongText);
  EXPECT_TRUE(responder.member(1).isTwo);
  EXPECT_FALSE(responder.member(1).hasText);
  EXPECT_EQ(responder.member(1).late, std::chrono::seconds(20));
}

TEST_F(OrdersTest, MembersTakeTurns) {
  obey("withdraw 1-3");
  EXPECT_EQ(responder.takeDue(Time(1000)).size(), 1u);
  EXPECT_EQ(responder.takeDue(Time(1002)).size(), 2u);
  obey("announce 1");
  EXPECT_TRUE(responder.member(1).present);
  EXPECT_FALSE(responder.member(2).present);
  obey("move 1");
  EXPECT_EQ(responder.member(1).moves, 1u);
}

TEST_F(OrdersTest, FlappingTakesHalfOfItsTimeToCome) {
  obey("flap 1 100");
  EXPECT_EQ(responder.nextDue(), Time(1000));
  responder.takeDue(Time(1000));
  EXPECT_EQ(responder.nextDue(), Time(1005));
  obey("steady 1");
  EXPECT_TRUE(responder.member(1).present);
}

TEST_F(OrdersTest, WhatIsNoOrderIsRefused) {
  for (const char* order :
       {"", "silent", "silent x", "sing 1", "silent 0", "silent 6", "silent 3-2", "silent 1-",
        "silent 1-x", "silent 1 2", "late 1", "late 1-2", "flap 1", "flap 1 0", "flap 1 501"}) {
    EXPECT_THROW(obey(order), std::invalid_argument) << order;
  }
  EXPECT_FALSE(responder.member(1).silent);
}

}  // namespace
