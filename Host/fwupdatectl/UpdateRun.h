// Updates printers, each in a process of its own, some of them at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DownloadLimit.h"
#include "ReturnWatch.h"
#include "Target.h"
#include "UpdateReport.h"
#include "WorkerProcess.h"
#include "platform/RunLoop.h"
#include "platform/posix/SealedFile.h"

class UpdateRun {
 public:
  struct Settings {
    std::size_t jobs = 1;
    std::vector<platform::SealedFile> images{};
    std::optional<std::chrono::milliseconds> timeout{};  // of one download
    // How long a printer that has restarted is waited for; not at all when there is none.
    std::optional<std::chrono::milliseconds> returnWait{};
    ReturnWatch::Locate locate{};
  };

  // `runLoop` and `report` must outlive it.
  UpdateRun(platform::RunLoop& runLoop, UpdateReport& report, const std::vector<Target>& targets,
            Settings settings);
  ~UpdateRun();

  // `done` is called from the loop when no printer is left.
  void start(std::function<void()> done);

  // Starts no further printer, and lets what has begun end.
  void startNoMore();

  // Ends what has begun, too.
  void terminate();

  bool isInterrupted() const { return mIsInterrupted; }

 private:
  struct Job {
    Target target;
    UpdateResult result;
    std::unique_ptr<WorkerProcess> process;
    std::unique_ptr<DownloadLimit> limit;
    std::unique_ptr<ReturnWatch> watch;
  };

  void startJobs();
  // False where the host cannot start it as long as those run that there are.
  bool startJob(const Target& target);
  void told(Job& job, const nlohmann::ordered_json& event);
  void logged(Job& job, const std::string& line);
  void ended(std::size_t number, int status);
  void awaitReturn(std::size_t number);
  void returned(std::size_t number, std::optional<unsigned int> version);
  void finish(std::size_t number);

  platform::RunLoop& mRunLoop;
  UpdateReport& mReport;
  std::deque<Target> mWaiting;
  Settings mSettings;
  std::map<std::size_t, Job> mJobs;  // by their numbers
  std::size_t mLastNumber = 0;
  bool mIsInterrupted = false;
  bool mIsTerminated = false;
  std::function<void()> mDone;
};
