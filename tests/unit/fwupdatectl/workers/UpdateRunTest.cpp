// Updates by processes that are scripts, on a clock that the tests turn.
#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FakeRunLoop.h"
#include "Script.h"
#include "TemporaryDirectory.h"
#include "UpdateRun.h"

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kInterrupted =
    "Interrupted. What the printer has received, it may still be writing to its memory.";
const std::string kOnceMore =
    "Check that the printer is switched on, connected and not printing, then try again.";

// Names printers by the ends of their addresses.
class Record final : public UpdateReport {
 public:
  void began(const Target& printer) override { mTold.push_back(numberOf(printer) + " began"); }
  void told(const Target& printer, const nlohmann::ordered_json& event) override {
    mTold.push_back(numberOf(printer) + " " + event.value("event", "") + " " +
                    event.value("phase", event.value("outcome", "")));
  }
  void logged(const Target& printer, const std::string& line) override {
    mTold.push_back(numberOf(printer) + " logged " + line);
  }
  void ended(const Target& printer, const UpdateResult& result) override {
    constexpr const char* kOutcomes[] = {"updated", "up to date", "failed", "not started"};
    mTold.push_back(numberOf(printer) + " " + kOutcomes[static_cast<int>(result.outcome)]);
    mResults.push_back(result);
  }
  void summed(const UpdateTally&) override {}

  const std::vector<std::string>& told() const { return mTold; }
  bool isTold(const std::string& line) const { return std::ranges::count(mTold, line) != 0; }
  const std::vector<UpdateResult>& results() const { return mResults; }

 private:
  static std::string numberOf(const Target& printer) { return printer.address.substr(7, 1); }

  std::vector<std::string> mTold;
  std::vector<UpdateResult> mResults;
};

class UpdateRunTest : public testing::Test {
 protected:
  void start(const std::vector<std::string>& scripts, UpdateRun::Settings settings = {}) {
    std::vector<Target> printers;
    for (const std::string& script : scripts) {
      printers.push_back(printerThatRuns(script, static_cast<int>(printers.size()) + 1));
    }
    settings.locate = [](const Target& printer) { return printer; };
    mRun.emplace(mLoop, mRecord, printers, std::move(settings));
    mRun->start([this] { ++mDone; });
  }

  void runUntilTold(const std::string& line) {
    ASSERT_TRUE(mLoop.runUntil([&] { return mRecord.isTold(line); })) << line;
  }

  void runToItsEnd() {
    ASSERT_TRUE(mLoop.runUntil([&] { return mDone != 0; }));
    EXPECT_EQ(mDone, 1);
  }

  // Of the one printer.
  UpdateResult result() {
    runToItsEnd();
    EXPECT_EQ(mRecord.results().size(), 1u);
    return mRecord.results().at(0);
  }

  // That of a printer which is in this phase when its five seconds are over.
  UpdateResult resultOfALimitIn(const std::string& phase) {
    start({sayPhase(phase) + kSleep}, {.timeout = 5000ms});
    runUntilTold("1 phase " + phase);
    mLoop.advance(4999ms);
    EXPECT_THAT(mRecord.results(), IsEmpty());
    mLoop.advance(1ms);
    return result();
  }

  std::string fileName(const std::string& name) const {
    return (mDirectory.path() / name).string();
  }
  void makeFile(const std::string& name) const { const std::ofstream made(fileName(name)); }
  std::string waitFor(const std::string& name) const {
    return "until [ -e " + fileName(name) + " ]; do sleep 0.01; done; ";
  }

  TemporaryDirectory mDirectory;
  FakeRunLoop mLoop;
  Record mRecord;
  std::optional<UpdateRun> mRun;
  int mDone = 0;
};

// Ends. ------------------------------------------------------------------------------------------

