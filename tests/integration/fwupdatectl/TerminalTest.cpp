// The tool on a terminal: what a person sees there while printers are updated, whatever is typed
// and whatever becomes of the terminal, and what is left there in the end.
#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TemporaryDirectory.h"
#include "TerminalProcess.h"
#include "Tool.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Rows = std::vector<std::string>;

constexpr const char* kCtrlC = "\x03";
constexpr const char* kCtrlD = "\x04";
constexpr const char* kCtrlZ = "\x1A";

class FwupdatectlTerminal : public testing::Test {
 protected:
  // On a terminal that shows a prompt. The tool is its only program.
  void run(const std::string& arguments, int rows = 24, int columns = 80) {
    runInShellOfTerminal("exec " + kToolInShell + " " + arguments, rows, columns);
  }

  void runInShellOfTerminal(const std::string& command, int rows, int columns) {
    mTool.emplace("echo '$ update'; " + command, rows, columns);
  }

  std::string address(const std::vector<std::string>& options) {
    mPrinters.push_back(std::make_unique<VirtualPrinterProcess>(options));
    return addressOf(*mPrinters.back());
  }

  // One that takes its firmware and never says that it has it.
  std::string burning() { return address({"--burn-seconds", "1000"}); }
  std::string quick() { return address({"--burn-seconds", "0.1"}); }

  // Every row that is to be seen or has been.
  Rows rows() const { return mTool->screen().allRows(); }

  // Whether the screen comes to be this.
  void expectRows(const Rows& rows) {
    mTool->waitUntil([&](const TerminalScreen& screen) { return screen.allRows() == rows; });
    EXPECT_THAT(mTool->screen().allRows(), testing::ElementsAreArray(rows));
  }

  void expectFreshRow() const {
    const TerminalScreen& screen = mTool->screen();
    EXPECT_EQ(screen.cursor(),
              (TerminalScreen::Position{static_cast<int>(screen.rows().size()), 0}));
    EXPECT_TRUE(screen.isCursorVisible());
  }

  void endAtOnce() {
    mTool->type(kCtrlC);
    ASSERT_TRUE(mTool->waitFor("Ctrl+C again"));
    mTool->type(kCtrlC);
    EXPECT_EQ(mTool->waitForEnd(), 130);
  }

  std::vector<std::unique_ptr<VirtualPrinterProcess>> mPrinters;
  std::optional<TerminalProcess> mTool;
};

std::string label(const std::string& address) { return address + ": "; }

const std::string kUpdated = "updated to version 200 (was 100)";
const std::string kBurning = "the printer is writing its memory";
const std::string kInterrupted =
    "failed: Interrupted. What the printer has received, it may still be writing to its memory.";

TEST_F(FwupdatectlTerminal, UpdateIsRedrawnInPlaceAndEndsOnAFreshRow) {
  const std::string a = quick();
  run("update --yes --address " + a);
  EXPECT_EQ(mTool->waitForEnd(), 0);
  EXPECT_THAT(rows(), ElementsAre("$ update", label(a) + kUpdated));
  expectFreshRow();
  EXPECT_THAT(mTool->bytes(), HasSubstr("sending the firmware"));
  EXPECT_THAT(mTool->bytes(), Not(testing::ContainsRegex("\x1B\\[[0-9;]*m")));
}

TEST_F(FwupdatectlTerminal, OutcomesStandAboveThoseAtWork) {
  const std::string a = quick();
  const std::string b = burning();
  run("update --yes --address " + a + " --address " + b, 24, 90);
  expectRows({"$ update", label(a) + kUpdated, label(b) + kBurning, "1 updated, 1 at work"});
  endAtOnce();
  EXPECT_THAT(rows(),
              ElementsAre("$ update", label(a) + kUpdated, (label(b) + kInterrupted).substr(0, 90),
                          (label(b) + kInterrupted).substr(90), "1 updated, 1 failed"));
  expectFreshRow();
}

TEST_F(FwupdatectlTerminal, KeysMoveNothing) {
  const std::string a = burning();
  run("update --yes --address " + a);
  expectRows({"$ update", label(a) + kBurning});
  EXPECT_FALSE(mTool->echoes());
  mTool->type("\r\r\rabc\x1B[A\t");
  mTool->type(kCtrlC);
  expectRows(
      {"$ update", label(a) + kBurning, "Ends when these are done. Ctrl+C again ends at once."});
  mTool->type(kCtrlC);
  EXPECT_EQ(mTool->waitForEnd(), 130);
  EXPECT_THAT(mTool->bytes(), Not(HasSubstr("abc")));
}

