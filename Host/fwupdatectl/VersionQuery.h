// Asks one printer for its version, in a process of its own: nothing that the printer answers, or
// does not answer, harms who asks. Nothing is written to the printer but the question.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Target.h"
#include "WorkerProcess.h"
#include "platform/RunLoop.h"

class VersionQuery {
 public:
  struct Firmware {
    std::string file;
    unsigned int version = 0;  // 0 for a damaged file, which no printer gets
  };

  struct Answer {
    std::optional<unsigned int> version;  // none when the printer did not answer
    std::optional<Firmware> firmware;     // the file that a download would choose
    std::string cause;                    // why one of them is missing: a sentence, or empty
    std::string nextStep;
    bool isInUse = false;  // another program of this computer is at the printer

    // Whether a download would send the file.
    bool isFirmwareNewer() const { return version && firmware && *version < firmware->version; }
  };

  // `answered` is called once, from the loop, at the latest after `patience`; the object may be
  // destroyed from there. Throws std::system_error when the host cannot start a process. `runLoop`
  // must outlive it.
  VersionQuery(platform::RunLoop& runLoop, const Target& printer,
               std::chrono::milliseconds patience,
               std::function<void(const Answer& answer)> answered);

  // Whoever still asks is asked to stop.
  ~VersionQuery();

  VersionQuery(const VersionQuery&) = delete;
  VersionQuery& operator=(const VersionQuery&) = delete;

 private:
  void told(const nlohmann::ordered_json& event);
  void logged(const std::string& line);
  void ended(int status);
  void runOutOfPatience();
  void answer();

  std::chrono::milliseconds mPatience;
  std::function<void(const Answer&)> mAnswered;
  Answer mAnswer;
  std::string mError;
  WorkerProcess mProcess;
  std::unique_ptr<platform::RunLoop::Timer> mEndOfPatience;
};