TEST_F(UpdateRunTest, TellsWhatAWorkerSaysAndHowItEnds) {
  start({sayPhase("connecting") + sayVersions(100, 200) + sayOutcome("updated")});
  const UpdateResult updated = result();
  EXPECT_THAT(mRecord.told(), ElementsAre("1 began", "1 phase connecting", "1 versions ",
                                          "1 outcome updated", "1 updated"));
  EXPECT_EQ(updated.versionBefore, 100u);
  EXPECT_EQ(updated.versionOfFirmware, 200u);
  EXPECT_EQ(updated.cause, "");
}

TEST_F(UpdateRunTest, WorkerThatDoesNotSayHowItEndedHasFailed) {
  start({sayPhase("connecting")});
  const UpdateResult failed = result();
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause, "The update ended unexpectedly.");
}

TEST_F(UpdateRunTest, WorkerThatFailsAfterItsOutcomeHasFailed) {
  start({sayOutcome("updated") + "exit 3"});
  const UpdateResult failed = result();
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause, "The update ended unexpectedly.");
}

TEST_F(UpdateRunTest, DeathIsNamedByItsSignalWhereNothingElseIsKnown) {
  start({"kill -SEGV $$", say(R"({"event":"error","message":"It is on fire."})") + "exit 1",
         "echo 'x: Assertion failed: (a), file b.' >&2; kill -ABRT $$",
         say(R"({"event":"cause","cause":"It is off.","next_step":"Switch it on."})") + "exit 1"},
        {.jobs = 1});
  runToItsEnd();
  std::vector<std::string> causes;
  for (const UpdateResult& each : mRecord.results()) causes.push_back(each.cause);
  EXPECT_THAT(causes,
              ElementsAre("The update ended unexpectedly: Segmentation fault.", "It is on fire.",
                          "Assertion failed: (a), file b.", "It is off."));
  EXPECT_EQ(mRecord.results().at(3).nextStep, "Switch it on.");
}

TEST_F(UpdateRunTest, MissingRightIsHandedOn) {
  start({say(R"({"event":"cause","cause":"No.","next_step":"","not_permitted":true})") + "exit 1"});
  EXPECT_TRUE(result().isNotPermitted);
}

TEST_F(UpdateRunTest, StartsNoMoreAtATimeThanItMay) {
  const std::string waiting = waitFor("go") + sayOutcome("updated");
  start({waiting, waiting, waiting}, {.jobs = 2});
  runUntilTold("2 began");
  mLoop.pollDescriptors();
  EXPECT_THAT(mRecord.told(), ElementsAre("1 began", "2 began"));
  makeFile("go");
  runToItsEnd();
  EXPECT_TRUE(mRecord.isTold("3 updated"));
}

TEST_F(UpdateRunTest, NoPrintersAreDoneAtOnce) {
  start({});
  runToItsEnd();
}

TEST_F(UpdateRunTest, NothingStaysOpenOfAWorker) {
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = descriptors();
  start({sayOutcome("updated"), sayPhase("connecting")});
  runToItsEnd();
  EXPECT_EQ(descriptors(), before);
}

// Limits. ----------------------------------------------------------------------------------------

TEST_F(UpdateRunTest, LimitWhileItConnects) {
  const UpdateResult failed = resultOfALimitIn("connecting");
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause, "The printer could not be reached within 5 s.");
  EXPECT_EQ(failed.nextStep, kOnceMore);
}

TEST_F(UpdateRunTest, LimitWhileItAsksForTheVersion) {
  const UpdateResult failed = resultOfALimitIn("asking-for-version");
  EXPECT_EQ(failed.cause, "The printer did not answer within 5 s.");
  EXPECT_EQ(failed.nextStep, kOnceMore);
}

TEST_F(UpdateRunTest, LimitWhileItSends) {
  const UpdateResult failed = resultOfALimitIn("sending-firmware");
  EXPECT_EQ(failed.cause, "The printer did not take all of the firmware within 5 s.");
  EXPECT_EQ(failed.nextStep, "Switch the printer off and on, then try again.");
}

