#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "InterruptingLog.h"

namespace {

using testing::ElementsAre;

class RecordingLog final : public platform::SystemLog {
 public:
  void open(const char* identity, int, int) override { mCalls.push_back(identity); }
  void write(int, const char* text) override { mCalls.push_back(text); }
  void close() override { mCalls.push_back("close"); }

  std::vector<std::string> mCalls;
};

class InterruptingLogTest : public testing::Test {
 protected:
  void tellBoth() {
    mLog.tell([this] { mHost.mCalls.push_back("before"); },
              [this] { mHost.mCalls.push_back("after"); });
  }

  RecordingLog mHost;
  InterruptingLog mLog{mHost};
};

TEST_F(InterruptingLogTest, TellsBeforeAndAfterAnEntryThatIsMirrored) {
  mLog.open("tool", platform::SystemLog::kMirrorToStandardError, 8);
  mLog.write(5, "unheard");
  tellBoth();
  mLog.write(5, "entry");
  mLog.tell({}, {});
  mLog.write(5, "another");
  mLog.close();
  EXPECT_THAT(mHost.mCalls,
              ElementsAre("tool", "unheard", "before", "entry", "after", "another", "close"));
}

TEST_F(InterruptingLogTest, TellsNothingOfAnEntryThatNobodySees) {
  mLog.open("tool", 0, 8);
  tellBoth();
  mLog.write(5, "entry");
  EXPECT_THAT(mHost.mCalls, ElementsAre("tool", "entry"));
}

}  // namespace
