// The double, with printers that answer as the ones in software do.
#include <deque>
#include <map>
#include <utility>

#include "FakeRunLoop.h"
#include "FakeUsbRegistry.h"
#include "UsbContract.h"

namespace {

using Fault = PrinterOnUsb::Fault;
using platform::PropertyNumber;
using platform::Text;

constexpr std::uint16_t kMaxPacketSize = 512;
constexpr std::chrono::milliseconds kTurn{1};
constexpr std::size_t kAnswerHead = 16;

void addNumber(platform::PropertyDictionary& properties, const char* key, std::uint16_t value) {
  properties.entries.emplace_back(Text::fromUtf8(key),
                                  PropertyNumber{static_cast<std::int16_t>(value), 2});
}

void addText(FakeUsbDevice& device, const char* key, const std::string& text) {
  if (!text.empty()) device.with(key, text);
}

FakeUsbInterface describeInterface(std::uint16_t interfaceClass, const char* name) {
  FakeUsbInterface interface {
    interfaceClass, name, {outPipe(kMaxPacketSize), inPipe(kMaxPacketSize)}, {}
  };
  addNumber(interface.properties, "bInterfaceClass", interfaceClass);
  return interface;
}

FakeUsbDevice describe(const PrinterOnUsb& printer) {
  FakeUsbDevice device;
  device.label = printer.serial;
  device.vendorId = printer.vendorId;
  device.productId = printer.productId;
  addText(device, "USB Vendor Name", printer.manufacturer);
  addText(device, "USB Product Name", printer.product);
  addText(device, "USB Serial Number", printer.serial);
  addNumber(device.properties, "idVendor", printer.vendorId);
  addNumber(device.properties, "idProduct", printer.productId);
  device.interfaces = {describeInterface(UsbHost::kVendorClass, "Web")};
  if (printer.fault == Fault::NoPrinterInterface) return device;
  FakeUsbInterface acl = describeInterface(UsbHost::kPrinterClass, "Printer");
  acl.interfaceSubClass = 1;
  acl.interfaceProtocol = 2;
  if (printer.fault == Fault::InPipeFirst) std::swap(acl.pipes[0], acl.pipes[1]);
  device.interfaces.push_back(acl);
  return device;
}

// Ends the transfers of one printer, as far as it has an answer to them.
class PluggedPrinter {
 public:
  PluggedPrinter(FakeUsbRegistry& registry, const PrinterOnUsb& printer, bool isConfigured = true)
      : mRegistry(registry),
        mFault(printer.fault),
        mLabel(printer.serial),
        mDescription(describe(printer)),
        mService(attach(isConfigured)) {}

  void setConfigured(bool isConfigured) {
    mRegistry.detach(mService);
    mService = attach(isConfigured);
  }

  platform::io_service_t service() const { return mService; }
  std::size_t messages() const { return mMessages; }

  void serve() {
    const auto transfers = mRegistry.transfers();
    for (const std::shared_ptr<FakeUsbTransfer>& transfer : transfers) {
      if (transfer->interface == mLabel + "/255") serveVendor(transfer);
      if (transfer->interface == mLabel + "/7") servePrinter(transfer);
    }
  }

 private:
  using Packets = std::deque<std::string>;
  using Transfer = std::shared_ptr<FakeUsbTransfer>;

  platform::io_service_t attach(bool isConfigured) {
    FakeUsbDevice device = mDescription;
    if (!isConfigured) device.interfaces.clear();
    return mRegistry.attach(device);
  }

  void serveVendor(const Transfer& transfer) {
    if (transfer->isRead) return give(transfer, mEcho);
    mEcho.push_back(transfer->written);
    mRegistry.completeWrite(transfer, transfer->size);
  }

  void servePrinter(const Transfer& transfer) {
    if (transfer->isRead) return give(transfer, mAnswer);
    if (mFault == Fault::TakesOneMessage && mMessages > 0) return;
    ++mMessages;
    const std::string message = transfer->written;
    mRegistry.completeWrite(transfer, transfer->size);
    if (message == kIdRequest) answer();
  }

  void answer() {
    if (mFault == Fault::StallsAtRequest) {
      const platform::io_service_t acl = mRegistry.interfaceOf(mService, 1);
      mRegistry.stall(acl, 1);
      mRegistry.stall(acl, 2);
    }
    for (const std::string& packet :
         {kIdAnswer.substr(0, kAnswerHead), kIdAnswer.substr(kAnswerHead)}) {
      if (mFault == Fault::EmptyPackets) mAnswer.emplace_back();
      mAnswer.push_back(packet);
    }
  }

  void give(const Transfer& transfer, Packets& packets) {
    if (packets.empty()) return;
    mRegistry.completeRead(transfer, packets.front());
    packets.pop_front();
  }

  FakeUsbRegistry& mRegistry;
  Fault mFault;
  std::string mLabel;
  FakeUsbDevice mDescription;
  platform::io_service_t mService;
  std::size_t mMessages = 0;
  Packets mEcho;
  Packets mAnswer;
};

class FakeUsbWorld : public UsbWorld {
 public:
  platform::UsbRegistry& registry() override { return mRegistry; }
  platform::RunLoop& runLoop() override { return mRunLoop; }

  void plugIn(const PrinterOnUsb& printer) override {
    mPrinters.emplace(printer.serial, PluggedPrinter(mRegistry, printer));
  }

  void unplug(const std::string& serial) override {
    mRegistry.detach(mPrinters.at(serial).service());
    mPrinters.erase(serial);
  }

  void plugInUnconfigured(const PrinterOnUsb& printer) override {
    mPrinters.emplace(printer.serial, PluggedPrinter(mRegistry, printer, false));
  }

  void setConfigured(const std::string& serial, bool isConfigured) override {
    mPrinters.at(serial).setConfigured(isConfigured);
  }

  void claimElsewhere(const std::string& serial, bool isClaimed) override {
    mRegistry.claimElsewhere(mRegistry.interfaceOf(mPrinters.at(serial).service(), 1), isClaimed);
  }

  void awaitMessages(const std::string& serial, std::size_t count) override {
    serve();
    EXPECT_GE(mPrinters.at(serial).messages(), count);
  }

  bool runUntil(const std::function<bool()>& done) override {
    constexpr int kEnough = 20000;
    for (int i = 0; i < kEnough && !done(); ++i) turn();
    return done();
  }

  void runFor(std::chrono::milliseconds time) override {
    for (; time.count() > 0; time -= kTurn) turn();
  }

 private:
  void serve() {
    for (auto& [serial, printer] : mPrinters) printer.serve();
  }

  void turn() {
    serve();
    mRunLoop.runAllLater();
    mRunLoop.advance(kTurn);
  }

  FakeRunLoop mRunLoop;
  FakeUsbRegistry mRegistry;
  std::map<std::string, PluggedPrinter> mPrinters;
};

}  // namespace

std::vector<UsbImplementation> usbImplementations() {
  return {{"Fake", [] { return std::unique_ptr<UsbWorld>(new FakeUsbWorld); }}};
}
