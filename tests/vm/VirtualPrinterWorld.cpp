// The registry on libusb, on the kernel's bus and the run loops of the two programs, with printers
// that are processes of their own.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

#include "OtherProgram.h"
#include "RunLoopWorld.h"
#include "UsbContract.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "platform/libusb/LibusbRegistry.h"

namespace {

using Fault = PrinterOnUsb::Fault;

std::string usbId(const PrinterOnUsb& printer) {
  char id[sizeof "VVVV:PPPP"];
  std::snprintf(id, sizeof id, "%04x:%04x", printer.vendorId, printer.productId);
  return id;
}

std::vector<std::string> optionsFor(const PrinterOnUsb& printer) {
  static const std::map<Fault, std::string> faults{
      {Fault::NoPrinterInterface, "no-printer-interface"},
      {Fault::InPipeFirst, "in-pipe-first"},
      {Fault::EmptyPackets, "zero-packets"},
      {Fault::StallsAtRequest, "stall@id-request"},
      {Fault::TakesOneMessage, "hang@status-off"}};
  std::vector<std::string> options{"--usb-id",           usbId(printer),  "--usb-manufacturer",
                                   printer.manufacturer, "--usb-product", printer.product,
                                   "--usb-serial",       printer.serial};
  if (printer.fault != Fault::None) {
    options.insert(options.end(), {"--fault", faults.at(printer.fault)});
  }
  return options;
}

class VirtualPrinterWorld : public UsbWorld {
 public:
  explicit VirtualPrinterWorld(std::unique_ptr<RunLoopWorld> loop) : mLoop(std::move(loop)) {}

  platform::UsbRegistry& registry() override { return *mRegistry; }
  platform::RunLoop& runLoop() override { return mLoop->runLoop(); }

  void plugIn(const PrinterOnUsb& printer) override {
    mPrinters[printer.serial] = std::make_unique<UsbPrinterProcess>(optionsFor(printer));
  }

  void unplug(const std::string& serial) override { mPrinters.erase(serial); }

  void plugInUnconfigured(const PrinterOnUsb& printer) override {
    const AuthorizingNobody nobody;
    plugIn(printer);
    await([&] { return !usbDevice(printer.serial).empty(); }, "the printer is not plugged in");
  }

  void setConfigured(const std::string& serial, bool isConfigured) override {
    const std::filesystem::path device = usbDevice(serial);
    if (usbAttribute(device / "authorized") == "0") setUsbAttribute(device / "authorized", "1");
    if (usbAttribute(device / "bConfigurationValue") == (isConfigured ? "1" : "")) return;
    setUsbAttribute(device / "bConfigurationValue", isConfigured ? "1" : "0");
  }

  void claimElsewhere(const std::string& serial, bool isClaimed) override {
    mOthers.erase(serial);
    if (isClaimed) mOthers[serial] = std::make_unique<OtherProgram>(serial, 1);
  }

  void awaitMessages(const std::string& serial, std::size_t count) override {
    await([&] { return mPrinters.at(serial)->receivedMessages().size() >= count; },
          "the printer receives nothing");
  }

  bool runUntil(const std::function<bool()>& done) override { return mLoop->runUntil(done); }
  void runFor(std::chrono::milliseconds time) override { mLoop->runFor(time); }

 private:
  // Without turning the run loop.
  static void await(const std::function<bool()>& done, const char* otherwise) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) FAIL() << otherwise;
      usleep(5000);
    }
  }

  std::unique_ptr<RunLoopWorld> mLoop;
  std::unique_ptr<platform::UsbRegistry> mRegistry = platform::makeLibusbRegistry(mLoop->runLoop());
  std::map<std::string, std::unique_ptr<UsbPrinterProcess>> mPrinters;
  std::map<std::string, std::unique_ptr<OtherProgram>> mOthers;
};

}  // namespace

std::vector<UsbImplementation> usbImplementations() {
  std::vector<UsbImplementation> all;
  for (const RunLoopImplementation& loop : productRunLoops()) {
    all.push_back({"LibusbOn" + loop.name,
                   [make = loop.make] { return std::make_unique<VirtualPrinterWorld>(make()); }});
  }
  return all;
}
