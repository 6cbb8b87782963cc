#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "Failures.h"
#include "PrinterDirectory.h"
#include "PrinterLocator.h"
#include "Reports.h"
#include "SearchTime.h"
#include "Signals.h"
#include "Terminal.h"
#include "TerminalReport.h"
#include "TerminalSession.h"
#include "ToolHost.h"
#include "UpdateRun.h"
#include "commands.h"
#include "endOfSearch.h"
#include "failure.h"
#include "giveBackPrinters.h"
#include "legibleText.h"
#include "openFiles.h"
#include "sealFirmware.h"

namespace {

using Printers = std::vector<Target>;

// A sentence for the user about a printer that was named and is not there, or about several that
// it may be.
class NoSuchPrinter : public std::runtime_error {
 public:
  explicit NoSuchPrinter(const std::string& sentence, Printers candidates = {})
      : runtime_error(sentence), mCandidates(std::move(candidates)) {}

  const Printers& candidates() const { return mCandidates; }

 private:
  Printers mCandidates;
};

bool isInterrupted = false;

Printers named(const Printers& printers, const std::string& name) {
  Printers found;
  std::ranges::copy_if(printers, std::back_inserter(found),
                       [&](const Target& each) { return each.name == name; });
  return found;
}

bool isOnUsb(const Target& printer) { return printer.connection == Target::Connection::Usb; }

Printers withSerial(const Printers& printers, const std::string& serial) {
  Printers found;
  std::ranges::copy_if(printers, std::back_inserter(found),
                       [&](const Target& each) { return isOnUsb(each) && each.serial == serial; });
  return found;
}

bool areAllThere(const Printers& printers, const Options& options) {
  return !options.all && std::ranges::all_of(options.names, [&](const auto& each) {
    return !named(printers, each).empty();
  }) && std::ranges::all_of(options.serials, [&](const auto& each) {
    return !withSerial(printers, each).empty();
  });
}

// Those that there are when the search for them is over.
Printers printersThatAreThere(ToolHost& host, const Options& options) {
  const auto endLoop = [&host] { host.events().quitApplicationEventLoop(); };
  const Signals signals(host.runLoop(), [&] {
    isInterrupted = true;
    endLoop();
  });
  const bool mayBeOnTheNetwork = options.all || !options.names.empty();
  std::optional<SearchTime> time;
  PrinterDirectory directory(host, [&](PrinterDirectory::Change change, const Target&) {
    if (!time) return;
    if (options.all && change == PrinterDirectory::Change::Added) time->extend();
    time->setComplete(areAllThere(directory.printers(), options));
  });
  time.emplace(host.runLoop(), options.wait, endLoop);
  time->setComplete(areAllThere(directory.printers(), options));
  host.events().runApplicationEventLoop();
  Printers found = directory.printers();
  if (mayBeOnTheNetwork && !isInterrupted && !areAllThere(found, options)) {
    std::cerr << noteOnSearch(host.discoveryStatus().searcher());
  }
  return found;
}

// Those that can be told apart.
Printers withoutRepeats(const Printers& chosen) {
  Printers once;
  std::set<std::tuple<Target::Connection, std::string, std::string>> seen;
  for (const Target& each : chosen) {
    const std::string& name = each.address.empty() ? each.name : each.address;
    if (seen.emplace(each.connection, name, each.serial).second) once.push_back(each);
  }
  return once;
}

// `advice` is for several of them that can be told apart.
void addOnly(Printers& chosen, const Printers& found, const std::string& what, const char* advice) {
  if (found.empty()) throw NoSuchPrinter("No printer " + what + " was found.");
  if (found.size() > 1) {
    const bool isOneAsTheOther = withoutRepeats(found).size() == 1;
    throw NoSuchPrinter("There are several printers " + what + ". " +
                            (isOneAsTheOther ? "Unplug all of them but one:" : advice),
                        found);
  }
  chosen.push_back(found.front());
}

Printers choose(ToolHost& host, const Options& options) {
  Printers chosen;
  for (const std::string& each : options.addresses) {
    const std::string address = completeAddress(each);
    chosen.push_back({Target::Connection::Network, address, {}, address});
  }
  if (!options.all && options.names.empty() && options.serials.empty()) return chosen;
  const Printers found = printersThatAreThere(host, options);
  if (isInterrupted) return {};
  if (options.all) {
    chosen.insert(chosen.end(), found.begin(), found.end());
    if (chosen.empty()) throw NoSuchPrinter("No printer was found.");
  }
  for (const std::string& each : options.names) {
    addOnly(chosen, named(found, each), "named \"" + legibleText(each) + "\"",
            "Name one by --address or --serial:");
  }
  for (const std::string& each : options.serials) {
    addOnly(chosen, withSerial(found, each), "with the serial number " + legibleText(each),
            "Give the name of one:");
  }
  return chosen;
}

bool isTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1; }

