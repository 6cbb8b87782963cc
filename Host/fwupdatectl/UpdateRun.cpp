#include "UpdateRun.h"

#include <system_error>
#include <utility>

#include "causeOfDeath.h"

namespace {

constexpr const char* kInterruption =
    "Interrupted. What the printer has received, it may still be writing to its memory.";

}  // namespace

UpdateRun::UpdateRun(platform::RunLoop& runLoop, UpdateReport& report, std::vector<Target> targets,
                     std::size_t jobs)
    : mRunLoop(runLoop),
      mReport(report),
      mWaiting(targets.begin(), targets.end()),
      mJobsAtOnce(jobs) {}

UpdateRun::~UpdateRun() = default;

void UpdateRun::start(std::function<void()> done) {
  mDone = std::move(done);
  mRunLoop.callLater([this] { startJobs(); });
}

void UpdateRun::startJobs() {
  while (!mWaiting.empty() && mJobs.size() < mJobsAtOnce) {
    const Target next = std::move(mWaiting.front());
    mWaiting.pop_front();
    startJob(next);
  }
  if (mWaiting.empty() && mJobs.empty()) mDone();
}

void UpdateRun::startJob(const Target& target) {
  const std::size_t number = ++mLastNumber;
  Job& job = mJobs[number];
  job.target = target;
  mReport.began(target);
  try {
    job.process = std::make_unique<WorkerProcess>(
        mRunLoop, target, WorkerProcess::Work::Update,
        WorkerProcess::Listener{
            [this, &job](const nlohmann::ordered_json& event) { told(job, event); },
            [this, &job](const std::string& line) { logged(job, line); },
            [this, number](int status) { ended(number, status); }});
  } catch (const std::system_error& error) {
    job.result.cause = error.what();
    mReport.ended(target, job.result);
    mJobs.erase(number);
  }
}

void UpdateRun::told(Job& job, const nlohmann::ordered_json& event) {
  const std::string kind = event.value("event", "");
  if (kind == "versions") {
    job.result.versionBefore = event.value("version_before", 0U);
    job.result.versionOfFirmware = event.value("version_of_firmware", 0U);
  } else if (kind == "error" || kind == "failure") {
    job.result.error = event.value("message", "");
  } else if (kind == "cause") {
    job.result.cause = event.value("cause", "");
    job.result.nextStep = event.value("next_step", "");
    job.result.isNotPermitted = event.value("not_permitted", false);
  } else if (kind == "outcome") {
    const std::string outcome = event.value("outcome", "");
    if (outcome == "updated") job.result.outcome = UpdateResult::Outcome::Updated;
    if (outcome == "up-to-date") job.result.outcome = UpdateResult::Outcome::UpToDate;
  }
  mReport.told(job.target, event);
}

void UpdateRun::logged(Job& job, const std::string& line) {
  std::string assertion = assertionIn(line);
  if (!assertion.empty()) job.result.error = std::move(assertion);
  mReport.logged(job.target, line);
}

void UpdateRun::ended(std::size_t number, int status) {
  const auto job = mJobs.extract(number);
  UpdateResult& result = job.mapped().result;
  if (status != 0) {
    result.outcome = UpdateResult::Outcome::Failed;
    if (mIsTerminated) {
      result.cause = kInterruption;
      result.nextStep.clear();
    }
    if (result.cause.empty()) result.cause = causeOfDeath("The update", status, result.error);
  }
  mReport.ended(job.mapped().target, result);
  startJobs();
}

void UpdateRun::startNoMore() {
  mIsInterrupted = true;
  for (const Target& left : std::exchange(mWaiting, {})) {
    mReport.ended(left, {.outcome = UpdateResult::Outcome::NotStarted});
  }
}

void UpdateRun::terminate() {
  startNoMore();
  mIsTerminated = true;
  for (const auto& [number, job] : mJobs) job.process->terminate();
}
