#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

#include "JsonLines.h"
#include "PrinterDirectory.h"
#include "Reports.h"
#include "Signals.h"
#include "Terminal.h"
#include "ToolHost.h"
#include "VersionQueries.h"
#include "commands.h"
#include "endOfSearch.h"
#include "failure.h"
#include "legibleText.h"
#include "standardStreams.h"

using nlohmann::ordered_json;

namespace {

struct Found {
  Target printer;
  std::optional<VersionQuery::Answer> answer{};  // where printers were asked
};

using Cells = std::vector<std::string>;

constexpr std::string_view kGap = "  ";  // between columns

// What a download would do now.
std::string firmwareFor(const VersionQuery::Answer& answer) {
  if (!answer.version) return "?";
  if (!answer.firmware) return "none";
  const std::string file = legibleText(answer.firmware->file);
  if (answer.firmware->version == 0) return "none (" + file + " is damaged)";
  if (!answer.isFirmwareNewer()) return "up to date";
  return std::to_string(answer.firmware->version) + " (" + file + ")";
}

Cells cellsOf(const Found& found) {
  const bool isUsb = found.printer.connection == Target::Connection::Usb;
  Cells cells{legibleText(found.printer.name), isUsb ? "USB" : "network",
              legibleText(isUsb ? found.printer.serial : found.printer.address)};
  if (found.answer) {
    cells.push_back(found.answer->version ? std::to_string(*found.answer->version) : "?");
    cells.push_back(firmwareFor(*found.answer));
  }
  return cells;
}

ordered_json jsonOf(const Found& found) {
  ordered_json json{{"printer", toJson(found.printer)}};
  if (!found.answer) return json;
  const VersionQuery::Answer& answer = *found.answer;
  if (answer.version) {
    json["version"] = *answer.version;
    json["would_be_updated"] = answer.isFirmwareNewer();
  }
  if (answer.firmware) {
    json["firmware"] = {{"file", answer.firmware->file}, {"version", answer.firmware->version}};
  }
  if (!answer.cause.empty()) json["cause"] = answer.cause;
  if (!answer.nextStep.empty()) json["next_step"] = answer.nextStep;
  return json;
}

std::string padded(const std::string& text, std::size_t columns) {
  const std::size_t used = columnsOf(text);
  return text + std::string(columns > used ? columns - used : 0, ' ');
}

// Where the terminal has fewer columns, each name stands above the rest of its row: nothing is cut,
// since all of it is what "update" is given.
void printTable(const std::vector<Found>& printers, bool withVersions, std::size_t columns) {
  std::vector<Cells> rows{{"NAME", "CONNECTION", "ADDRESS OR SERIAL"}};
  if (withVersions) rows.front().insert(rows.front().end(), {"VERSION", "FIRMWARE"});
  for (const Found& each : printers) rows.push_back(cellsOf(each));
  std::vector<std::size_t> widths(rows.front().size());
  for (const Cells& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  const std::size_t gaps = kGap.size() * (widths.size() - 1);
  const bool fits = std::accumulate(widths.begin(), widths.end(), gaps) <= columns;
  for (const Cells& row : rows) {
    std::cout << (fits ? padded(row[0], widths[0]) : row[0] + '\n');
    for (std::size_t i = 1; i + 1 < row.size(); ++i) std::cout << kGap << padded(row[i], widths[i]);
    std::cout << kGap << row.back() << '\n';
  }
}

void printTabbed(const Cells& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) std::cout << (i == 0 ? "" : "\t") << cells[i];
  std::cout << std::endl;
}

void print(const std::vector<Found>& printers, const Options& options) {
  if (options.output == Options::Output::Text && isatty(STDOUT_FILENO) == 1) {
    printTable(printers, options.versions, sizeOfTerminal(STDOUT_FILENO).columns);
    return;
  }
  for (const Found& each : printers) {
    if (options.output == Options::Output::Json) {
      writeLine(std::cout, jsonEvent("printer", jsonOf(each)));
    } else {
      printTabbed(cellsOf(each));
    }
  }
}

void printCauses(const std::vector<Found>& printers) {
  for (const Found& each : printers) {
    if (!each.answer || each.answer->cause.empty()) continue;
    std::cerr << labelOf(each.printer) << ": " << legibleText(each.answer->cause) << ' '
              << legibleText(each.answer->nextStep) << '\n';
  }
}

void printChange(PrinterDirectory::Change change, const Target& printer, Options::Output output) {
  const bool isAdded = change == PrinterDirectory::Change::Added;
  if (output == Options::Output::Json) {
    writeLine(std::cout, jsonEvent(isAdded ? "added" : "removed", jsonOf({printer})));
  } else {
    std::cout << (isAdded ? "+\t" : "-\t");
    printTabbed(cellsOf({printer}));
  }
}

// The printers that are there when the time is over or, of a watch, when nobody reads on.
std::vector<Found> lookForPrinters(ToolHost& host, const Options& options) {
  const PrinterDirectory directory(host,
                                   [&](PrinterDirectory::Change change, const Target& printer) {
                                     if (!options.watch) return;
                                     printChange(change, printer, options.output);
                                     if (!std::cout) host.events().quitApplicationEventLoop();
                                   });
  std::unique_ptr<platform::RunLoop::Watch> reader;
  std::unique_ptr<platform::RunLoop::Timer> end;
  if (options.watch) {
    reader = watchReader(host.runLoop(), [&host] { host.events().quitApplicationEventLoop(); });
  } else {
    end = host.runLoop().startTimer(options.wait, false,
                                    [&host] { host.events().quitApplicationEventLoop(); });
  }
  host.events().runApplicationEventLoop();
  if (!options.watch) std::cerr << noteOnSearch(host.discoveryStatus().searcher());
  std::vector<Found> found;
  for (const Target& each : directory.printers()) found.push_back({each});
  return found;
}

void askForVersions(ToolHost& host, const Options& options, std::vector<Found>& printers) {
  std::vector<Target> targets;
  targets.reserve(printers.size());
  for (const Found& each : printers) targets.push_back(each.printer);
  VersionQueries queries(host.runLoop(), targets, options.patience,
                         [&printers](std::size_t place, const VersionQuery::Answer& answer) {
                           printers[place].answer = answer;
                         });
  queries.start([&host] { host.events().quitApplicationEventLoop(); });
  host.events().runApplicationEventLoop();
}

bool hasAnswered(const Found& found) { return !found.answer || found.answer->version; }

}  // namespace

int listPrinters(ToolHost& host, const Options& options) {
  bool isInterrupted = false;
  const Signals signals(host.runLoop(), [&] {
    isInterrupted = true;
    host.events().quitApplicationEventLoop();
  });
  std::vector<Found> printers = lookForPrinters(host, options);
  if (options.versions && !isInterrupted) askForVersions(host, options, printers);
  if (isInterrupted) return failByInterruption(options.output);
  if (options.watch) return kDone;  // as far as anybody could be told
  print(printers, options);
  if (options.verbose) printCauses(printers);
  return std::ranges::all_of(printers, hasAnswered) ? kDone : kFailed;
}
