// What a FakeUsbRegistry was asked, call by call, and what a test wants single calls to answer.
#pragma once

#include <string>
#include <vector>

#include "platform/UsbRegistry.h"

class FakeUsbRecord {
 public:
  struct Answer {
    platform::IOReturn result = platform::kIOReturnSuccess;
    bool withObject = true;  // what the call is to give, if anything, is given
  };

  // The next call that is `call`, or begins with it and a blank, gets this answer. Each answer is
  // used once, those for the same call in the order in which they were given.
  void script(const std::string& call, Answer answer);

  // Notes the call and says how to answer it: as scripted, or else with `usual`.
  Answer note(const std::string& call, platform::IOReturn usual = platform::kIOReturnSuccess);

  // The calls so far, which are then forgotten.
  std::vector<std::string> takeCalls();

  // Notes that something went wrong that no caller sees.
  void complain(const std::string& problem) { mProblems.push_back(problem); }

  // Complaints, and scripted answers that nobody asked for.
  std::vector<std::string> problems() const;

 private:
  struct Scripted {
    std::string call;
    Answer answer;
  };

  std::vector<Scripted> mScript;
  std::vector<std::string> mCalls;
  std::vector<std::string> mProblems;
};
