#include "Worker.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "AttachedDevice.h"
#include "Download.h"
#include "JsonLines.h"
#include "Log.h"
#include "Printer.h"
#include "ToolHost.h"
#include "platform/FailureCause.h"
#include "platform/Platform.h"

using nlohmann::ordered_json;
using platform::DownloadOutcome;
using platform::DownloadPhase;

namespace {

struct Destroy {
  void operator()(Printer* printer) const { Printer::destroy(printer); }
};
using OwnedPrinter = std::unique_ptr<Printer, Destroy>;

const char* nameOf(DownloadPhase phase) {
  switch (phase) {
    case DownloadPhase::Connecting:
      return "connecting";
    case DownloadPhase::AskingForVersion:
      return "asking-for-version";
    case DownloadPhase::ChoosingFirmware:
      return "choosing-firmware";
    case DownloadPhase::SendingFirmware:
      return "sending-firmware";
    case DownloadPhase::BurningFirmware:
      return "burning-firmware";
  }
  return "";
}

const char* nameOf(DownloadOutcome outcome) {
  switch (outcome) {
    case DownloadOutcome::Succeeded:
      return "updated";
    case DownloadOutcome::UpToDate:
      return "up-to-date";
    case DownloadOutcome::Failed:
      return "failed";
  }
  return "";
}

// Says each thing that happens as it happens. Where nobody can be told, the download goes on.
class Told final : public platform::DownloadObserver {
 public:
  std::optional<DownloadOutcome> outcome() const { return mOutcome; }

  // Of a printer that gets no download.
  static void sayWhyNot(const platform::FailureCause& why) noexcept { say("cause", toJson(why)); }

  void downloadBegan(const platform::Text&, const platform::Text&) noexcept override {}
  void phaseBegan(DownloadPhase phase, std::chrono::milliseconds bound) noexcept override {
    say("phase", {{"phase", nameOf(phase)}, {"bound_ms", bound.count()}});
  }
  void versionsKnown(unsigned int printer, unsigned int firmware) noexcept override {
    say("versions", {{"version_before", printer}, {"version_of_firmware", firmware}});
  }
  void bytesHandedOver(std::size_t count, std::size_t total) noexcept override {
    mFirmwareWasSent = count == total;
    say("progress", {{"bytes", count}, {"total", total}});
  }
  void errorLogged(const std::string& entry) noexcept override {
    say("error", {{"message", entry}});
  }
  void downloadEnded(DownloadOutcome outcome) noexcept override {
    mOutcome = outcome;
    try {
      const auto why = whyNotUpdated();
      if (why) {
        mOutcome = DownloadOutcome::Failed;
        say("cause", toJson(*why));
      }
    } catch (const std::bad_alloc&) {
      // The outcome is told, and the log has the reason.
    }
    say("outcome", {{"outcome", nameOf(*mOutcome)}});
  }

 private:
  // A printer seems to be up to date where the file with its firmware is damaged and has no
  // version. A script must not take that for success.
  std::optional<platform::FailureCause> whyNotUpdated() const {
    const auto entries = platform::current().logHistory->entriesOfDownload();
    if (mOutcome == DownloadOutcome::UpToDate) return platform::causeOfNothingToDo(entries);
    if (mOutcome == DownloadOutcome::Succeeded) return std::nullopt;
    return platform::causeOfFailure(entries, mFirmwareWasSent);
  }

  static void say(const char* event, const ordered_json& members) noexcept {
    try {
      writeLine(std::cout, jsonEvent(event, members));
    } catch (const std::exception&) {
      std::cout.setstate(std::ios_base::badbit);
    }
  }

  std::optional<DownloadOutcome> mOutcome;
  bool mFirmwareWasSent = false;
};

// Null, with the reason, for one on USB that is not to be had.
OwnedPrinter printerFor(ToolHost& host, const Target& target, platform::FailureCause& whyNot) {
  if (target.connection == Target::Connection::Network) {
    return OwnedPrinter(
        Printer::create(platform::Text::fromUtf8(target.name), addressRecord(target.address)));
  }
  host.useUsb();
  std::optional<QuillUsbDevice> device = attachedDevice(target, whyNot);
  return OwnedPrinter(device ? Printer::create(*device) : nullptr);
}

}  // namespace

int runWorker(ToolHost& host, const Target& target) {
  Told told;
  host.add(told);
  host.useLocks();
  platform::FailureCause whyNot;
  const OwnedPrinter printer = printerFor(host, target, whyNot);
  if (!printer) {
    Told::sayWhyNot(whyNot);
    return EXIT_FAILURE;
  }
  Download(host).run([&](FirmwareDownloader& downloader) { printer->download(downloader); });
  const auto outcome = told.outcome();
  return outcome && outcome != DownloadOutcome::Failed ? EXIT_SUCCESS : EXIT_FAILURE;
}
