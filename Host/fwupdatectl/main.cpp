// The entry point of the tool: reads the command line and does what it asks for.
#include <sys/prctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <clocale>
#include <cmath>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "JsonLines.h"
#include "Options.h"
#include "ParentWatch.h"
#include "Signals.h"
#include "ToolHost.h"
#include "VersionWorker.h"
#include "Worker.h"
#include "commands.h"
#include "failure.h"
#include "hostNames.h"
#include "runAndReport.h"
#include "standardStreams.h"

namespace {

using namespace std::string_view_literals;

constexpr double kLongestWait = 3600;  // seconds

void addOutput(CLI::App& command, Options& options) {
  command.add_flag_callback(
      "--json", [&options] { options.output = Options::Output::Json; },
      "Write one JSON object a line");
}

// What a script's variable that was never set would name is no printer.
std::string expectNotEmpty(const std::string& text) {
  return text.empty() ? "an empty text names no printer" : std::string();
}

CLI::Option* addSeconds(CLI::App& command, const char* name, std::chrono::milliseconds& time,
                        const char* text) {
  return command
      .add_option_function<double>(
          name,
          [&time](double seconds) {
            // No number is beyond the range, by comparison.
            if (std::isnan(seconds)) throw CLI::ValidationError("SECONDS", "nan is no time");
            time = std::chrono::milliseconds(static_cast<int>(seconds * 1000));
          },
          text)
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, kLongestWait));
}

void addWait(CLI::App& command, Options& options) {
  addSeconds(command, "--wait", options.wait, "Look for printers so long (3)");
}

void addList(CLI::App& app, Options& options) {
  CLI::App* list = app.add_subcommand("list", "List the printers that can be reached");
  addWait(*list, options);
  CLI::Option* watch =
      list->add_flag("--watch", options.watch, "Go on, and tell each that comes or goes");
  CLI::Option* versions =
      list->add_flag("--versions", options.versions, "Ask each for its version")->excludes(watch);
  addSeconds(*list, "--timeout", options.patience, "Wait so long for its answer (10)")
      ->needs(versions);
  addOutput(*list, options);
  list->callback([&options] { options.command = Options::Command::List; });
}

void addUpdate(CLI::App& app, Options& options) {
  CLI::App* update = app.add_subcommand("update", "Update the firmware of printers");
  update->add_option("PRINTER", options.names, "Name of a printer that \"list\" shows")
      ->check(expectNotEmpty);
  update->add_flag("--all", options.all, "All printers that are found");
  update->add_option("--address", options.addresses, "A printer on another network")
      ->type_name("HOST[:PORT]")
      ->expected(1)
      ->take_all();
  update->add_option("--serial", options.serials, "A printer on USB")
      ->type_name("NUMBER")
      ->check(expectNotEmpty)
      ->expected(1)
      ->take_all();
  update->add_flag("-y,--yes", options.yes, "Do not ask before network printers are updated");
  update->add_option("-j,--jobs", options.jobs, "Update so many at a time (8)")
      ->type_name("N")
      ->check(CLI::Range(1, 1000));
  addSeconds(*update, "--timeout", options.timeout,
             "Give up a download that takes longer (0: never)");
  update->add_flag("--verify", options.verify,
                   "Wait until each printer is back, and ask for its version");
  addSeconds(*update, "--verify-wait", options.returnWait,
             "Wait so long for a printer to be back (120)");
  addWait(*update, options);
  addOutput(*update, options);
  update->add_flag_callback(
      "--quiet", [&options] { options.output = Options::Output::Quiet; }, "Tell only of failures");
  update->callback([&options] {
    options.command = Options::Command::Update;
    if (!options.all && options.names.empty() && options.addresses.empty() &&
        options.serials.empty()) {
      throw CLI::RequiredError("A printer, --all, --address or --serial");
    }
  });
}

void addShow(CLI::App& app, Options& options) {
  CLI::App* show = app.add_subcommand("show", "Show what a firmware file holds");
  show->add_option("FILE", options.file, "The file")->required();
  addOutput(*show, options);
  show->callback([&options] { options.command = Options::Command::Show; });
}

void addCheck(CLI::App& app, Options& options) {
  CLI::App* check = app.add_subcommand("check", "Check that this machine can update printers");
  addOutput(*check, options);
  check->callback([&options] { options.command = Options::Command::Check; });
}

// Also of a command line that cannot be understood.
bool asksForJson(int argc, char** argv) {
  return std::any_of(argv, argv + argc, [](const char* each) { return each == "--json"sv; });
}

// False when the command line has been answered already, with `status`.
bool parse(int argc, char** argv, Options& options, int& status) {
  CLI::App app("Updates the firmware of Veltra KX350T printers.", "fwupdatectl");
  app.set_version_flag("--version", "fwupdatectl " FWUPDATE_VERSION);
  app.add_flag("-e,--verbose", options.verbose, "Write the log to standard error, too");
  app.fallthrough();
  app.add_option("--worker", options.order)->group("");
  addList(app, options);
  addUpdate(app, options);
  addShow(app, options);
  addCheck(app, options);
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
    if (!options.order.empty()) {
      options.command = Options::Command::Worker;
      options.output = Options::Output::Json;
    } else if (app.get_subcommands().empty()) {
      throw CLI::RequiredError("A command");
    }
    return true;
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) == 0) return false;
    const auto output = asksForJson(argc, argv) ? Options::Output::Json : Options::Output::Text;
    status = failForPrograms(output, kUsageError, error.what());
    return false;
  }
}

// Started by a link of the kernel's, which is no name to be known by.
int work(ToolHost& host, const Options& options) {
  prctl(PR_SET_NAME, "fwupdatectl");
  const auto order = nlohmann::ordered_json::parse(options.order);
  Target target = targetFromJson(order);
  host.useImages(order.value("images", std::vector<int>()));
  // A signal that comes meanwhile ends the process: nothing has begun yet.
  target.address = resolvedAddress(target.address);
  const auto end = [&host] { host.events().quitApplicationEventLoop(); };
  const Signals signals(host.runLoop(), end);
  ParentWatch parentWatch(host.runLoop(), STDOUT_FILENO, end);
  host.add(parentWatch);
  return order.value("work", "update") == "version" ? runVersionWorker(host, target)
                                                    : runWorker(host, target);
}

// What has been done counts for nothing where its result is lost.
int whenWritten(Options::Output output, int status) {
  if (status != kDone || isOutputWritten()) return status;
  return fail(output, kFailed, "The output could not be written. Is the disk full?");
}

int run(ToolHost& host, const Options& options) {
  switch (options.command) {
    case Options::Command::List:
      return listPrinters(host, options);
    case Options::Command::Update:
      return updatePrinters(host, options);
    case Options::Command::Show:
      return showFirmware(options);
    case Options::Command::Check:
      return checkMachine(host, options);
    case Options::Command::Worker:
      break;
  }
  return work(host, options);
}

}  // namespace

int main(int argc, char** argv) {
  completeStandardStreams();
  // Whoever reads what is written may go at any time, and must not take a download along.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  // For the widths of characters: what is written is UTF-8 wherever the tool runs, also by cron.
  static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
  Options options;
  int status = kDone;
  if (!parse(argc, argv, options, status)) return whenWritten(options.output, status);
  ToolHost host(options.verbose || options.command == Options::Command::Worker);
  std::string reason;
  const int failure = runAndReport([&] {
    try {
      status = run(host, options);
    } catch (const std::exception& error) {
      reason = error.what();
      throw;
    }
  });
  if (failure != kDone) return fail(options.output, failure, reason);
  return whenWritten(options.output, status);
}
