#include "platform/Diagnostics.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

#include "platform/LogHistory.h"

namespace platform {
namespace {

constexpr std::chrono::milliseconds kPatience{1000};

}  // namespace

Diagnostics::Diagnostics(RunLoop& runLoop, std::string programVersion,
                         std::vector<Library> libraries, PersonalNames hidden)
    : mRunLoop(runLoop),
      mProgramVersion(std::move(programVersion)),
      mLibraries(std::move(libraries)),
      mHidden(std::move(hidden)) {}

void Diagnostics::add(std::string title, Lines lines) {
  mParts.push_back({std::move(title), std::move(lines), nullptr, nullptr, ""});
}

void Diagnostics::addAnswer(std::string title, Ask ask) {
  mParts.push_back({std::move(title), nullptr, std::move(ask), nullptr, ""});
}

void Diagnostics::report(const LogHistory* log,
                         std::function<void(const std::string& report)> done) {
  mLog = log;
  mDone = std::move(done);
  mTimer = mRunLoop.startTimer(kPatience, false, [this] { finish(); });
  askAll();
}

// Whoever is not there is not waited for.
void Diagnostics::askAll() {
  for (std::size_t i = 0; i < mParts.size(); ++i) {
    if (!mParts[i].ask) continue;
    mParts[i].answer.clear();
    mParts[i].question = mParts[i].ask([this, i](const std::string& answer) {
      mParts[i].answer = answer;
      finishWhenAnswered();
    });
    if (mParts[i].question == nullptr) mParts[i].answer = "nobody to ask";
  }
  finishWhenAnswered();
}

void Diagnostics::finishWhenAnswered() {
  const bool waits =
      std::ranges::any_of(mParts, [](const Part& part) { return part.ask && part.answer.empty(); });
  if (!waits)
    mTimer = mRunLoop.startTimer(std::chrono::milliseconds(0), false, [this] { finish(); });
}

void Diagnostics::finish() {
  mTimer.reset();
  const std::string report = redacted(text(), mHidden);
  for (Part& part : mParts) part.question.reset();
  mDone(report);
}

std::string Diagnostics::text() const {
  std::string text = "Firmware updater " + mProgramVersion + '\n';
  for (const auto& [name, version] : mLibraries) {
    text.append(name).append(" ").append(version).append("\n");
  }
  for (const Part& part : mParts) {
    text += '\n' + part.title + ":\n";
    const std::string answer = part.answer.empty() ? "no answer" : part.answer;
    const auto lines = part.lines ? part.lines() : std::vector<std::string>{answer};
    for (const std::string& line : lines) text += "  " + line + '\n';
    if (lines.empty()) text += "  none\n";
  }
  text += "\nLog:\n";
  if (mLog == nullptr) return text;
  for (const LogHistory::Entry& entry : mLog->entries()) text += "  " + lineOf(entry) + '\n';
  return text;
}

}  // namespace platform
