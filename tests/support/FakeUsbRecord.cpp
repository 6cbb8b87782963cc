#include "FakeUsbRecord.h"

#include <algorithm>
#include <utility>

void FakeUsbRecord::script(const std::string& call, Answer answer) {
  mScript.push_back({call, answer});
}

FakeUsbRecord::Answer FakeUsbRecord::note(const std::string& call, platform::IOReturn usual) {
  mCalls.push_back(call);
  const auto found = std::find_if(mScript.begin(), mScript.end(), [&call](const Scripted& s) {
    return call == s.call || call.starts_with(s.call + " ");
  });
  if (found == mScript.end()) return {usual, usual == platform::kIOReturnSuccess};
  const Answer answer = found->answer;
  mScript.erase(found);
  return answer;
}

std::vector<std::string> FakeUsbRecord::takeCalls() { return std::exchange(mCalls, {}); }

std::vector<std::string> FakeUsbRecord::problems() const {
  std::vector<std::string> problems = mProblems;
  for (const Scripted& scripted : mScript) problems.push_back("never called: " + scripted.call);
  return problems;
}
