// What somebody who is to help wants to know: the program, its libraries, the machine, and the last
// entries of the log. Whoever knows a part of it adds it; a window or a tool asks for the whole.
// Nothing is looked up before that. main() owns it.
//
// The report is in English, as the log is, and about nobody, see Redaction.h. Names and addresses
// of printers stay in it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Redaction.h"
#include "platform/RunLoop.h"

namespace platform {

class LogHistory;

class Diagnostics {
 public:
  struct Library {
    std::string name;
    std::string version;
  };

  using Lines = std::function<std::vector<std::string>()>;

  // To whoever may take long to answer, or never does. Destroying it ends it. The answer comes from
  // the run loop, once.
  class Question {
   public:
    virtual ~Question() = default;
  };
  using Answer = std::function<void(const std::string& answer)>;
  using Ask = std::function<std::unique_ptr<Question>(Answer answer)>;

  // `runLoop` must outlive it.
  Diagnostics(RunLoop& runLoop, std::string programVersion, std::vector<Library> libraries,
              PersonalNames hidden);

  const std::string& programVersion() const { return mProgramVersion; }
  const std::vector<Library>& libraries() const { return mLibraries; }

  // A part of the report under a title of its own.
  void add(std::string title, Lines lines);

  // The part whose one line is the answer. `ask` returns null when there is nobody to ask.
  void addAnswer(std::string title, Ask ask);

  // `done` gets the report from the run loop, after a second at most. A report that is still being
  // made is dropped. `log` may be null.
  void report(const LogHistory* log, std::function<void(const std::string& report)> done);

 private:
  struct Part {
    std::string title;
    Lines lines;
    Ask ask;
    std::unique_ptr<Question> question;
    std::string answer;
  };

  void askAll();
  void finishWhenAnswered();
  void finish();
  std::string text() const;

  RunLoop& mRunLoop;
  const std::string mProgramVersion;
  const std::vector<Library> mLibraries;
  const PersonalNames mHidden;
  std::vector<Part> mParts;
  const LogHistory* mLog = nullptr;
  std::function<void(const std::string&)> mDone;
  std::unique_ptr<RunLoop::Timer> mTimer;
};

}  // namespace platform
