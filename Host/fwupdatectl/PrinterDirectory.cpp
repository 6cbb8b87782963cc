#include "PrinterDirectory.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "Branding.h"
#include "Printer.h"
#include "PrinterPlace.h"
#include "ToolHost.h"
#include "startFinders.h"

using platform::ItemId;
using platform::Text;

namespace {

std::string utf8(const Text& text) { return text ? std::string(text.utf8()) : std::string(); }

platform::WindowRef makeWindow(ToolHost& host, platform::HeadlessToolkit& toolkit) {
  host.useToolkit(toolkit);
  host.useUsb();
  host.useServices();
  platform::WindowRef window = platform::WindowRef::None;
  toolkit.createWindowFromNib(platform::NibRef::None, Text::fromUtf8("PrinterSelectWindow"),
                              window);
  return window;
}

}  // namespace

PrinterDirectory::PrinterDirectory(ToolHost& host, Changed changed)
    : mChanged(std::move(changed)),
      mView(makeWindow(host, mToolkit)),
      mUsbDeviceFinder(mView),
      mBonjourDeviceFinder(Branding::sManufacturerStr, Branding::sModelStr, mView) {
  startFinders(mUsbDeviceFinder, mBonjourDeviceFinder);
}

PrinterDirectory::~PrinterDirectory() = default;

std::vector<Target> PrinterDirectory::printers() const {
  std::vector<Target> printers;
  for (const auto& [item, printer] : mPrinters) printers.push_back(printer);
  std::ranges::sort(printers, {}, [](const Target& each) {
    return std::tie(each.name, each.address, each.serial);
  });
  return printers;
}

void PrinterDirectory::rowAdded(ItemId item) {
  const Target printer = mPrinters[item] = targetOf(item);
  mChanged(Change::Added, printer);
}

void PrinterDirectory::rowRemoved(ItemId item) {
  const auto gone = mPrinters.extract(item);
  if (!gone.empty()) mChanged(Change::Removed, gone.mapped());
}

Target PrinterDirectory::targetOf(ItemId item) const {
  const Printer& printer = mView.printer(item);
  const PrinterPlace place = placeOf(printer);
  Target target;
  target.name = utf8(printer.getName());
  if (place.connection == PrinterPlace::Connection::Usb) {
    target.connection = Target::Connection::Usb;
    target.serial = utf8(place.serial);
  } else {
    target.address = addressText(place.address);
  }
  return target;
}
