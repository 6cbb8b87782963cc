// The record and the script of a double: every call in words, in order, and the statuses that calls
// are to answer with instead of acting.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Status.h"

class CallScript {
 public:
  // The next call of that name that is not scripted yet does nothing and answers `status`; with
  // noErr it succeeds without a result.
  void answerNext(const std::string& call, platform::OSStatus status);
  // The next call of that name that is not scripted yet acts normally.
  void passNext(const std::string& call);

  // Keeps "call(argument, argument)" and returns the answer that takes the call's place, if any.
  std::optional<platform::OSStatus> record(const std::string& call,
                                           const std::vector<std::string>& arguments);

  const std::vector<std::string>& calls() const { return mCalls; }
  // The calls so far, which are then forgotten.
  std::vector<std::string> takeCalls();

 private:
  std::vector<std::string> mCalls;
  std::map<std::string, std::deque<std::optional<platform::OSStatus>>> mAnswers;
};
