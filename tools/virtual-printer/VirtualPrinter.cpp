#include "VirtualPrinter.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace virtualprinter {
namespace {

constexpr int kEndedAsAsked = 0;
constexpr int kHostBrokeProtocol = 3;
constexpr int kBurnFailed = 4;
constexpr int kTimeLimitPassed = 5;

void printLine(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

// The address that is so many behind another one.
std::string addressAfter(const std::string& first, unsigned count) {
  in_addr address{};
  if (inet_pton(AF_INET, first.c_str(), &address) != 1) {
    throw std::runtime_error("\"" + first + "\" is not an IPv4 address");
  }
  address.s_addr = htonl(ntohl(address.s_addr) + count);
  char text[INET_ADDRSTRLEN];
  return inet_ntop(AF_INET, &address, text, sizeof text);
}

// Each of many printers has two ports open, and perhaps a connection.
void allowManyDescriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

VirtualPrinter::VirtualPrinter(const Options& options) : mOptions(options) {
  openJournal();
  makeDevices();
  for (const auto& device : mDevices) {
    device->printer().setObserver([this](const Tally&) { considerExit(); });
  }
}

void VirtualPrinter::makeDevices() {
  if (!isFleet()) {
    mDevices.push_back(std::make_unique<Device>(mOptions, mLoop, mJournal));
    return;
  }
  allowManyDescriptors();
  for (unsigned i = 0; i < *mOptions.count; ++i) {
    Options options = mOptions;
    options.address = addressAfter(mOptions.address, i);
    Journal journal = mJournal;
    journal.addField("printer", options.address);
    mDevices.push_back(std::make_unique<Device>(options, mLoop, std::move(journal)));
  }
}

void VirtualPrinter::openJournal() {
  if (mOptions.journal == "-") {
    mJournal.addSink([](const Journal::Fields& entry) { printLine(Journal::toLine(entry)); });
    return;
  }
  if (!mOptions.journal.empty()) {
    mJournalFile.open(mOptions.journal, std::ios::trunc);
    if (!mJournalFile) throw std::runtime_error("cannot write the journal " + mOptions.journal);
    mJournal.addSink([this](const Journal::Fields& entry) {
      mJournalFile << Journal::toLine(entry) << std::endl;
    });
  }
  mJournal.addSink([this](const Journal::Fields& entry) { printEntry(entry); });
}

void VirtualPrinter::printEntry(const Journal::Fields& entry) const {
  const std::string event = entry.at("event").get<std::string>();
  if (isFleet()) {
    if (event == "all-ready") {
      printLine("ready: " + std::to_string(entry.at("printers").get<unsigned>()) + " printers");
    } else if (!mOptions.quiet) {
      printLine(Journal::toText(entry));
    }
  } else if (event == "listening") {
    printLine("listening on port " + std::to_string(entry.at("port").get<unsigned>()));
  } else if (event == "plugged") {
    printLine("plugged into " + entry.at("controller").get<std::string>());
  } else if (event == "announced") {
    printLine("announced as \"" + entry.at("name").get<std::string>() + "\"");
  } else if (!mOptions.quiet) {
    printLine(Journal::toText(entry));
  }
}

void VirtualPrinter::watchSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  mSignals = FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!mSignals) throw std::runtime_error("cannot wait for signals");
  mSignalWatch = mLoop.watch(mSignals.get(), POLLIN, [this](short) { mLoop.quit(); });
}

int VirtualPrinter::run() {
  watchSignals();
  if (mOptions.timeLimit) {
    mTimeLimit = mLoop.after(*mOptions.timeLimit, [this] {
      mTimedOut = true;
      mLoop.quit();
    });
  }
  mJournal.write("started", {{"pid", getpid()}, {"name", mOptions.settings.name}});
  for (const auto& device : mDevices) device->printer().start();
  if (isFleet()) mJournal.write("all-ready", {{"printers", *mOptions.count}});
  mLoop.run();
  for (const auto& device : mDevices) {
    device->printer().setObserver(nullptr);
    device->printer().stop();
  }
  const int status = exitStatus();
  const Tally sum = tally();
  mJournal.write("stopped", {{"conversations", sum.conversations},
                             {"violations", sum.violations},
                             {"burned", sum.burned},
                             {"burns_failed", sum.burnsFailed},
                             {"exit_status", status}});
  return status;
}

Tally VirtualPrinter::tally() const {
  Tally sum;
  for (const auto& device : mDevices) {
    const Tally& one = device->printer().tally();
    sum.conversations += one.conversations;
    sum.violations += one.violations;
    sum.burned += one.burned;
    sum.burnsFailed += one.burnsFailed;
    sum.returns += one.returns;
  }
  return sum;
}

bool VirtualPrinter::isAwaitedOf(const Tally& tally) const {
  switch (mOptions.exitAfter) {
    case ExitAfter::Nothing:
      return false;
    case ExitAfter::Conversation:
      return tally.conversations > 0;
    case ExitAfter::Burn:
      return tally.conversations > 0 && tally.burned + tally.burnsFailed > 0;
    case ExitAfter::Return:
      return tally.returns > 0 || (tally.conversations > 0 && tally.burnsFailed > 0);
  }
  return false;
}

bool VirtualPrinter::awaitedEventHappened() const {
  return std::ranges::all_of(mDevices, [this](const auto& device) {
    return isAwaitedOf(std::as_const(*device).printer().tally());
  });
}

void VirtualPrinter::considerExit() {
  if (mOptions.exitAfter == ExitAfter::Nothing) return;
  const Tally sum = tally();
  if (awaitedEventHappened() || (sum.violations > 0 && sum.conversations > 0)) mLoop.quit();
}

int VirtualPrinter::exitStatus() const {
  const Tally sum = tally();
  if (sum.violations > 0) return kHostBrokeProtocol;
  if (mOptions.exitAfter == ExitAfter::Nothing) return kEndedAsAsked;
  if (mOptions.exitAfter != ExitAfter::Conversation && sum.burnsFailed > 0) return kBurnFailed;
  if (mTimedOut && !awaitedEventHappened()) return kTimeLimitPassed;
  return kEndedAsAsked;
}

}  // namespace virtualprinter
