// A program that runs beside this one: its output goes to a file, and it ends with this object.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

class ChildProcess {
 public:
  using Environment = std::vector<std::pair<std::string, std::string>>;

  // Starts `command` (looked up in PATH) with `added` variables on top of this program's. Standard
  // output and error go to `output`, which is written anew. Throws std::runtime_error.
  ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
               const Environment& added = {});

  // Ends the child and what it started: SIGTERM, after two seconds SIGKILL.
  ~ChildProcess();

  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return mPid; }
  void signal(int number) const;

  // The exit status (128 + number for a signal), or nothing while it runs.
  std::optional<int> exitStatus();
  std::optional<int> waitForExit(std::chrono::milliseconds limit);

  // Everything that the child has written so far.
  std::string output() const;

  // Waits until the output holds `text`; false when the limit passes or the child ends without.
  bool waitForOutput(const std::string& text, std::chrono::milliseconds limit);

 private:
  std::filesystem::path mOutput;
  pid_t mPid = -1;
  std::optional<int> mExitStatus;
};

// Calls `condition` every few milliseconds until it holds; false when the limit passes first. A
// condition that takes longer is asked less often, so that what it waits for gets the processors,
// too.
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit);

// Between two looks, when the one before took `effort`.
void pauseAfter(std::chrono::steady_clock::duration effort);

template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit) {
  using std::chrono::steady_clock;
  const auto deadline = steady_clock::now() + limit;
  for (auto asked = steady_clock::now(); !condition(); asked = steady_clock::now()) {
    if (steady_clock::now() > deadline) return false;
    pauseAfter(steady_clock::now() - asked);
  }
  return true;
}

}  // namespace desktop
