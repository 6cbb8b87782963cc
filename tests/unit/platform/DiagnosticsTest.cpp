#include <gmock/gmock.h>

#include "FakeRunLoop.h"
#include "FakeSystemLog.h"
#include "platform/Diagnostics.h"
#include "platform/LogHistory.h"

namespace {

using namespace std::chrono_literals;
using platform::Diagnostics;
using testing::ElementsAre;

class Asked final : public Diagnostics::Question {
 public:
  explicit Asked(int& open) : mOpen(open) { ++mOpen; }
  ~Asked() override { --mOpen; }

 private:
  int& mOpen;
};

class DiagnosticsTest : public testing::Test {
 protected:
  void askDaemon() {
    mDiagnostics.addAnswer("Daemon", [this](Diagnostics::Answer answer) {
      mAnswer = std::move(answer);
      return std::make_unique<Asked>(mOpen);
    });
  }

  void report() {
    mDiagnostics.report(&mLog, [this](const std::string& text) { mReports.push_back(text); });
  }

  FakeRunLoop mLoop;
  FakeSystemLog mHost;
  platform::LogHistory mLog{mHost};
  Diagnostics mDiagnostics{
      mLoop, "1.2.3", {{"Qt", "6.4.2"}, {"libusb", "1.0.26"}}, {"/home/anna", "anna", "desk"}};
  Diagnostics::Answer mAnswer;
  int mOpen = 0;
  std::vector<std::string> mReports;
};

TEST_F(DiagnosticsTest, TellsOfProgramPartsAndLog) {
  mDiagnostics.add("System", [] { return std::vector<std::string>{"Debian", "Linux"}; });
  mDiagnostics.add("USB devices", [] { return std::vector<std::string>{}; });
  report();
  EXPECT_THAT(mReports, ElementsAre());
  mLoop.advance(0ms);
  EXPECT_THAT(mReports, ElementsAre("Firmware updater 1.2.3\nQt 6.4.2\nlibusb 1.0.26\n"
                                    "\nSystem:\n  Debian\n  Linux\n"
                                    "\nUSB devices:\n  none\n"
                                    "\nLog:\n"));
}

TEST_F(DiagnosticsTest, HasTheLogsEntriesWithoutPersonalNames) {
  mLog.write(3, "cannot open /home/anna/x");
  report();
  mLoop.advance(0ms);
  ASSERT_EQ(mReports.size(), 1u);
  EXPECT_THAT(mReports[0], testing::EndsWith("error: cannot open ~/x\n"));
}

TEST_F(DiagnosticsTest, WaitsForAnAnswer) {
  askDaemon();
  report();
  mLoop.advance(500ms);
  EXPECT_THAT(mReports, ElementsAre());
  mAnswer("avahi 0.8");
  mLoop.advance(0ms);
  ASSERT_EQ(mReports.size(), 1u);
  EXPECT_THAT(mReports[0], testing::HasSubstr("\nDaemon:\n  avahi 0.8\n"));
  EXPECT_EQ(mOpen, 0);
  mLoop.advance(5s);
  EXPECT_EQ(mReports.size(), 1u);
}

TEST_F(DiagnosticsTest, WaitsASecondForWhoeverDoesNotAnswer) {
  askDaemon();
  report();
  mLoop.advance(999ms);
  EXPECT_THAT(mReports, ElementsAre());
  mLoop.advance(1ms);
  ASSERT_EQ(mReports.size(), 1u);
  EXPECT_THAT(mReports[0], testing::HasSubstr("\nDaemon:\n  no answer\n"));
  EXPECT_EQ(mOpen, 0);
}

TEST_F(DiagnosticsTest, DoesNotWaitForNobody) {
  mDiagnostics.addAnswer("Daemon", [](const Diagnostics::Answer&) { return nullptr; });
  report();
  mLoop.advance(0ms);
  ASSERT_EQ(mReports.size(), 1u);
  EXPECT_THAT(mReports[0], testing::HasSubstr("\nDaemon:\n  nobody to ask\n"));
}

TEST_F(DiagnosticsTest, AsksAnewEachTime) {
  askDaemon();
  report();
  mAnswer("first");
  mLoop.advance(0ms);
  report();
  mLoop.advance(1s);
  ASSERT_EQ(mReports.size(), 2u);
  EXPECT_THAT(mReports[1], testing::HasSubstr("\nDaemon:\n  no answer\n"));
}

TEST_F(DiagnosticsTest, AnImpatientUserGetsOneReport) {
  askDaemon();
  for (int i = 0; i < 10; ++i) report();
  EXPECT_EQ(mOpen, 1);
  mLoop.advance(1s);
  EXPECT_EQ(mReports.size(), 1u);
}

}  // namespace
