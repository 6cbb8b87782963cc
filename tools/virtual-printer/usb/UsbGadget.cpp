#include "UsbGadget.h"

#include <unistd.h>

#include <utility>

namespace virtualprinter {
namespace {

constexpr std::size_t kEchoSize = 16384;

std::string functionName() { return "printer" + std::to_string(getpid()); }

UsbShape shapeOf(const FaultPlan& faults) {
  UsbShape shape;
  shape.hasPrinterInterface = !faults.find(FaultKind::NoPrinterInterface);
  shape.hasVendorInterface = !faults.find(FaultKind::NoVendorInterface);
  shape.inPipeFirst = faults.find(FaultKind::InPipeFirst) != nullptr;
  return shape;
}

}  // namespace

UsbGadget::UsbGadget(Printer& printer, EventLoop& loop, const UsbIdentity& identity,
                     const std::string& controller)
    : mPrinter(printer),
      mLoop(loop),
      mIdentity(identity),
      mController(controller),
      mDirectory(identity, functionName()),
      mDescriptors(describeInterfaces(shapeOf(printer.faults()))),
      mFunction(loop, functionName(), mDescriptors,
                {[this] { enabled(); }, [this] { disabled(); },
                 [this] { return mPrinter.deviceId(mPrinter.faults()); }}),
      mIo(loop) {
  if (!mDescriptors.printer.out.empty()) {
    mPrinterPipes = std::make_unique<UsbPipes>(
        mIo, mFunction.open(mDescriptors.printer.out), mFunction.open(mDescriptors.printer.in),
        UsbPipes::Handlers{
            [this](std::size_t asked) { return mConnection->wantedBytes(asked); },
            [this](std::span<const std::uint8_t> bytes) { mConnection->received(bytes); },
            [this] { mConnection->allSent(); }});
  }
  if (!mDescriptors.vendor.out.empty()) {
    mVendorPipes = std::make_unique<UsbPipes>(
        mIo, mFunction.open(mDescriptors.vendor.out), mFunction.open(mDescriptors.vendor.in),
        UsbPipes::Handlers{
            [](std::size_t) { return kEchoSize; },
            [this](std::span<const std::uint8_t> bytes) { mVendorPipes->send(bytes); }, [] {}});
  }
}

UsbGadget::~UsbGadget() { leave(); }

void UsbGadget::arrive() { plugIn(); }

void UsbGadget::leave() {
  mPlugTimer.reset();
  if (mConnection) mConnection->abandon();
  unplug(std::nullopt);
  mConnection.reset();
}

void UsbGadget::plugIn() {
  mPlugTimer.reset();
  if (mPlugged) return;
  const std::string controller = mDirectory.bind(mController);
  mPlugged = true;
  mPrinter.journal().write("plugged", {{"controller", controller},
                                       {"vendor", mIdentity.vendorId},
                                       {"product", mIdentity.productId},
                                       {"serial", mIdentity.serial}});
}

void UsbGadget::unplug(std::optional<std::chrono::milliseconds> back) {
  mPlugTimer.reset();
  if (!mPlugged) return;
  disabled();
  mDirectory.unbind();
  mPlugged = false;
  mPrinter.journal().write("unplugged");
  if (back) mPlugTimer = mLoop.after(*back, [this] { plugIn(); });
}

void UsbGadget::enabled() {
  if (!mPlugged) return;
  if (mVendorPipes) mVendorPipes->start();
  if (!mPrinterPipes) return;
  // The kernel of the host configures the interface twice before anybody talks.
  const bool goesOn = mConnection && mConnection->isFresh();
  if (!goesOn) {
    if (mConnection) mConnection->lost("the host has configured the interface anew");
    if (mConnection) mConnection->abandon();
    mConnection = std::make_unique<UsbConnection>(
        mPrinter, *mPrinterPipes,
        [this](std::chrono::milliseconds after, std::optional<std::chrono::milliseconds> back) {
          mPlugTimer = mLoop.after(after, [this, back] { unplug(back); });
        });
  }
  mPrinterPipes->start();
  if (!goesOn) mConnection->begin();
}

void UsbGadget::disabled() {
  if (mVendorPipes) mVendorPipes->stop();
  if (mPrinterPipes) mPrinterPipes->stop();
  if (mConnection) mConnection->lost("unplugged");
}

}  // namespace virtualprinter
