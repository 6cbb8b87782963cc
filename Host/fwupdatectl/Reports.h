// Two ways of showing an update, and the words that all of them use.
#pragma once

#include <ostream>
#include <string>

#include "UpdateReport.h"

// One line for each thing that happens, for files and pipes. Outcomes only, when `quiet`.
class PlainReport final : public UpdateReport {
 public:
  PlainReport(std::ostream& results, std::ostream& errors, bool quiet)
      : mResults(results), mErrors(errors), mQuiet(quiet) {}

  void began(const Target& printer) override;
  void told(const Target& printer, const nlohmann::ordered_json& event) override;
  void logged(const Target& printer, const std::string& line) override;
  void ended(const Target& printer, const UpdateResult& result) override;
  void summed(const UpdateTally& tally) override;

 private:
  std::ostream& mResults;
  std::ostream& mErrors;
  bool mQuiet;
};

// The lines of the downloads' own processes, each with its printer.
class JsonReport final : public UpdateReport {
 public:
  explicit JsonReport(std::ostream& out) : mOut(out) {}

  void began(const Target& printer) override;
  void told(const Target& printer, const nlohmann::ordered_json& event) override;
  void logged(const Target&, const std::string&) override {}
  void ended(const Target& printer, const UpdateResult& result) override;
  void summed(const UpdateTally& tally) override;

 private:
  std::ostream& mOut;
};

// Empty for an event that begins no phase.
std::string phaseOf(const nlohmann::ordered_json& event);

// "Office (10.0.0.5:9100)".
std::string labelOf(const Target& printer);

// "Office (10.0.0.5:9100): updated to version 200 (was 100)".
std::string sentenceOf(const Target& printer, const UpdateResult& result);

// "950 updated, 50 failed".
std::string sentenceOf(const UpdateTally& tally);
