// Whole downloads over the cable, one after the other: the input says in which packets the printer
// answers, which transfers fail and how, and when it is unplugged. After each step the program has
// sent and told what the model says; each download ends once, and nothing of it is left. A good
// download follows whatever came before, on a printer that has just been plugged in.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "FakeUsbRegistry.h"
#include "LogRecorder.h"
#include "ModelledDownloads.h"
#include "Printer.h"
#include "PrinterMessages.h"
#include "QuillUsbDevice.h"
#include "Script.h"

namespace {

constexpr std::array<platform::IOReturn, 4> kFailures{
    platform::kIOUSBTransactionTimeout, platform::kIOUSBPipeStalled, platform::kIOReturnNoDevice,
    static_cast<platform::IOReturn>(0xE00002EBu)};

// A printer on the cable, as long as it is plugged in.
class PluggedIn {
 public:
  explicit PluggedIn(FakeUsbRegistry& usb, std::uint16_t packetSize) : mUsb(usb) {
    FakeUsbDevice device = fakePrinter();
    device.interfaces[0].pipes = {outPipe(packetSize), inPipe(packetSize)};
    mService = mUsb.attach(device);
    mDevice.init(mService, 0);
    mPrinter = Printer::create(mDevice);
  }
  ~PluggedIn() {
    Printer::destroy(mPrinter);
    mUsb.detach(mService);
  }
  PluggedIn(const PluggedIn&) = delete;
  PluggedIn& operator=(const PluggedIn&) = delete;

  const Printer& printer() const { return *mPrinter; }

 private:
  FakeUsbRegistry& mUsb;
  platform::io_service_t mService = 0;
  QuillUsbDevice mDevice;
  Printer* mPrinter = nullptr;
};

class UsbDownloadRun : private ModelledDownloads {
 public:
  explicit UsbDownloadRun(Script& script) {
    constexpr std::array<std::uint16_t, 6> kPacketSizes{64, 512, 8, 1, 16, 17};
    mPacketSize = script.choose(kPacketSizes);
    mModel.keepUnread();
    plugIn();
  }
  ~UsbDownloadRun() { mDownloader.reset(); }
  UsbDownloadRun(const UsbDownloadRun&) = delete;
  UsbDownloadRun& operator=(const UsbDownloadRun&) = delete;

  // False when the program would end by assertion at the next step.
  bool step(Script& script) {
    const std::uint8_t code = script.take();
    const std::uint8_t operand = code >> 3;
    switch (code & 7) {
      case 0:
        if (!isRunning()) start();
        break;
      case 1:
        connect();
        break;
      case 2:
        if (mModel.awaits() == Awaits::Room) takeWrite(operand);
        break;
      case 3:
        send(script.take(operand));
        break;
      case 4:
        mTalk.sayNext(operand);
        break;
      case 5:
        send(mTalk.take(operand));
        break;
      case 6:
        mTalk.change(operand, script.take());
        break;
      default:
        if (operand >= 28) {
          fail(kFailures[operand - 28]);
        } else if (!takeTurn()) {
          return false;
        }
    }
    check();
    return true;
  }

  bool finishWell() {
    if (isRunning()) return true;
    const std::size_t told = mModel.commands().size();
    if (mModel.unread() > 0) {
      mPluggedIn.reset();
      plugIn();
    }
    start();
    connect();
    for (int message = 0; message < 2; ++message) takeWrite(0);
    sendAll(kDeviceIdResponse);
    takeTurn();
    sendAll(kDeviceId100);
    takeTurn();
    for (int message = 0; message < 3; ++message) takeWrite(0);
    sendAll(kBurnResponse);
    takeTurn();
    check();
    return mModel.commands().size() == told + 1 && mModel.commands().back() == "DlOk";
  }

  void leave() {
    end();
    mPluggedIn.reset();
    mRunLoop.runAllLater();
    require(mUsb.problems().empty() && mUsb.transfers().empty());
  }