// Nobody can print on a network printer meanwhile, so its users are asked for first.
Printers confirmed(const Printers& chosen, const Options& options) {
  Printers agreed;
  for (const Target& each : chosen) {
    if (isOnUsb(each) || options.yes) {
      agreed.push_back(each);
      continue;
    }
    std::cerr << "Download new firmware to " << labelOf(each)
              << "? Nobody can print on it meanwhile. [y/N] " << std::flush;
    std::string answer;
    if (!std::getline(std::cin, answer)) {
      std::cerr << '\n';
      break;
    }
    if (answer == "y" || answer == "Y" || answer == "yes") agreed.push_back(each);
  }
  return agreed;
}

// Somebody else's screen is not drawn on.
TerminalSize screen() {
  return isInForeground(STDOUT_FILENO) ? sizeOfTerminal(STDOUT_FILENO) : TerminalSize{0, 0};
}

// Passes on to the report that shows, and knows what the exit status has to say.
class Counting final : public UpdateReport {
 public:
  Counting(ToolHost& host, const Options& options, std::size_t printers) {
    if (options.output == Options::Output::Json) {
      mShown = std::make_unique<JsonReport>(std::cout);
    } else if (options.output == Options::Output::Text && isCapableTerminal(STDOUT_FILENO)) {
      auto report = std::make_unique<TerminalReport>(std::cout, std::cerr, screen, printers);
      mTerminal.emplace(host, *report);
      mOnTerminal = report.get();
      mShown = std::move(report);
    } else {
      mShown = std::make_unique<PlainReport>(std::cout, std::cerr,
                                             options.output == Options::Output::Quiet);
    }
    mVerbose = options.verbose;
  }

  int status() const { return mFailures.status(); }

  void began(const Target& printer) override { mShown->began(printer); }
  void told(const Target& printer, const nlohmann::ordered_json& event) override {
    mShown->told(printer, event);
  }
  void logged(const Target& printer, const std::string& line) override {
    if (mVerbose) mShown->logged(printer, line);
  }
  void ended(const Target& printer, const UpdateResult& result) override {
    if (result.outcome == UpdateResult::Outcome::Failed) mFailures.add(result.isNotPermitted);
    mTally.count(result.outcome);
    mShown->ended(printer, result);
  }
  void summed(const UpdateTally& tally) override { mShown->summed(tally); }

  void interrupted() {
    if (mOnTerminal != nullptr) mOnTerminal->interrupted();
  }

  // What there is to say when all have ended.
  void finish() {
    if (mTally.all() > 1) summed(mTally);
  }

 private:
  std::unique_ptr<UpdateReport> mShown;
  TerminalReport* mOnTerminal = nullptr;  // mShown, where it is one
  std::optional<TerminalSession> mTerminal;
  bool mVerbose = false;
  Failures mFailures;
  UpdateTally mTally;
};

int update(ToolHost& host, const Options& options, const Printers& printers) {
  Counting report(host, options, printers.size());
  std::optional<PrinterLocator> locator;
  if (options.verify && std::ranges::any_of(printers, PrinterLocator::isAnnounced)) {
    locator.emplace(host);
  }
  UpdateRun::Settings settings{.jobs = std::min(options.jobs, allowManyOpenFiles())};
  if (printers.size() > 1) settings.images = sealFirmware();
  if (options.timeout.count() > 0) settings.timeout = options.timeout;
  if (options.verify) settings.returnWait = options.returnWait;
  settings.locate = [&locator](const Target& printer) {
    return locator ? locator->locate(printer) : printer;
  };
  UpdateRun run(host.runLoop(), report, printers, std::move(settings));
  const Signals signals(host.runLoop(), [&] {
    if (run.isInterrupted()) {
      run.terminate();
    } else {
      run.startNoMore();
      report.interrupted();
    }
  });
  run.start([&host] { host.events().quitApplicationEventLoop(); });
  host.events().runApplicationEventLoop();
  report.finish();
  if (report.status() != kDone && std::ranges::any_of(printers, isOnUsb)) giveBackPrinters();
  return run.isInterrupted() ? failForPrograms(options.output, kInterrupted, kInterruption)
                             : report.status();
}

}  // namespace

int updatePrinters(ToolHost& host, const Options& options) {
  try {
    const Printers chosen = withoutRepeats(choose(host, options));
    if (isInterrupted) return failByInterruption(options.output);
    const bool asks = std::ranges::any_of(
        chosen, [](const Target& each) { return each.connection == Target::Connection::Network; });
    if (asks && !options.yes && !isTerminal()) {
      return fail(options.output, kUsageError,
                  "There is nobody to ask whether network printers may be updated: give --yes.");
    }
    return update(host, options, confirmed(chosen, options));
  } catch (const NoSuchPrinter& error) {
    return fail(options.output, kNoSuchPrinter, error.what(), error.candidates());
  } catch (const std::invalid_argument& error) {
    return fail(options.output, kUsageError, error.what());
  }
}
