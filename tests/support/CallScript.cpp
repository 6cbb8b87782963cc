#include "CallScript.h"

#include <utility>

void CallScript::answerNext(const std::string& call, platform::OSStatus status) {
  mAnswers[call].emplace_back(status);
}

void CallScript::passNext(const std::string& call) { mAnswers[call].emplace_back(std::nullopt); }

std::optional<platform::OSStatus> CallScript::record(const std::string& call,
                                                     const std::vector<std::string>& arguments) {
  std::string entry = call + "(";
  for (const std::string& argument : arguments) {
    if (!entry.ends_with('(')) entry += ", ";
    entry += argument;
  }
  mCalls.push_back(entry + ")");

  auto& answers = mAnswers[call];
  if (answers.empty()) return std::nullopt;
  const std::optional<platform::OSStatus> answer = answers.front();
  answers.pop_front();
  return answer;
}

std::vector<std::string> CallScript::takeCalls() { return std::exchange(mCalls, {}); }
