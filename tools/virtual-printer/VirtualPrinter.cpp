#include "VirtualPrinter.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

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

}  // namespace

VirtualPrinter::VirtualPrinter(const Options& options)
    : mOptions(options), mPrinter(options.settings, options.faults, mLoop, mJournal) {
  openJournal();
  if (mOptions.usb.wanted) {
    attachToUsb();
  } else {
    attachToNetwork();
  }
  mPrinter.setObserver([this](const Tally&) { considerExit(); });
}

void VirtualPrinter::attachToNetwork() {
  mServer = std::make_unique<TcpServer>(mPrinter, mLoop, mOptions.address, mOptions.port);
  mPrinter.addAttachment(*mServer);
  mAnnouncer = makeAnnouncer();
  if (mAnnouncer) mPrinter.addAttachment(*mAnnouncer);
}

void VirtualPrinter::attachToUsb() {
  const UsbOptions& usb = mOptions.usb;
  UsbIdentity identity;
  identity.vendorId = usb.vendorId;
  identity.productId = usb.productId;
  identity.manufacturer = usb.manufacturer.value_or(mOptions.settings.manufacturer);
  identity.product = usb.product.value_or(mOptions.settings.model);
  identity.serial = usb.serial.value_or(mOptions.settings.serial);
  mGadget = std::make_unique<UsbGadget>(mPrinter, mLoop, identity, usb.controller);
  mPrinter.addAttachment(*mGadget);
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
  if (event == "listening") {
    printLine("listening on port " + std::to_string(entry.at("port").get<unsigned>()));
  } else if (event == "plugged") {
    printLine("plugged into " + entry.at("controller").get<std::string>());
  } else if (event == "announced") {
    printLine("announced as \"" + entry.at("name").get<std::string>() + "\"");
  } else if (!mOptions.quiet) {
    printLine(Journal::toText(entry));
  }
}

std::unique_ptr<Attachment> VirtualPrinter::makeAnnouncer() {
  const Announcement text = announcement();
  switch (mOptions.announce) {
    case Announce::No:
      return nullptr;
    case Announce::InProcess:
      return makeInProcessAnnouncer(text, mLoop, mJournal);
    case Announce::Daemon:
    case Announce::Auto:
      break;
  }
  if (auto announcer = makeDaemonAnnouncer(text, mLoop, mJournal)) return announcer;
  if (mOptions.announce == Announce::Daemon) throw std::runtime_error("there is no Avahi daemon");
  return makeInProcessAnnouncer(text, mLoop, mJournal);
}

Announcement VirtualPrinter::announcement() const {
  const PrinterSettings& settings = mOptions.settings;
  Announcement text;
  text.name = settings.name;
  text.port = mServer->port();
  text.hostName = "kx350t-" + std::to_string(getpid());
  text.txt = {{"txtvers", "1"},
              {"qtotal", "1"},
              {"ty", settings.manufacturer + " " + settings.model},
              {"product", "(" + settings.model + ")"},
              {"note", "virtual printer"},
              {"pdl", "application/octet-stream"},
              {"priority", "50"},
              {"Binary", "t"},
              {"Transparent", "t"},
              {"usb_CMD", "PJL,ACL"},
              {"usb_MFG", settings.manufacturer},
              {"usb_MDL", settings.model}};
  for (const auto& [key, value] : mOptions.txt) {
    const auto found = std::find_if(text.txt.begin(), text.txt.end(),
                                    [&key = key](const auto& pair) { return pair.first == key; });
    if (!value) {
      if (found != text.txt.end()) text.txt.erase(found);
    } else if (found != text.txt.end()) {
      found->second = *value;
    } else {
      text.txt.emplace_back(key, *value);
    }
  }
  return text;
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
  mPrinter.start();
  mLoop.run();
  mPrinter.setObserver(nullptr);
  mPrinter.stop();
  const int status = exitStatus();
  const Tally& tally = mPrinter.tally();
  mJournal.write("stopped", {{"conversations", tally.conversations},
                             {"violations", tally.violations},
                             {"burned", tally.burned},
                             {"burns_failed", tally.burnsFailed},
                             {"exit_status", status}});
  return status;
}

bool VirtualPrinter::awaitedEventHappened() const {
  const Tally& tally = mPrinter.tally();
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

void VirtualPrinter::considerExit() {
  const Tally& tally = mPrinter.tally();
  const bool broken = tally.violations > 0 && tally.conversations > 0;
  if (awaitedEventHappened() || (broken && mOptions.exitAfter != ExitAfter::Nothing)) mLoop.quit();
}

int VirtualPrinter::exitStatus() const {
  const Tally& tally = mPrinter.tally();
  if (tally.violations > 0) return kHostBrokeProtocol;
  if (mOptions.exitAfter == ExitAfter::Nothing) return kEndedAsAsked;
  if (mOptions.exitAfter != ExitAfter::Conversation && tally.burnsFailed > 0) return kBurnFailed;
  if (mTimedOut && !awaitedEventHappened()) return kTimeLimitPassed;
  return kEndedAsAsked;
}

}  // namespace virtualprinter