TEST_F(FwupdatectlTerminal, WindowMayChangeItsSize) {
  const std::string a = burning();
  const std::string b = burning();
  run("update --yes --address " + a + " --address " + b);
  expectRows({"$ update", label(a) + kBurning, label(b) + kBurning});
  mTool->resize(24, 20);
  expectRows({"$ update", a.substr(0, 8) + "\u2026: writing\u2026",
              b.substr(0, 8) + "\u2026: writing\u2026"});
  mTool->resize(2, 40);
  expectRows({"$ update", "2 at work (2 not shown)"});
  mTool->resize(10, 40);
  expectRows({"$ update", a + ": writing its memory", b + ": writing its memory"});
  mTool->resize(10, 200);
  expectRows({"$ update", label(a) + kBurning, label(b) + kBurning});
  endAtOnce();
  EXPECT_THAT(rows(), testing::UnorderedElementsAre("$ update", label(a) + kInterrupted,
                                                    label(b) + kInterrupted, "2 failed"));
  expectFreshRow();
}

TEST_F(FwupdatectlTerminal, MorePrintersThanRowsAreCounted) {
  std::string arguments = "update --yes --jobs 4";
  Rows labels;
  for (int i = 0; i < 5; ++i) {
    labels.push_back(burning());
    arguments += " --address " + labels.back();
  }
  run(arguments, 4, 80);
  expectRows({"$ update", label(labels[0]) + kBurning, label(labels[1]) + kBurning,
              "4 at work (2 not shown), 1 to go"});
  mTool->type(kCtrlC);
  expectRows({"$ update", label(labels[4]) + "not started", label(labels[0]) + kBurning,
              "1 not started, 4 at work (3 not shown)",
              "Ends when these are done. Ctrl+C again ends at once."});
  mTool->type(kCtrlC);
  EXPECT_EQ(mTool->waitForEnd(), 130);
  EXPECT_EQ(rows().back(), "4 failed, 1 not started");
  EXPECT_THAT(rows(), Not(testing::Contains(HasSubstr("at work"))));
}

// The terminal's own log lines are longer than its rows.
TEST_F(FwupdatectlTerminal, LogGoesAboveWithoutATraceOfWhatIsRedrawn) {
  const std::string a = quick();
  run("update --verbose --yes --address " + a, 100, 40);
  EXPECT_EQ(mTool->waitForEnd(), 0);
  const std::string screen = testing::PrintToString(rows());
  EXPECT_THAT(screen, HasSubstr(" to I/O transport..."));
  for (const char* drawn : {"starting", "connecting", "[#", "writing its memory", " %"}) {
    EXPECT_THAT(screen, Not(HasSubstr(drawn)));
  }
  expectFreshRow();
}

TEST_F(FwupdatectlTerminal, ErrorsGoWhereTheyAreRedirected) {
  const std::string a = address({"--fault", "fail-burn", "--burn-seconds", "0.1"});
  const TemporaryDirectory directory;
  const std::string errors = directory.path() / "errors";
  run("update --yes --address " + a + " 2>'" + errors + "'");
  EXPECT_EQ(mTool->waitForEnd(), 1);
  EXPECT_THAT(rows(), ElementsAre("$ update"));
  EXPECT_THAT(contentOf(errors),
              testing::StartsWith(label(a) + "failed: The printer refused the firmware. "));
}

TEST_F(FwupdatectlTerminal, StoppedUpdateLeavesTheTerminalToTheShell) {
  const std::string a = burning();
  runInShellOfTerminal("set -m; " + kToolInShell + " update --yes --address " + a +
                           "; stty -a | grep -ow '.*echo'; stty rows 24 cols 45; fg >/dev/null",
                       24, 80);
  expectRows({"$ update", label(a) + kBurning});
  mTool->type(kCtrlZ);
  ASSERT_TRUE(mTool->waitFor(a + ": writing its memory"));
  const Rows between = rows();
  EXPECT_THAT(between.front(), "$ update");
  EXPECT_THAT(between.back(), a + ": writing its memory");
  EXPECT_THAT(between, testing::Contains(testing::EndsWith(" echo")));
  EXPECT_THAT(between, Not(testing::Contains(HasSubstr(kBurning))));
  endAtOnce();
}

