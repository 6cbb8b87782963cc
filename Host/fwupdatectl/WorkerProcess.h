// A process of this program that does one download (see Worker.h), or asks one printer for its
// version (see VersionWorker.h), as its parent sees it. It is in
// a process group of its own: what a user's terminal sends to the parent does not reach it.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "Pipe.h"
#include "Target.h"
#include "platform/RunLoop.h"
#include "platform/posix/SealedFile.h"

class WorkerProcess {
 public:
  enum class Work { Update, AskForVersion };

  struct Listener {
    std::function<void(const nlohmann::ordered_json& event)> told;
    std::function<void(const std::string& line)> logged;  // a line of its standard error
    // Its exit status, or a negated signal. The object may be destroyed from here.
    std::function<void(int status)> ended;
  };

  // Starts it; it takes firmware from `images` where they have it. Throws std::system_error when
  // the host cannot. `runLoop` must outlive the object.
  WorkerProcess(platform::RunLoop& runLoop, const Target& target, Work work,
                std::span<const platform::SealedFile> images, Listener listener);
  ~WorkerProcess();  // a process that still runs goes on by itself
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  // Asks it to end at once, in good order, and ends it by force where it does not.
  void terminate();

 private:
  void watchProcess();
  void closeDescriptor();
  void readEvents();
  void readLog();
  void processEnded();
  void endWhenAllIsRead();

  platform::RunLoop& mRunLoop;
  Listener mListener;
  Pipe mEvents;
  Pipe mLog;
  pid_t mProcess = -1;
  int mProcessDescriptor = -1;
  std::unique_ptr<platform::RunLoop::Watch> mProcessWatch;
  std::unique_ptr<platform::RunLoop::Timer> mEndByForce;
  int mStatus = 0;
};
