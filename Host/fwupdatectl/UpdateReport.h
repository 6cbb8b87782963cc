// Shows what becomes of printers while they are updated. Who shows it decides how: for a person at
// a terminal, for a file, for a program.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Target.h"

struct UpdateResult {
  enum class Outcome { Updated, UpToDate, Failed, NotStarted };

  Outcome outcome = Outcome::Failed;
  unsigned int versionBefore = 0;  // both 0 where they did not become known
  unsigned int versionOfFirmware = 0;
  std::optional<unsigned int> versionAfter{};  // where it was asked for when the printer was back
  std::string cause{};  // of a failure, and what to do about it: each a sentence, or empty
  std::string nextStep{};
  bool isNotPermitted = false;  // this user may not use the printer's device
  std::string error{};          // the last one of the log; empty where there was none
};

// How many printers it ended in which way for.
struct UpdateTally {
  std::size_t updated = 0;
  std::size_t upToDate = 0;
  std::size_t failed = 0;
  std::size_t notStarted = 0;

  void count(UpdateResult::Outcome outcome);
  std::size_t all() const { return updated + upToDate + failed + notStarted; }
};

class UpdateReport {
 public:
  virtual ~UpdateReport() = default;

  virtual void began(const Target& printer) = 0;
  // What the download's process says, in the form of Worker.h.
  virtual void told(const Target& printer, const nlohmann::ordered_json& event) = 0;
  // A line of its log, where the log is asked for.
  virtual void logged(const Target& printer, const std::string& line) = 0;
  virtual void ended(const Target& printer, const UpdateResult& result) = 0;
  // After the last one of several printers.
  virtual void summed(const UpdateTally& tally) = 0;
};
