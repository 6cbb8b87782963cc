#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <optional>

#include "FakeRunLoop.h"
#include "LogRecorder.h"
#include "ParentWatch.h"

namespace {

using namespace std::chrono_literals;
using platform::DownloadPhase;

class ParentWatchTest : public testing::Test {
 protected:
  ParentWatchTest() {
    EXPECT_EQ(pipe(mEnds.data()), 0);
    watch(mEnds[1]);
  }
  ~ParentWatchTest() override {
    closeEnd(0);
    closeEnd(1);
  }

  void watch(int output) {
    mWatch.emplace(mLoop, output, [this] { ++mEnded; });
  }

  void closeEnd(std::size_t end) {
    if (mEnds.at(end) >= 0) close(mEnds.at(end));
    mEnds.at(end) = -1;
  }

  void endParent() {
    closeEnd(0);
    mLoop.pollDescriptors();
    EXPECT_EQ(mLoop.enabledWatches(), 0u);  // it would be ready for ever
  }

  LogRecorder mLog;
  FakeRunLoop mLoop;
  std::array<int, 2> mEnds{-1, -1};
  std::optional<ParentWatch> mWatch;
  int mEnded = 0;
};

TEST_F(ParentWatchTest, WorkerGoesOnWhileItHasAParent) {
  mWatch->phaseBegan(DownloadPhase::Connecting, {});
  EXPECT_FALSE(mLoop.pollDescriptors());
  mLoop.advance(1h);
  EXPECT_EQ(mEnded, 0);
}

TEST_F(ParentWatchTest, WorkerThatHasSentNothingEndsAtOnce) {
  for (const auto phase : {DownloadPhase::Connecting, DownloadPhase::AskingForVersion,
                           DownloadPhase::ChoosingFirmware}) {
    mWatch->phaseBegan(phase, {});
  }
  endParent();
  EXPECT_EQ(mEnded, 1);
  mLoop.advance(1h);
  EXPECT_EQ(mEnded, 1);
}

TEST_F(ParentWatchTest, WorkerThatSendsMaySendAllOfIt) {
  mWatch->phaseBegan(DownloadPhase::SendingFirmware, {});
  endParent();
  mLoop.advance(1h);
  EXPECT_EQ(mEnded, 0);
  mWatch->phaseBegan(DownloadPhase::BurningFirmware, 0ms);
  mLoop.advance(1s);
  EXPECT_EQ(mEnded, 1);
}

TEST_F(ParentWatchTest, PrinterMayTakeItsTimeToWriteItsMemory) {
  mWatch->phaseBegan(DownloadPhase::SendingFirmware, {});
  mWatch->phaseBegan(DownloadPhase::BurningFirmware, 1h);
  endParent();
  mLoop.advance(10s);
  EXPECT_EQ(mEnded, 0);
}

TEST_F(ParentWatchTest, OutputIntoAFileHasNoParent) {
  std::FILE* const file = std::tmpfile();
  watch(fileno(file));
  EXPECT_EQ(mLoop.enabledWatches(), 0u);
  std::fclose(file);
}

}  // namespace
