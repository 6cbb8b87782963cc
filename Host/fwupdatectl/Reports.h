// The three ways of showing an update.
#pragma once

#include <cstddef>
#include <list>
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

// For a person at a terminal: a line for each printer that is being updated, redrawn in place, with
// its phase and a bar, below the outcomes of the others. What is redrawn must not be higher than
// the terminal: of more printers those that began first are shown.
class TerminalReport final : public UpdateReport {
 public:
  TerminalReport(std::ostream& terminal, std::size_t rows, std::size_t columns)
      : mTerminal(terminal), mRows(rows), mColumns(columns) {}

  void began(const Target& printer) override;
  void told(const Target& printer, const nlohmann::ordered_json& event) override;
  void logged(const Target& printer, const std::string& line) override;
  void ended(const Target& printer, const UpdateResult& result) override;
  void summed(const UpdateTally& tally) override;

 private:
  struct Line {
    Target printer;
    std::string phase;
    std::size_t bytes = 0;
    std::size_t total = 0;
  };

  Line* lineOf(const Target& printer);
  void erase();
  void draw();
  std::string textOf(const Line& line) const;

  std::ostream& mTerminal;
  std::size_t mRows;
  std::size_t mColumns;
  std::list<Line> mLines;
  std::size_t mDrawn = 0;
};

// "Office (10.0.0.5:9100)".
std::string labelOf(const Target& printer);

// "Office (10.0.0.5:9100): updated to version 200 (was 100)".
std::string sentenceOf(const Target& printer, const UpdateResult& result);

// "950 updated, 50 failed".
std::string sentenceOf(const UpdateTally& tally);
