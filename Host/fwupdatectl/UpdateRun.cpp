#include "UpdateRun.h"

#include <system_error>
#include <utility>

#include "JsonLines.h"
#include "causeOfDeath.h"
#include "inSeconds.h"

namespace {

constexpr const char* kInterruptedCause =
    "Interrupted. What the printer has received, it may still be writing to its memory.";

}  // namespace

UpdateRun::UpdateRun(platform::RunLoop& runLoop, UpdateReport& report,
                     const std::vector<Target>& targets, Settings settings)
    : mRunLoop(runLoop),
      mReport(report),
      mWaiting(targets.begin(), targets.end()),
      mSettings(std::move(settings)) {}

UpdateRun::~UpdateRun() = default;

void UpdateRun::start(std::function<void()> done) {
  mDone = std::move(done);
  mRunLoop.callLater([this] { startJobs(); });
}

void UpdateRun::startJobs() {
  while (!mWaiting.empty() && mJobs.size() < mSettings.jobs && startJob(mWaiting.front())) {
    mWaiting.pop_front();
  }
  if (mWaiting.empty() && mJobs.empty()) mDone();
}

bool UpdateRun::startJob(const Target& target) {
  const std::size_t number = ++mLastNumber;
  Job& job = mJobs[number];
  job.target = target;
  try {
    if (mSettings.timeout) {
      job.limit = std::make_unique<DownloadLimit>(mRunLoop, *mSettings.timeout,
                                                  [&job] { job.process->terminate(); });
    }
    job.process = std::make_unique<WorkerProcess>(
        mRunLoop, target, WorkerProcess::Work::Update, mSettings.images,
        WorkerProcess::Listener{
            [this, &job](const nlohmann::ordered_json& event) { told(job, event); },
            [this, &job](const std::string& line) { logged(job, line); },
            [this, number](int status) { ended(number, status); }});
    mReport.began(target);
  } catch (const std::system_error& error) {
    mJobs.erase(number);
    if (!mJobs.empty()) {
      mSettings.jobs = mJobs.size();
      return false;
    }
    mReport.began(target);
    mReport.ended(target, {.cause = error.what()});
  }
  return true;
}

void UpdateRun::told(Job& job, const nlohmann::ordered_json& event) {
  const std::string kind = event.value("event", "");
  if (job.limit) job.limit->told(event);
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
  Job& job = mJobs.at(number);
  UpdateResult& result = job.result;
  if (status != 0) {
    result.outcome = UpdateResult::Outcome::Failed;
    if (mIsTerminated) {
      result.cause = kInterruptedCause;
      result.nextStep.clear();
    } else if (job.limit && job.limit->isOver()) {
      const nlohmann::ordered_json why = toJson(job.limit->cause());
      result.cause = why.at("cause");
      result.nextStep = why.at("next_step");
    }
  }
  if (result.outcome == UpdateResult::Outcome::Failed && result.cause.empty()) {
    result.cause = causeOfDeath("The update", status, result.error);
  }
  job.limit.reset();
  if (result.outcome == UpdateResult::Outcome::Updated && mSettings.returnWait && !mIsTerminated) {
    awaitReturn(number);
  } else {
    finish(number);
  }
}

void UpdateRun::awaitReturn(std::size_t number) {
  Job& job = mJobs.at(number);
  mReport.told(job.target, jsonEvent("phase", {{"phase", "waiting-for-return"},
                                               {"bound_ms", mSettings.returnWait->count()}}));
  job.watch = std::make_unique<ReturnWatch>(
      mRunLoop, job.target, job.result.versionOfFirmware, mSettings.locate, *mSettings.returnWait,
      [this, number](std::optional<unsigned int> version) { returned(number, version); });
}

void UpdateRun::returned(std::size_t number, std::optional<unsigned int> version) {
  UpdateResult& result = mJobs.at(number).result;
  result.versionAfter = version;
  if (!version) {
    result.cause = "The printer did not come back within " + inSeconds(*mSettings.returnWait) + ".";
    result.nextStep = "Check that the printer is switched on and connected, then update it again.";
  } else if (*version < result.versionOfFirmware) {
    result.cause = "The printer came back with version " + std::to_string(*version) + ".";
    result.nextStep = "Switch the printer off and on, then try again.";
  }
  if (!result.cause.empty()) result.outcome = UpdateResult::Outcome::Failed;
  finish(number);
}

void UpdateRun::finish(std::size_t number) {
  const auto job = mJobs.extract(number);
  mReport.ended(job.mapped().target, job.mapped().result);
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
  std::vector<std::size_t> updated;
  for (const auto& [number, job] : mJobs) {
    job.process->terminate();
    if (job.watch) updated.push_back(number);
  }
  for (const std::size_t number : updated) {
    UpdateResult& result = mJobs.at(number).result;
    result.outcome = UpdateResult::Outcome::Failed;
    result.cause = "Interrupted before the printer was back.";
    finish(number);
  }
}
