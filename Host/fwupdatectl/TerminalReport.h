// Shows an update to a person at a terminal: below the outcomes and the log a row for each printer
// that is being updated, with its phase and a bar, redrawn in place. Of more printers than the
// terminal has rows those that began first are shown; the last row then counts them all. As in a
// pipe, failures and the log go to standard error, which may be the same terminal.
#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "LiveRows.h"
#include "Terminal.h"
#include "UpdateReport.h"

class TerminalReport final : public UpdateReport {
 public:
  // `screen` says the size of the terminal, or that nothing is to be redrawn on it now: no rows.
  TerminalReport(std::ostream& terminal, std::ostream& errors, std::function<TerminalSize()> screen,
                 std::size_t printers)
      : mTerminal(terminal),
        mErrors(errors),
        mScreen(std::move(screen)),
        mPrinters(printers),
        mRows(terminal) {}

  void began(const Target& printer) override;
  void told(const Target& printer, const nlohmann::ordered_json& event) override;
  void logged(const Target& printer, const std::string& line) override;
  void ended(const Target& printer, const UpdateResult& result) override;
  void summed(const UpdateTally& tally) override;

  // Says that the run ends with those that have begun, and how to end them.
  void interrupted();

  // What is redrawn, around what others write to the terminal.
  void hide() { mRows.erase(); }
  void show();

 private:
  struct Line {
    Target printer;
    std::string phase;
    std::size_t bytes = 0;
    std::size_t total = 0;
  };

  Line* lineOf(const Target& printer);
  std::vector<std::string> rowsFor(const TerminalSize& size) const;
  std::string counts(std::size_t shown) const;
  void writeAbove(std::ostream& stream, const std::string& text);

  std::ostream& mTerminal;
  std::ostream& mErrors;
  std::function<TerminalSize()> mScreen;
  std::size_t mPrinters;
  UpdateTally mTally;
  bool mIsInterrupted = false;
  std::list<Line> mLines;
  LiveRows mRows;
};
