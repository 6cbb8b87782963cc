// Updates printers, each in a process of its own, some of them at a time.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Target.h"
#include "UpdateReport.h"
#include "WorkerProcess.h"
#include "platform/RunLoop.h"

class UpdateRun {
 public:
  // `runLoop` and `report` must outlive it.
  UpdateRun(platform::RunLoop& runLoop, UpdateReport& report, std::vector<Target> targets,
            std::size_t jobs);
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
  };

  void startJobs();
  void startJob(const Target& target);
  void told(Job& job, const nlohmann::ordered_json& event);
  void logged(Job& job, const std::string& line);
  void ended(std::size_t number, int status);

  platform::RunLoop& mRunLoop;
  UpdateReport& mReport;
  std::deque<Target> mWaiting;
  std::size_t mJobsAtOnce;
  std::map<std::size_t, Job> mJobs;  // by their numbers
  std::size_t mLastNumber = 0;
  bool mIsInterrupted = false;
  bool mIsTerminated = false;
  std::function<void()> mDone;
};
