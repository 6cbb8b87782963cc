// Printers that restart, as far as the answers to the question for their version say. Each question
// is the next line of a script.
#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "FakeRunLoop.h"
#include "ReturnWatch.h"
#include "Script.h"
#include "TemporaryDirectory.h"

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr char kAway[] = "exit 1";
const std::string kOld = sayVersion(100);
const std::string kNew = sayVersion(200);

class ReturnWatchTest : public testing::Test {
 protected:
  // With these answers to one question after the other; the last one holds on.
  void start(const std::vector<std::string>& answers) {
    std::ofstream script(mScript);
    for (const std::string& each : answers) {
      const std::string marker = mScript + std::to_string(mQuestions++);
      if (mQuestions < answers.size()) {
        script << "if [ ! -e " << marker << " ]; then : >" << marker << "; " << each
               << "\nexit; fi\n";
      } else {
        script << each << '\n';
      }
    }
    script.close();
    mWatch.emplace(
        mLoop, printerThatRuns(". " + mScript), 200,
        [this](const Target& printer) {
          if (!mCanAsk) throw std::runtime_error("no process can be started");
          mAsked.push_back(printer.address);
          return mLocated ? *mLocated : printer;
        },
        30000ms,
        [this](std::optional<unsigned int> version) {
          ++mEnded;
          mVersion = version;
        });
  }

  // Lets one question be asked and answered.
  void askOnce() {
    const std::size_t asked = mAsked.size();
    mLoop.advance(1000ms);
    ASSERT_EQ(mAsked.size(), asked + 1);
    // Its patience is over with the answer; then the next question waits, or nothing does.
    ASSERT_TRUE(mLoop.runUntil([this] { return mEnded != 0 || isPausing(); }));
  }

  bool isPausing() const { return mLoop.timers() == 2 && mLoop.enabledWatches() == 0; }

  TemporaryDirectory mDirectory;
  const std::string mScript = (mDirectory.path() / "answers").string();
  std::size_t mQuestions = 0;
  FakeRunLoop mLoop;
  std::vector<std::string> mAsked;
  bool mCanAsk = true;
  std::optional<Target> mLocated;
  int mEnded = 0;
  std::optional<unsigned int> mVersion;
  std::optional<ReturnWatch> mWatch;
};

TEST_F(ReturnWatchTest, NewVersionEndsIt) {
  start({kNew});
  mLoop.advance(999ms);
  EXPECT_THAT(mAsked, ElementsAre());
  mLoop.advance(1ms);
  ASSERT_TRUE(mLoop.runUntil([this] { return mEnded != 0; }));
  EXPECT_EQ(mVersion, 200u);
  EXPECT_EQ(mLoop.timers(), 0u);
}

TEST_F(ReturnWatchTest, NewerVersionThanTheFirmwaresEndsItToo) {
  start({sayVersion(201)});
  askOnce();
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, 201u);
}

TEST_F(ReturnWatchTest, OldVersionBeforeTheRestartIsNoVerdict) {
  start({kOld, kOld, kAway, kNew});
  askOnce();
  askOnce();
  askOnce();
  EXPECT_EQ(mEnded, 0);
  askOnce();
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, 200u);
}

TEST_F(ReturnWatchTest, OldVersionAfterTheRestartIsOne) {
  start({kAway, kOld, kNew});
  askOnce();
  EXPECT_EQ(mEnded, 0);
  askOnce();
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, 100u);
}

TEST_F(ReturnWatchTest, OldVersionThatStaysIsOneWhenTheTimeIsOver) {
  start({kOld});
  for (int times = 0; times < 29; ++times) askOnce();
  EXPECT_EQ(mEnded, 0);
  mLoop.advance(1000ms);
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, 100u);
  mLoop.advance(60s);
  EXPECT_EQ(mEnded, 1);
}

TEST_F(ReturnWatchTest, PrinterThatFellSilentIsNotBack) {
  start({kOld, kAway});
  askOnce();
  askOnce();
  mLoop.advance(30s);
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, std::nullopt);
}

TEST_F(ReturnWatchTest, QuestionThatIsNotAnsweredIsGivenUpAndAskedAgain) {
  start({kSleep, kNew});
  mLoop.advance(1000ms);
  EXPECT_EQ(mAsked.size(), 1u);
  mLoop.advance(10000ms);
  EXPECT_EQ(mEnded, 0);
  mLoop.advance(1000ms);
  EXPECT_EQ(mAsked.size(), 2u);
}

TEST_F(ReturnWatchTest, PrinterIsLookedForBeforeEachQuestion) {
  start({kAway});
  askOnce();
  mLocated = printerThatRuns(kNew, 7);
  askOnce();
  EXPECT_EQ(mEnded, 1);
  EXPECT_EQ(mVersion, 200u);
  EXPECT_THAT(mAsked, ElementsAre("10.0.0.1:9100", "10.0.0.1:9100"));
}

TEST_F(ReturnWatchTest, QuestionThatCouldNotBeAskedSaysNothingOfThePrinter) {
  start({kOld, kNew});
  mCanAsk = false;
  mLoop.advance(5000ms);
  mCanAsk = true;
  askOnce();
  EXPECT_EQ(mEnded, 0);
  askOnce();
  EXPECT_EQ(mVersion, 200u);
}

// Nobody knows whether it has restarted meanwhile.
TEST_F(ReturnWatchTest, PrinterThatAnotherProgramTalksToWasNotAway) {
  start({say(R"({"event":"cause","cause":"Busy.","next_step":"","in_use":true})") + "exit 1", kOld,
         kNew});
  askOnce();
  askOnce();
  EXPECT_EQ(mEnded, 0);
  askOnce();
  EXPECT_EQ(mVersion, 200u);
}

}  // namespace
