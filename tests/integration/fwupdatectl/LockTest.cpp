// Two runs of the tool that want the same printer.
#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "Tool.h"
#include "ToolProcess.h"

namespace {

class FwupdatectlLock : public testing::Test {
 protected:
  std::string label() const { return mAddress + ": "; }

  Outcome update(const std::string& arguments = {}) const {
    return runInShell(kToolInShell + " update --yes --quiet " + arguments + " --address " +
                      mAddress + " </dev/null");
  }

  void startFirst() {
    mFirst.emplace(kTool, "update --yes --address " + mAddress);
    mFirst->readUntil(label() + "asking for its version");
  }

  // The printer never answers it.
  void endFirst() {
    mFirst->signal(SIGTERM);
    mFirst->signal(SIGINT);  // another one, since two of one kind may arrive as one
    mFirst->readUntil("status 130");
  }

  // The process that a second run names as the one that is at the printer.
  pid_t holder() const {
    const Outcome second = update();
    std::smatch found;
    const std::regex named(
        R"(failed: The program fwupdatectl \(([0-9]+)\) is using this printer\. )"
        R"(Wait until it has finished, then try again\.\n$)");
    EXPECT_TRUE(std::regex_search(second.errors, found, named)) << second.errors;
    EXPECT_EQ(second.status, 1);
    return found.empty() ? -1 : std::stoi(found[1]);
  }

  VirtualPrinterProcess mPrinter{
      {"--fault", "silence@id-request", "--faulty-conversations", "1", "--burn-seconds", "0.1"}};
  const std::string mAddress = "127.0.0.1:" + std::to_string(mPrinter.port());
  std::optional<ToolProcess> mFirst;
};

TEST_F(FwupdatectlLock, SecondDoesNotStartAndSaysWhoIsAtThePrinter) {
  startFirst();
  std::ifstream arguments("/proc/" + std::to_string(holder()) + "/cmdline");
  EXPECT_THAT((std::string{std::istreambuf_iterator<char>(arguments), {}}),
              testing::HasSubstr(mAddress));
  endFirst();
  mPrinter.stop();
  EXPECT_EQ(mPrinter.entries("connected").size(), 1u);
}

TEST_F(FwupdatectlLock, LogSaysItInFull) {
  startFirst();
  EXPECT_THAT(
      update("--verbose").errors,
      testing::ContainsRegex("General runtime error occurred during async task: The printer "
                             "is in use by fwupdatectl \\(process [0-9]+\\)\\.\n"));
  endFirst();
}

TEST_F(FwupdatectlLock, EndsWithAKilledProcess) {
  startFirst();
  ASSERT_EQ(kill(holder(), SIGKILL), 0);
  mFirst->readUntil(label() + "failed: The update ended unexpectedly: Killed.");
  const Outcome next = update();
  EXPECT_EQ(next.errors, "");
  EXPECT_EQ(next.status, 0);
  mPrinter.waitFor("burn");
}

// A question for the version, and updates. --------------------------------------------------------

class FwupdatectlLockOfAQuestion : public testing::Test {
 protected:
  explicit FwupdatectlLockOfAQuestion(const std::vector<std::string>& options =
                                          {"--fault", "delay@id-request=4000",
                                           "--faulty-conversations", "1", "--burn-seconds", "0.1"})
      : mPrinter(options) {}

  std::string question() const {
    return R"(--worker '{"connection":"network","name":"Office","address":")" + mAddress +
           R"(","work":"version"}')";
  }

  VirtualPrinterProcess mPrinter;
  const std::string mAddress = addressOf(mPrinter);
};

TEST_F(FwupdatectlLockOfAQuestion, UpdateThatComesMeanwhileWaitsForItsEnd) {
  ToolProcess asking(kTool, question());
  mPrinter.waitFor("fault");
  const Outcome outcome = update("--yes --verbose --address " + mAddress);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.errors,
              testing::ContainsRegex("Waiting for fwupdatectl \\(process [0-9]+\\), which asks "
                                     "the printer something\\."));
  asking.readUntil("status 0");
  mPrinter.stop();
  std::vector<std::string> told;
  for (const auto& entry : mPrinter.journal()) {
    const std::string event = entry.at("event");
    if (event == "connected" || event == "closed" || event == "burn") told.push_back(event);
  }
  EXPECT_THAT(told, testing::ElementsAre("connected", "closed", "connected", "burn", "closed"));
}

TEST_F(FwupdatectlLockOfAQuestion, AnotherQuestionWaitsForItsEnd) {
  ToolProcess asking(kTool, question());
  mPrinter.waitFor("fault");
  const Outcome outcome = tool(question());
  EXPECT_THAT(outcome.output, testing::HasSubstr(R"("event":"version","version":100)"));
  EXPECT_EQ(outcome.status, 0);
  asking.readUntil("status 0");
}

class FwupdatectlLockBeforeAQuestion : public FwupdatectlLockOfAQuestion {
 protected:
  FwupdatectlLockBeforeAQuestion() : FwupdatectlLockOfAQuestion({"--burn-seconds", "8"}) {}
};

TEST_F(FwupdatectlLockBeforeAQuestion, NothingIsAskedDuringAnUpdate) {
  ToolProcess updating(kTool, "update --yes --address " + mAddress);
  mPrinter.waitFor("burning");
  const Outcome outcome = tool(question());
  EXPECT_THAT(outcome.output,
              testing::ContainsRegex(R"("event":"cause","cause":"The program fwupdatectl )"
                                     R"(\([0-9]+\) is using this printer\.","next_step":"Wait )"
                                     R"(until it has finished, then try again\.","in_use":true)"));
  EXPECT_EQ(outcome.status, 1);
  updating.readUntil("status 0");
  mPrinter.stop();
  EXPECT_EQ(mPrinter.entries("connected").size(), 1u);
}

}  // namespace