// Nobody could let it go on.
TEST_F(FwupdatectlTerminal, WithoutAShellItIsNotStopped) {
  const std::string a = burning();
  run("update --yes --address " + a);
  expectRows({"$ update", label(a) + kBurning});
  mTool->type(kCtrlZ);
  mTool->type(kCtrlC);
  expectRows(
      {"$ update", label(a) + kBurning, "Ends when these are done. Ctrl+C again ends at once."});
  mTool->type(kCtrlC);
  EXPECT_EQ(mTool->waitForEnd(), 130);
}

TEST_F(FwupdatectlTerminal, UpdateInTheBackgroundDrawsNothing) {
  const std::string a = quick();
  runInShellOfTerminal("set -m; " + kToolInShell + " update --yes --address " + a + " & wait", 24,
                       80);
  EXPECT_EQ(mTool->waitForEnd(), 0);
  EXPECT_THAT(rows(), ElementsAre("$ update", label(a) + kUpdated));
  EXPECT_THAT(mTool->bytes(), Not(HasSubstr("connecting")));
}

TEST_F(FwupdatectlTerminal, AsksBeforeANetworkPrinterIsTouched) {
  const auto questionFor = [](const std::string& address) {
    return "Download new firmware to " + address + "? Nobody can print on it meanwhile. [y/N]";
  };
  for (const std::string answer : {"y", "Y", "yes"}) {
    const std::string a = quick();
    run("update --address " + a, 24, 200);
    ASSERT_TRUE(mTool->waitFor(questionFor(a)));
    mTool->type(answer + "\r");
    EXPECT_EQ(mTool->waitForEnd(), 0);
    EXPECT_THAT(rows(),
                ElementsAre("$ update", questionFor(a) + " " + answer, label(a) + kUpdated));
  }

  const std::string b = quick();
  for (const char* answer : {"\r", "n\r", "yy\r", kCtrlD}) {
    run("update --address " + b, 24, 200);
    ASSERT_TRUE(mTool->waitFor(questionFor(b)));
    mTool->type(answer);
    EXPECT_EQ(mTool->waitForEnd(), 0);
    expectFreshRow();
    EXPECT_THAT(rows(), Not(testing::Contains(HasSubstr(kUpdated))));
  }
  mPrinters.back()->stop();
  EXPECT_THAT(mPrinters.back()->entries("connected"), testing::IsEmpty());
}

TEST_F(FwupdatectlTerminal, QuietUpdateShowsNothing) {
  run("update --yes --quiet --address " + quick());
  EXPECT_EQ(mTool->waitForEnd(), 0);
  EXPECT_THAT(rows(), ElementsAre("$ update"));
}

TEST_F(FwupdatectlTerminal, DumbOneGetsLines) {
  const std::string a = quick();
  runInShellOfTerminal("TERM=dumb exec " + kToolInShell + " update --yes --address " + a, 24, 80);
  EXPECT_EQ(mTool->waitForEnd(), 0);
  EXPECT_THAT(rows(),
              ElementsAre("$ update", label(a) + "connecting", label(a) + "asking for its version",
                          label(a) + "choosing its firmware", label(a) + "sending the firmware",
                          label(a) + kBurning, label(a) + kUpdated));
  EXPECT_THAT(mTool->bytes(), Not(HasSubstr("\x1B")));
}

// What is not redrawn is the same as in a pipe.
TEST_F(FwupdatectlTerminal, AnswersAreThoseOfAPipe) {
  for (const std::string& arguments :
       std::vector<std::string>{"--version", "--help", "update --help", "show /nowhere", "update",
                                "show '" + kDemoFirmware + "'"}) {
    const Outcome piped = tool(arguments);
    run(arguments, 100, 200);
    EXPECT_EQ(mTool->waitForEnd(), piped.status) << arguments;
    Rows expected = linesOf(piped.output + piped.errors);
    while (!expected.empty() && expected.back().empty()) expected.pop_back();
    Rows shown = rows();
    shown.erase(shown.begin());
    EXPECT_EQ(shown, expected) << arguments;
    EXPECT_THAT(mTool->bytes(), Not(HasSubstr("\x1B"))) << arguments;
  }
}

}  // namespace