// The time that it may take for that is over, too.
TEST_F(UpdateRunTest, LimitAfterThePrinterShouldHaveWrittenItsMemory) {
  const UpdateResult failed = resultOfALimitIn("burning-firmware");
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause,
            "The printer did not confirm the firmware in the time that it may take to write it.");
  EXPECT_EQ(failed.nextStep,
            "It may still be writing its memory: leave it switched on for a few minutes. Then "
            "download the firmware again; a printer that has it is reported as up to date.");
}

TEST_F(UpdateRunTest, LimitLeavesAPrinterAloneThatWritesItsMemory) {
  start({kHeedNoTermination + sayPhase("burning-firmware", 3600000) + waitFor("burned") +
         sayOutcome("updated")},
        {.timeout = 5000ms});
  runUntilTold("1 phase burning-firmware");
  mLoop.advance(60s);
  makeFile("burned");
  EXPECT_EQ(result().outcome, UpdateResult::Outcome::Updated);
}

TEST_F(UpdateRunTest, LimitEndsWithItsDownload) {
  start({sayOutcome("updated"), waitFor("go") + sayOutcome("updated")},
        {.jobs = 1, .timeout = 5000ms});
  runUntilTold("2 began");
  mLoop.advance(4999ms);
  makeFile("go");
  runToItsEnd();
  EXPECT_TRUE(mRecord.isTold("1 updated"));
  EXPECT_TRUE(mRecord.isTold("2 updated"));
  EXPECT_EQ(mLoop.timers(), 0u);
}

// Interruption. ----------------------------------------------------------------------------------

TEST_F(UpdateRunTest, InterruptionLetsThoseEndThatHaveBegun) {
  start({waitFor("go") + sayOutcome("updated"), sayOutcome("updated")}, {.jobs = 1});
  runUntilTold("1 began");
  EXPECT_FALSE(mRun->isInterrupted());
  mRun->startNoMore();
  EXPECT_TRUE(mRun->isInterrupted());
  EXPECT_TRUE(mRecord.isTold("2 not started"));
  makeFile("go");
  runToItsEnd();
  EXPECT_THAT(mRecord.told(),
              ElementsAre("1 began", "2 not started", "1 outcome updated", "1 updated"));
}

TEST_F(UpdateRunTest, SecondInterruptionEndsThemAtOnce) {
  start({sayPhase("burning-firmware", 3600000) + kSleep, kSleep}, {.jobs = 1});
  runUntilTold("1 phase burning-firmware");
  mRun->terminate();
  runToItsEnd();
  EXPECT_TRUE(mRun->isInterrupted());
  EXPECT_THAT(mRecord.told(),
              ElementsAre("1 began", "1 phase burning-firmware", "2 not started", "1 failed"));
  EXPECT_EQ(mRecord.results().at(1).cause, kInterrupted);
  EXPECT_EQ(mRecord.results().at(1).nextStep, "");
}

TEST_F(UpdateRunTest, WorkerThatIsStoppedEndsWithoutForce) {
  start({sayPhase("connecting") + "kill -STOP $$; " + kSleep});
  runUntilTold("1 phase connecting");
  mRun->terminate();
  EXPECT_EQ(result().cause, kInterrupted);
}

TEST_F(UpdateRunTest, WorkerThatDoesNotEndIsEndedByForce) {
  start({kHeedNoTermination + sayPhase("connecting") + kSleep});
  runUntilTold("1 phase connecting");
  mRun->terminate();
  mLoop.advance(7999ms);
  EXPECT_FALSE(mLoop.pollDescriptors(50ms));
  mRun->terminate();  // does not begin anew
  mLoop.advance(1ms);
  EXPECT_EQ(result().cause, kInterrupted);
}

TEST_F(UpdateRunTest, WorkerThatDoesNotEndIsEndedByForceAfterALimit) {
  start({kHeedNoTermination + sayPhase("asking-for-version") + kSleep}, {.timeout = 5000ms});
  runUntilTold("1 phase asking-for-version");
  mLoop.advance(13000ms);
  EXPECT_EQ(result().cause, "The printer did not answer within 5 s.");
}

