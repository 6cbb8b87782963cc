#include "WorkerProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

#include "JsonLines.h"
#include "openFiles.h"
#include "workerEvent.h"

using nlohmann::ordered_json;

namespace {

// A process may be in a send, which takes 5 seconds at most.
constexpr std::chrono::seconds kLongestEnd{8};

void check(int error) {
  if (error != 0)
    throw std::system_error(error, std::generic_category(), "Unable to start a process");
}

class FileActions {
 public:
  FileActions() { check(posix_spawn_file_actions_init(&mActions)); }
  ~FileActions() { posix_spawn_file_actions_destroy(&mActions); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void place(int descriptor, int number) {
    check(posix_spawn_file_actions_adddup2(&mActions, descriptor, number));
  }
  void placeNothingAt(int number) {
    check(posix_spawn_file_actions_addopen(&mActions, number, "/dev/null", O_RDONLY, 0));
  }
  const posix_spawn_file_actions_t* get() const { return &mActions; }

 private:
  posix_spawn_file_actions_t mActions{};
};

class Attributes {
 public:
  Attributes() {
    check(posix_spawnattr_init(&mAttributes));
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&mAttributes, &none);
    posix_spawnattr_setpgroup(&mAttributes, 0);
    posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  }
  ~Attributes() { posix_spawnattr_destroy(&mAttributes); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  const posix_spawnattr_t* get() const { return &mAttributes; }

 private:
  posix_spawnattr_t mAttributes{};
};

pid_t spawn(const ordered_json& order, const Pipe& events, const Pipe& log,
            std::span<const platform::SealedFile> images) {
  FileActions actions;
  actions.placeNothingAt(STDIN_FILENO);
  actions.place(events.writeEnd(), STDOUT_FILENO);
  actions.place(log.writeEnd(), STDERR_FILENO);
  // Where it is already: so it stays open in the new process.
  for (const auto& each : images) actions.place(each.descriptor(), each.descriptor());
  const Attributes attributes;
  std::string program = "fwupdatectl";
  std::string option = "--worker";
  std::string json = order.dump(-1, ' ', true, ordered_json::error_handler_t::replace);
  char* const arguments[] = {program.data(), option.data(), json.data(), nullptr};
  pid_t process = -1;
  check(
      posix_spawn(&process, "/proc/self/exe", actions.get(), attributes.get(), arguments, environ));
  return process;
}

ordered_json orderOf(const Target& target, WorkerProcess::Work work,
                     std::span<const platform::SealedFile> images) {
  ordered_json order = toJson(target);
  order["work"] = work == WorkerProcess::Work::Update ? "update" : "version";
  order["images"] = ordered_json::array();
  for (const auto& each : images) order["images"].push_back(each.descriptor());
  return order;
}

}  // namespace

WorkerProcess::WorkerProcess(platform::RunLoop& runLoop, const Target& target, Work work,
                             std::span<const platform::SealedFile> images, Listener listener)
    : mRunLoop(runLoop),
      mListener(std::move(listener)),
      mProcess(spawn(orderOf(target, work, images), mEvents, mLog, images)) {
  giveBackOpenFiles(mProcess);
  try {
    watchProcess();
  } catch (...) {
    // Nobody would hear of what it does.
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
    closeDescriptor();
    throw;
  }
}

void WorkerProcess::watchProcess() {
  mEvents.startReading(mRunLoop, [this] { readEvents(); });
  mLog.startReading(mRunLoop, [this] { readLog(); });
  mProcessDescriptor = static_cast<int>(syscall(SYS_pidfd_open, mProcess, 0));
  if (mProcessDescriptor < 0) check(errno);
  mProcessWatch = mRunLoop.watch(mProcessDescriptor, platform::RunLoop::Interest::Readable,
                                 [this] { processEnded(); });
}

void WorkerProcess::closeDescriptor() {
  if (mProcessDescriptor >= 0) close(std::exchange(mProcessDescriptor, -1));
}

WorkerProcess::~WorkerProcess() {
  mProcessWatch.reset();
  closeDescriptor();
}

void WorkerProcess::terminate() {
  if (!mProcessWatch || mEndByForce) return;
  kill(mProcess, SIGTERM);
  kill(mProcess, SIGCONT);  // one that is stopped could not heed it
  mEndByForce = mRunLoop.startTimer(kLongestEnd, false, [this] { kill(mProcess, SIGKILL); });
}

void WorkerProcess::readEvents() {
  for (const std::string& line : mEvents.takeLines()) {
    if (const auto event = workerEvent(line)) mListener.told(*event);
  }
  endWhenAllIsRead();
}

void WorkerProcess::readLog() {
  for (const std::string& line : mLog.takeLines()) mListener.logged(line);
  endWhenAllIsRead();
}

void WorkerProcess::processEnded() {
  int status = 0;
  if (waitpid(mProcess, &status, WNOHANG) != mProcess) return;
  mStatus = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
  mProcessWatch.reset();
  mEndByForce.reset();
  endWhenAllIsRead();
}

// What it wrote may still be on its way when it is gone.
void WorkerProcess::endWhenAllIsRead() {
  if (mProcessWatch || !mEvents.isAtEnd() || !mLog.isAtEnd()) return;
  const auto ended = mListener.ended;  // outlives this object
  ended(mStatus);
}
