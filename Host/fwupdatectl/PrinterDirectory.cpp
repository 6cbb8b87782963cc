#include "PrinterDirectory.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "BonjourPrinter.h"
#include "Branding.h"
#include "PrinterList.h"
#include "ToolHost.h"

using namespace platform::literals;
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
      mWindow(makeWindow(host, mToolkit)),
      mView(mWindow),
      mUsbDeviceFinder(mView),
      mBonjourDeviceFinder(Branding::sManufacturerStr, Branding::sModelStr, mView) {
  mUsbDeviceFinder.setupAsyncNotifier(nullptr);
  mUsbDeviceFinder.startAsyncNotifier();
  mBonjourDeviceFinder.start();
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

// The list rides on its control; a row's number is its place there, plus one.
Target PrinterDirectory::targetOf(ItemId item) {
  platform::ControlRef list = platform::ControlRef::None;
  void* value = nullptr;
  mToolkit.getControlById(mWindow, {"lPrn"_4cc, 0}, list);
  mToolkit.getControlProperty(list, "MjFd"_4cc, "ldPl"_4cc, value);
  const Printer& record = *static_cast<const PrinterList*>(value)->get(item - 1);

  Target target;
  target.name = utf8(record.getName());
  if (const auto* network = dynamic_cast<const BonjourPrinter*>(&record)) {
    target.address = addressText(network->getAddress());
  } else {
    target.connection = Target::Connection::Usb;
    target.serial = utf8(record.getInfo());
  }
  return target;
}