TEST_F(UpdateRunTest, OutcomeThatCameBeforeTheInterruptionHolds) {
  start({"trap 'exit 0' TERM; " + sayOutcome("updated") + sayPhase("connecting") +
         "while :; do sleep 0.01; done"});
  runUntilTold("1 phase connecting");
  mRun->terminate();
  EXPECT_EQ(result().outcome, UpdateResult::Outcome::Updated);
}

// The return of a printer. -----------------------------------------------------------------------

std::string updatedThenVersion(const std::string& versionScript) {
  return "if [ $1 = update ]; then " + sayVersions(100, 200) + sayOutcome("updated") + "else " +
         versionScript + " fi";
}

TEST_F(UpdateRunTest, PrinterThatIsBackIsAskedForItsVersion) {
  start({updatedThenVersion(sayVersion(200))}, {.returnWait = 60000ms});
  runUntilTold("1 phase waiting-for-return");
  mLoop.advance(1000ms);
  const UpdateResult back = result();
  EXPECT_EQ(back.outcome, UpdateResult::Outcome::Updated);
  EXPECT_EQ(back.versionAfter, 200u);
  EXPECT_EQ(back.cause, "");
}

TEST_F(UpdateRunTest, LimitOfADownloadIsNoneOfTheReturn) {
  start({updatedThenVersion(sayVersion(200))}, {.timeout = 5000ms, .returnWait = 60000ms});
  runUntilTold("1 phase waiting-for-return");
  EXPECT_EQ(mLoop.timers(), 2u);  // the pause before the question, and the end
}

TEST_F(UpdateRunTest, PrinterThatIsNotBackInTimeHasFailed) {
  start({updatedThenVersion("exit 1;")}, {.returnWait = 900ms});
  runUntilTold("1 phase waiting-for-return");
  mLoop.advance(900ms);
  const UpdateResult failed = result();
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause, "The printer did not come back within 0.9 s.");
  EXPECT_EQ(failed.nextStep,
            "Check that the printer is switched on and connected, then update it again.");
  EXPECT_FALSE(failed.versionAfter);
}

TEST_F(UpdateRunTest, PrinterThatIsBackWithItsOldVersionHasFailed) {
  start({updatedThenVersion("if [ -e " + fileName("away") + " ]; then " + sayVersion(100) +
                            "else : >" + fileName("away") + "; exit 1; fi;")},
        {.returnWait = 60000ms});
  runUntilTold("1 phase waiting-for-return");
  mLoop.advance(1000ms);
  // The pause before the next question, and the end.
  ASSERT_TRUE(mLoop.runUntil([&] { return mLoop.timers() == 2 && mLoop.enabledWatches() == 0; }));
  mLoop.advance(1000ms);
  const UpdateResult failed = result();
  EXPECT_EQ(failed.outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(failed.cause, "The printer came back with version 100.");
  EXPECT_EQ(failed.nextStep, "Switch the printer off and on, then try again.");
  EXPECT_EQ(failed.versionAfter, 100u);
}

TEST_F(UpdateRunTest, InterruptionEndsTheWaitingForAReturn) {
  start({updatedThenVersion("exit 1;"), kSleep}, {.jobs = 1, .returnWait = 60000ms});
  runUntilTold("1 phase waiting-for-return");
  mRun->terminate();
  runToItsEnd();
  EXPECT_EQ(mRecord.results().at(1).outcome, UpdateResult::Outcome::Failed);
  EXPECT_EQ(mRecord.results().at(1).cause, "Interrupted before the printer was back.");
}

TEST_F(UpdateRunTest, PrinterThatWasUpToDateIsNotWaitedFor) {
  start({sayOutcome("up-to-date")}, {.returnWait = 60000ms});
  EXPECT_EQ(result().outcome, UpdateResult::Outcome::UpToDate);
  EXPECT_THAT(mRecord.told(), ElementsAre("1 began", "1 outcome up-to-date", "1 up to date"));
}

}  // namespace
