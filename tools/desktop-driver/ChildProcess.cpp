#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace desktop {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

[[noreturn]] void becomeCommand(const std::vector<std::string>& command, int output,
                                const ChildProcess::Environment& added) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  for (const auto& [name, value] : added) setenv(name.c_str(), value.c_str(), 1);

  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  execvp(arguments.front(), arguments.data());
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::filesystem::path& output, const Environment& added)
    : mOutput(output) {
  const int descriptor =
      open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644);
  if (descriptor < 0) throw std::runtime_error("cannot write " + output.string());
  mPid = fork();
  if (mPid == 0) becomeCommand(command, descriptor, added);
  close(descriptor);
  if (mPid < 0) throw std::runtime_error("cannot start " + command.front());
}

ChildProcess::~ChildProcess() {
  if (exitStatus()) return;
  signal(SIGTERM);
  if (waitForExit(2s)) return;
  ::kill(-mPid, SIGKILL);
  waitForExit(2s);
}

void ChildProcess::signal(int number) const {
  if (!mExitStatus) ::kill(mPid, number);
}

std::optional<int> ChildProcess::exitStatus() {
  if (mExitStatus) return mExitStatus;
  int status = 0;
  if (waitpid(mPid, &status, WNOHANG) == mPid) {
    mExitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return mExitStatus;
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds limit) {
  waitUntil([&] { return exitStatus().has_value(); }, limit);
  return mExitStatus;
}

std::string ChildProcess::output() const {
  std::ifstream file(mOutput, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

bool ChildProcess::waitForOutput(const std::string& text, std::chrono::milliseconds limit) {
  const auto written = [&] { return output().find(text) != std::string::npos; };
  waitUntil([&] { return written() || exitStatus(); }, limit);
  return written();
}

void pauseAfter(steady_clock::duration effort) {
  std::this_thread::sleep_for(std::clamp<steady_clock::duration>(effort, 5ms, 50ms));
}

}  // namespace desktop
