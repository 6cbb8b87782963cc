// Updates more printers at a time than the host lets the tool start processes or open files for.
#include <gmock/gmock.h>

#include <memory>
#include <random>

#include "Tool.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class FwupdatectlLimits : public testing::Test {
 protected:
  // What comes of updating four printers at once, started by `launcher`.
  Outcome updateAll(const std::string& launcher) {
    std::string addresses;
    for (int i = 0; i < 4; ++i) {
      mPrinters.push_back(std::make_unique<VirtualPrinterProcess>(
          std::vector<std::string>{"--burn-seconds", "0.1"}));
      addresses += " --address " + addressOf(*mPrinters.back());
    }
    return runInShell(launcher + kToolInShell + " update --yes --jobs 300" + addresses +
                      " </dev/null");
  }

  // As somebody who runs nothing else: each test that runs at the time has its own. The search for
  // leaks would be one process more.
  static std::string withProcesses(int count) {
    std::random_device chance;
    const std::string somebody =
        std::to_string(std::uniform_int_distribution(100'000, 1'000'000'000)(chance));
    return "ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 prlimit --nproc=" + std::to_string(count) +
           " setpriv --reuid=" + somebody + " --regid=" + somebody + " --clear-groups ";
  }

  std::vector<std::unique_ptr<VirtualPrinterProcess>> mPrinters;
};

TEST_F(FwupdatectlLimits, FewOpenFilesMeanFewAtATime) {
  const Outcome outcome = updateAll("ulimit -n 30; ");
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(linesOf(outcome.output).back(), "4 updated");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(FwupdatectlLimits, ProcessesHaveTheLimitThatTheToolHad) {
  VirtualPrinterProcess printer({"--fault", "silence@id-request"});
  const Outcome outcome =
      runInShell("ulimit -Sn 300; " + kToolInShell + " update --yes --timeout 1 --address " +
                 addressOf(printer) +
                 " </dev/null >&2 & tool=$!; "
                 "until worker=$(cat /proc/$tool/task/$tool/children) && [ -n \"$worker\" ] && "
                 "grep -q worker /proc/${worker% }/cmdline; do :; done; "
                 "until grep -q 'Max open files *300 ' /proc/${worker% }/limits; do :; done; "
                 "grep -c 'Max open files *300 ' /proc/$tool/limits /proc/${worker% }/limits | "
                 "sed 's/.*://'; wait");
  EXPECT_THAT(linesOf(outcome.output), ElementsAre("0", "1"));
}

TEST_F(FwupdatectlLimits, FewProcessesMeanFewAtATime) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  const Outcome outcome = updateAll(withProcesses(3));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(linesOf(outcome.output).back(), "4 updated");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(FwupdatectlLimits, WithoutProcessesEachPrinterFails) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  const Outcome outcome = updateAll(withProcesses(1));
  EXPECT_EQ(outcome.status, 1);
  const auto errors = linesOf(outcome.errors);
  ASSERT_EQ(errors.size(), 4u);
  for (const std::string& error : errors) {
    EXPECT_THAT(error, HasSubstr("failed: Unable to start a process: Resource temporarily "
                                 "unavailable"));
  }
  EXPECT_EQ(linesOf(outcome.output).back(), "4 failed");
}

}  // namespace
