#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>

#include "Finding.h"
#include "JsonLines.h"
#include "PrinterDirectory.h"
#include "Signals.h"
#include "Terminal.h"
#include "ToolHost.h"
#include "checkFirmware.h"
#include "checkUsb.h"
#include "commands.h"
#include "failure.h"
#include "platform/Bundle.h"
#include "platform/DiscoveryStatus.h"
#include "platform/Platform.h"

using platform::DiscoveryStatus;

namespace {

// The daemon is waited for before the program does it by itself, 3 seconds.
constexpr std::chrono::milliseconds kLongestChoice{6000};

// None when it was interrupted.
std::optional<Finding> checkSearch(ToolHost& host) {
  bool isInterrupted = false;
  const Signals signals(host.runLoop(), [&] {
    isInterrupted = true;
    host.events().quitApplicationEventLoop();
  });
  DiscoveryStatus& status = host.discoveryStatus();
  status.whenChanged([&host] { host.events().quitApplicationEventLoop(); });
  const PrinterDirectory directory(host, [](PrinterDirectory::Change, const Target&) {});
  const auto end = host.runLoop().startTimer(kLongestChoice, false,
                                             [&host] { host.events().quitApplicationEventLoop(); });
  host.events().runApplicationEventLoop();
  status.whenChanged({});
  if (isInterrupted) return std::nullopt;
  const char* const subject = "Search for network printers";
  switch (status.searcher()) {
    case DiscoveryStatus::Searcher::Daemon:
      return Finding{true, subject, "Done by the Avahi daemon.", {}};
    case DiscoveryStatus::Searcher::Program:
      return Finding{true, subject, "Done by this program, since no Avahi daemon answers.", {}};
    case DiscoveryStatus::Searcher::Nobody:
      break;
  }
  return Finding{false, subject, "Nobody can do it.",
                 "Install and start the package avahi-daemon."};
}

void printFindingText(const Finding& finding, const Paint& paint) {
  std::cout << (finding.isWell ? paint.good("ok     ") : paint.bad("problem")) << "  "
            << finding.subject << ": " << finding.text;
  if (!finding.nextStep.empty()) std::cout << ' ' << finding.nextStep;
  std::cout << '\n';
}

void printFindingTabbed(const Finding& finding) {
  std::cout << (finding.isWell ? "ok" : "problem") << '\t' << finding.subject << '\t'
            << finding.text << '\t' << finding.nextStep << '\n';
}

void printFindingJson(const Finding& finding) {
  nlohmann::ordered_json members{{"verdict", finding.isWell ? "ok" : "problem"},
                                 {"subject", finding.subject},
                                 {"text", finding.text}};
  if (!finding.nextStep.empty()) members["next_step"] = finding.nextStep;
  writeLine(std::cout, jsonEvent("check", members));
}

void printFindings(const Findings& findings, Options::Output output) {
  const Paint paint(STDOUT_FILENO);
  for (const Finding& each : findings) {
    if (output == Options::Output::Json) {
      printFindingJson(each);
    } else if (isatty(STDOUT_FILENO) == 1) {
      printFindingText(each, paint);
    } else {
      printFindingTabbed(each);
    }
  }
}

}  // namespace

int checkMachine(ToolHost& host, const Options& options) {
  const std::optional<Finding> search = checkSearch(host);
  if (!search) return failByInterruption(options.output);
  Findings findings{*search};
  std::ranges::move(checkUsb(geteuid() == 0), std::back_inserter(findings));
  std::ranges::move(checkFirmware(platform::current().bundle->resourcesDirectory()),
                    std::back_inserter(findings));
  printFindings(findings, options.output);
  return std::ranges::all_of(findings, &Finding::isWell) ? kDone : kFailed;
}
