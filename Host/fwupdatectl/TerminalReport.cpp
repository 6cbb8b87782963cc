#include "TerminalReport.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "Reports.h"
#include "legibleText.h"

using nlohmann::ordered_json;

namespace {

constexpr std::size_t kLongestBar = 20;
constexpr std::size_t kShortestBar = 5;
constexpr std::string_view kThePrinterIs = "the printer is ";
constexpr const char* kInterruptedLine = "Ends when these are done. Ctrl+C again ends at once.";

std::string megabytes(std::size_t bytes) {
  std::array<char, 32> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), "%.1f MB", static_cast<double>(bytes) / 1e6));
  return text.data();
}

bool isSame(const Target& a, const Target& b) {
  return a.name == b.name && a.address == b.address && a.serial == b.serial;
}

struct Part {
  std::size_t done;
  std::size_t all;

  std::size_t of(std::size_t whole) const {
    return static_cast<std::size_t>(std::uint64_t{std::min(done, all)} * whole / all);
  }
};

std::string bar(const Part& part, std::size_t length) {
  const std::size_t done = part.of(length);
  return " [" + std::string(done, '#') + std::string(length - done, '-') + "] ";
}

// What a narrower terminal has no room for is left out: first the sizes, then the bar, then the
// printer's address, at last the rest of each text.
std::string rowOf(const Target& printer, const std::string& phase, const Part& part,
                  std::size_t columns) {
  const std::string label = labelOf(printer);
  std::string row = label + ": " + phase;
  std::string percent;
  if (part.all > 0) {
    std::string whole =
        row + bar(part, kLongestBar) + megabytes(part.done) + " of " + megabytes(part.all);
    if (columnsOf(whole) <= columns) return whole;
    percent = std::to_string(part.of(100)) + " %";
    const std::size_t used = columnsOf(row) + columnsOf(bar(part, 0)) + columnsOf(percent);
    if (used + kShortestBar <= columns) {
      return row + bar(part, std::min(columns - used, kLongestBar)) + percent;
    }
    row += " " + percent;
  }
  if (columnsOf(row) <= columns) return row;
  const std::string name = legibleText(printer.name);
  const std::string brief =
      phase.starts_with(kThePrinterIs) ? phase.substr(kThePrinterIs.size()) : phase;
  row = name + ": " + brief + (percent.empty() ? "" : " " + percent);
  if (columnsOf(row) <= columns) return row;
  const std::string rest = ": " + (percent.empty() ? brief : percent);
  const std::size_t room = columns - std::min(columns, columnsOf(rest));
  return cutText(cutText(name, std::max(room, columns / 2)) + rest, columns);
}

}  // namespace

TerminalReport::Line* TerminalReport::lineOf(const Target& printer) {
  const auto found =
      std::ranges::find_if(mLines, [&](const Line& line) { return isSame(line.printer, printer); });
  return found == mLines.end() ? nullptr : &*found;
}

// One row is left to the newest outcome.
std::vector<std::string> TerminalReport::rowsFor(const TerminalSize& size) const {
  if (size.rows == 0 || mLines.empty()) return {};
  const std::size_t columns = std::max<std::size_t>(size.columns, 2) - 1;
  const std::size_t room = std::max<std::size_t>(size.rows, 2) - 1;
  const std::size_t notices = mIsInterrupted ? 1 : 0;
  const bool needsCounts = mLines.size() < mPrinters || mLines.size() + notices > room;
  const std::size_t used = std::min(room, notices + (needsCounts ? 1 : 0));
  const std::size_t shown = std::min(mLines.size(), room - used);
  std::vector<std::string> rows;
  for (const Line& line : mLines) {
    if (rows.size() == shown) break;
    rows.push_back(rowOf(line.printer, line.phase, {line.bytes, line.total}, columns));
  }
  if (needsCounts && rows.size() < room) rows.push_back(cutText(counts(shown), columns));
  if (mIsInterrupted && rows.size() < room) rows.push_back(cutText(kInterruptedLine, columns));
  return rows;
}

std::string TerminalReport::counts(std::size_t shown) const {
  std::string text = sentenceOf(mTally);
  const std::size_t running = mLines.size();
  const std::size_t waiting = mPrinters - std::min(mPrinters, mTally.all() + running);
  text += (text.empty() ? "" : ", ") + std::to_string(running) + " at work";
  if (shown < running) text += " (" + std::to_string(running - shown) + " not shown)";
  if (waiting > 0) text += ", " + std::to_string(waiting) + " to go";
  return text;
}

void TerminalReport::writeAbove(std::ostream& stream, const std::string& text) {
  mRows.erase();
  stream << text << std::endl;
}

void TerminalReport::show() { mRows.draw(rowsFor(mScreen())); }

void TerminalReport::interrupted() {
  mIsInterrupted = true;
  show();
}

void TerminalReport::began(const Target& printer) {
  mLines.push_back({printer, "starting"});
  show();
}

void TerminalReport::told(const Target& printer, const ordered_json& event) {
  Line* const line = lineOf(printer);
  if (line == nullptr) return;
  const std::string phase = phaseOf(event);
  if (!phase.empty()) {
    line->phase = phase;
    line->bytes = line->total = 0;
  } else if (event.value("event", "") == "progress") {
    line->bytes = event.value("bytes", std::size_t{0});
    line->total = event.value("total", std::size_t{0});
  } else {
    return;
  }
  show();
}

void TerminalReport::logged(const Target& printer, const std::string& line) {
  writeAbove(mErrors, labelOf(printer) + ": " + legibleText(line));
  show();
}

void TerminalReport::ended(const Target& printer, const UpdateResult& result) {
  std::erase_if(mLines, [&](const Line& line) { return isSame(line.printer, printer); });
  mTally.count(result.outcome);
  const bool isError = result.outcome == UpdateResult::Outcome::Failed;
  writeAbove(isError ? mErrors : mTerminal, sentenceOf(printer, result));
  show();
}

void TerminalReport::summed(const UpdateTally& tally) { writeAbove(mTerminal, sentenceOf(tally)); }
