#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/qt/DownloadState.h"

using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;
using std::chrono::milliseconds;
using testing::ElementsAre;

namespace {

class DownloadStateTest : public testing::Test {
 protected:
  using State = platform::DownloadState;

  DownloadStateTest() {
    note(&State::began, "began");
    note(&State::phaseChanged, "phase");
    note(&State::versionsChanged, "versions");
    note(&State::bytesChanged, "bytes");
    note(&State::errorAdded, "error");
    note(&State::ended, "ended");
  }

  void begin() { mState.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5")); }

  State mState;
  std::vector<std::string> mSignals;

 private:
  void note(void (State::*signal)(), const char* name) {
    QObject::connect(&mState, signal, [this, name] { mSignals.emplace_back(name); });
  }
};

TEST_F(DownloadStateTest, NothingIsKnownBeforeTheFirstDownload) {
  EXPECT_FALSE(mState.isRunning());
  EXPECT_TRUE(mState.printer().isNull());
  EXPECT_TRUE(mState.info().isNull());
  EXPECT_EQ(mState.phase(), std::nullopt);
  EXPECT_FALSE(mState.versions().has_value());
  EXPECT_EQ(mState.bytesInAll(), 0u);
  EXPECT_TRUE(mState.errors().empty());
  EXPECT_EQ(mState.outcome(), std::nullopt);
}

TEST_F(DownloadStateTest, KeepsWhatItIsTold) {
  begin();
  mState.phaseBegan(DownloadPhase::BurningFirmware, milliseconds(48000));
  mState.versionsKnown(100, 200);
  mState.bytesHandedOver(3, 7);
  mState.errorLogged("first");
  mState.errorLogged("second");
  EXPECT_TRUE(mState.isRunning());
  EXPECT_EQ(mState.printer().utf8(), "Office");
  EXPECT_EQ(mState.info().utf8(), "10.0.0.5");
  EXPECT_EQ(mState.phase(), DownloadPhase::BurningFirmware);
  EXPECT_EQ(mState.bound(), milliseconds(48000));
  ASSERT_TRUE(mState.versions().has_value());
  EXPECT_EQ(mState.versions()->printer, 100u);
  EXPECT_EQ(mState.versions()->firmware, 200u);
  EXPECT_EQ(mState.bytesHandedOver(), 3u);
  EXPECT_EQ(mState.bytesInAll(), 7u);
  EXPECT_THAT(mState.errors(), ElementsAre("first", "second"));
  EXPECT_THAT(mSignals, ElementsAre("began", "phase", "versions", "bytes", "error", "error"));
}

TEST_F(DownloadStateTest, EndKeepsWhatWasKnown) {
  begin();
  mState.versionsKnown(100, 200);
  mState.downloadEnded(DownloadOutcome::UpToDate);
  EXPECT_FALSE(mState.isRunning());
  EXPECT_EQ(mState.outcome(), DownloadOutcome::UpToDate);
  EXPECT_EQ(mState.printer().utf8(), "Office");
  EXPECT_EQ(mState.versions()->firmware, 200u);
  EXPECT_THAT(mSignals, ElementsAre("began", "versions", "ended"));
}

TEST_F(DownloadStateTest, NextDownloadForgetsTheOneBefore) {
  begin();
  mState.phaseBegan(DownloadPhase::SendingFirmware, milliseconds(5000));
  mState.versionsKnown(100, 200);
  mState.bytesHandedOver(7, 7);
  mState.errorLogged("first");
  mState.downloadEnded(DownloadOutcome::Failed);
  mState.downloadBegan(Text::fromUtf8("Lab"), Text());
  EXPECT_TRUE(mState.isRunning());
  EXPECT_EQ(mState.printer().utf8(), "Lab");
  EXPECT_TRUE(mState.info().isNull());
  EXPECT_EQ(mState.phase(), std::nullopt);
  EXPECT_EQ(mState.bound(), milliseconds(0));
  EXPECT_FALSE(mState.versions().has_value());
  EXPECT_EQ(mState.bytesHandedOver(), 0u);
  EXPECT_EQ(mState.bytesInAll(), 0u);
  EXPECT_TRUE(mState.errors().empty());
  EXPECT_EQ(mState.outcome(), std::nullopt);
}

}  // namespace
