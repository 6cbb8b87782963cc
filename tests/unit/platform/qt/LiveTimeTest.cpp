#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimerEvent>
#include <array>
#include <chrono>

#include "platform/qt/LiveTime.h"

using namespace std::chrono_literals;

namespace {

// The timer's own events do not come without a running loop; they are sent by hand.
class LiveTimeTest : public testing::Test {
 protected:
  void passWhileAlive(std::chrono::milliseconds time) {
    for (auto passed = 0ms; passed < time; passed += 50ms) {
      mNow += 50ms;
      QTimerEvent event(0);
      QCoreApplication::sendEvent(&mLiveTime, &event);
    }
  }

  int mArgumentCount = 1;
  std::array<char, 5> mName{"test"};
  std::array<char*, 2> mArguments{mName.data(), nullptr};
  QCoreApplication mApplication{mArgumentCount, mArguments.data()};

  platform::LiveTime::Time mNow{1h};
  platform::LiveTime mLiveTime{[this] { return mNow; }};
};

TEST_F(LiveTimeTest, CountsWhileTheProgramIsAlive) {
  const auto before = mLiveTime.now();
  passWhileAlive(4s);
  EXPECT_EQ(mLiveTime.now() - before, 4s);
}

TEST_F(LiveTimeTest, CountsBetweenTwoEvents) {
  const auto before = mLiveTime.now();
  mNow += 30ms;
  EXPECT_EQ(mLiveTime.now() - before, 30ms);
}

TEST_F(LiveTimeTest, StandsStillWithTheProgram) {
  const auto before = mLiveTime.now();
  passWhileAlive(200ms);
  mNow += 10s;
  EXPECT_EQ(mLiveTime.now() - before, 400ms);
  passWhileAlive(200ms);
  EXPECT_EQ(mLiveTime.now() - before, 600ms);
}

TEST_F(LiveTimeTest, StandsStillWhenTheTimerNoticesFirst) {
  const auto before = mLiveTime.now();
  mNow += 10s;
  passWhileAlive(50ms);
  EXPECT_EQ(mLiveTime.now() - before, 200ms);
}

TEST_F(LiveTimeTest, RestsFiveSecondsAfterTheLastQuestion) {
  mLiveTime.now();
  passWhileAlive(4s);
  mLiveTime.now();
  passWhileAlive(4950ms);
  EXPECT_TRUE(mLiveTime.isCounting());
  passWhileAlive(50ms);
  EXPECT_FALSE(mLiveTime.isCounting());
  mLiveTime.now();
  EXPECT_TRUE(mLiveTime.isCounting());
}

}  // namespace