 private:
  platform::Platform surfacesWithUsb() {
    platform::Platform platform = surfaces();
    platform.usb = &mUsb;
    return platform;
  }

  void plugIn() {
    mPluggedIn = std::make_unique<PluggedIn>(mUsb, mPacketSize);
    mModel.forgetUnread();
  }

  void start() {
    mLog.takeEntries();
    mSent.clear();
    mSentBefore = mModel.sent().size();
    mTalk.forget();
    mPluggedIn->printer().download(*mDownloader);
    mModel.start(true);
  }

  // There is nothing to connect to: the first turn writes.
  void connect() {
    if (mModel.awaits() != Awaits::Connection) return;
    mEvents.deliverAll();
    mModel.connectionEnds();
  }

  const FakeUsbTransfer& transfer() const {
    require(mUsb.transfers().size() == 1);
    return *mUsb.transfers().front();
  }

  // How much of it the printer took is not looked at.
  void takeWrite(std::uint8_t left) {
    require(!transfer().isRead);
    mSent.push_back(transfer().written);
    mUsb.completeWrite(transfer().size - std::min<std::uint32_t>(left, transfer().size));
    mRunLoop.runAllLater();
    require(mEvents.deliverNext());
    mModel.becomesWritable();
  }

  // One transfer, which takes no more than was asked for.
  void send(std::string bytes) {
    if (mModel.awaits() != Awaits::Bytes) return;
    require(transfer().isRead);
    if (bytes.size() > transfer().size) bytes.resize(transfer().size);
    mUsb.completeRead(bytes);
    mRunLoop.runAllLater();
    mModel.arrives(bytes);
  }

  // In as many transfers as it takes.
  void sendAll(std::string bytes) {
    while (!bytes.empty() && mModel.awaits() == Awaits::Bytes) {
      const std::string packet = bytes.substr(0, transfer().size);
      bytes.erase(0, packet.size());
      send(packet);
    }
  }

  void fail(platform::IOReturn why) {
    if (mModel.awaits() != Awaits::Room && mModel.awaits() != Awaits::Bytes) return;
    if (!transfer().isRead) mSent.push_back(transfer().written);
    if (why == platform::kIOReturnNoDevice) {
      mPluggedIn.reset();
    } else {
      mUsb.failTransfer(why);
    }
    mRunLoop.runAllLater();
    mEvents.deliverAll();
    mModel.transferFails();
    if (mPluggedIn == nullptr) plugIn();
  }

  void check() {
    checkOutcomes();
    const Awaits awaits = mModel.awaits();
    require(mEvents.queued() == (awaits == Awaits::Turn || awaits == Awaits::Connection ? 1u : 0u));
    require(mUsb.transfers().size() ==
            (awaits == Awaits::Room || awaits == Awaits::Bytes ? 1u : 0u));
    if (awaits == Awaits::Room) require(transfer().written == mModel.sent().back());
    const auto sent = std::min(mSent.size(), mModel.sent().size() - mSentBefore);
    require(std::equal(mSent.begin(), mSent.begin() + static_cast<std::ptrdiff_t>(sent),
                       mModel.sent().begin() + static_cast<std::ptrdiff_t>(mSentBefore)));
    require(mSent.size() == sent);
    if (!isRunning() && !mModel.commands().empty()) {
      require(mLog.entries().back().text == "Cleaning up USB transport.");
    }
  }

  FakeUsbRegistry mUsb;
  LogRecorder mLog{surfacesWithUsb()};
  std::uint16_t mPacketSize = 64;
  std::vector<std::string> mSent;  // in this download
  std::size_t mSentBefore = 0;
  std::unique_ptr<PluggedIn> mPluggedIn;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  UsbDownloadRun run(script);
  while (!script.isOver()) {
    if (!run.step(script)) return 0;
  }
  require(run.finishWell());
  run.leave();
  return 0;
}
