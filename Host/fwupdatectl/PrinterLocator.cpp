#include "PrinterLocator.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "ToolHost.h"

namespace {

// Longer than most networks need to answer, so that nobody is looked for in vain for ever.
constexpr std::chrono::milliseconds kFreshness{10000};

}  // namespace

PrinterLocator::PrinterLocator(ToolHost& host) : mHost(host) { look(); }

bool PrinterLocator::isAnnounced(const Target& printer) {
  return printer.connection == Target::Connection::Network && printer.name != printer.address;
}

Target PrinterLocator::locate(const Target& printer) {
  if (!isAnnounced(printer)) return printer;
  if (mDirectory == nullptr) look();
  std::vector<Target> same = mDirectory->printers();
  std::erase_if(
      same, [&](const Target& each) { return !isAnnounced(each) || each.name != printer.name; });
  if (same.size() != 1) return printer;
  if (mFresh == nullptr) look();
  return same.front();
}

void PrinterLocator::look() {
  mDirectory.reset();
  mDirectory =
      std::make_unique<PrinterDirectory>(mHost, [](PrinterDirectory::Change, const Target&) {});
  mFresh = mHost.runLoop().startTimer(kFreshness, false, [this] { mFresh.reset(); });
}
