#include "VersionQuery.h"

#include <utility>

#include "causeOfDeath.h"
#include "inSeconds.h"

using nlohmann::ordered_json;

VersionQuery::VersionQuery(platform::RunLoop& runLoop, const Target& printer,
                           std::chrono::milliseconds patience,
                           std::function<void(const Answer&)> answered)
    : mPatience(patience),
      mAnswered(std::move(answered)),
      mProcess(runLoop, printer, WorkerProcess::Work::AskForVersion, {},
               WorkerProcess::Listener{[this](const ordered_json& event) { told(event); },
                                       [this](const std::string& line) { logged(line); },
                                       [this](int status) { ended(status); }}),
      mEndOfPatience(runLoop.startTimer(patience, false, [this] { runOutOfPatience(); })) {}

VersionQuery::~VersionQuery() { mProcess.terminate(); }

void VersionQuery::told(const ordered_json& event) {
  const std::string kind = event.value("event", "");
  if (kind == "cause") {
    mAnswer.cause = event.value("cause", "");
    mAnswer.nextStep = event.value("next_step", "");
    mAnswer.isInUse = event.value("in_use", false);
  } else if (kind == "failure") {
    mError = event.value("message", "");
  } else if (kind == "version") {
    mAnswer.version = event.value("version", 0U);
    const auto firmware = event.find("firmware");
    if (firmware == event.end()) return;
    mAnswer.firmware = {firmware->value("file", ""), firmware->value("version", 0U)};
  }
}

void VersionQuery::logged(const std::string& line) {
  std::string assertion = assertionIn(line);
  if (!assertion.empty()) mError = std::move(assertion);
}

void VersionQuery::ended(int status) {
  if (!mAnswer.version && mAnswer.cause.empty()) {
    mAnswer.cause = causeOfDeath("The question for the version", status, mError);
  }
  answer();
}

void VersionQuery::runOutOfPatience() {
  mProcess.terminate();
  if (!mAnswer.version) {
    mAnswer.cause = "The printer did not answer within " + inSeconds(mPatience) + ".";
    mAnswer.nextStep = "Wait until it has finished its other work, then try again.";
  }
  answer();
}

// The answer outlives this object.
void VersionQuery::answer() {
  mEndOfPatience.reset();
  const auto answered = std::exchange(mAnswered, nullptr);
  const Answer answer = std::move(mAnswer);
  if (answered) answered(answer);
}
