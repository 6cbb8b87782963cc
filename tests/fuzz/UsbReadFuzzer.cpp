// An interface with any pipes is read in any lengths while its packets come cut in any way: what
// comes out is what was sent, each read ends once, and no transfer asks for more than there is
// room. The first byte says how many pipes there are; each takes a byte for its direction and two
// for its packet size. Then reads and the transfers that serve them follow in turn.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "AsyncIoNotifier.h"
#include "FakeRunLoop.h"
#include "FakeUsbRegistry.h"
#include "IoKitException.h"
#include "LogRecorder.h"
#include "UsbInterface.h"

namespace {

constexpr std::size_t kMostReads = 24;

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : mNext(data), mEnd(data + size) {}

  bool isEmpty() const { return mNext == mEnd; }
  std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : *mNext++; }

 private:
  const std::uint8_t* mNext;
  const std::uint8_t* mEnd;
};

class CountingNotifier : public AsyncIoNotifier {
 public:
  void complete() override { ++mCompleted; }
  void failed(const std::string&) override { ++mFailed; }

  int completed() const { return mCompleted; }
  bool isTold() const { return mCompleted + mFailed != 0; }
  void expectToldOnce() const {
    if (mCompleted + mFailed != 1) std::abort();
  }

 private:
  int mCompleted = 0;
  int mFailed = 0;
};

std::vector<platform::UsbPipeProperties> pipes(Input& input) {
  std::vector<platform::UsbPipeProperties> pipes(input.byte() % 8);
  for (platform::UsbPipeProperties& pipe : pipes) {
    pipe.direction = static_cast<platform::UsbDirection>(input.byte() % 4);
    pipe.maxPacketSize = input.byte();
    pipe.maxPacketSize = static_cast<std::uint16_t>(pipe.maxPacketSize | (input.byte() & 0x7) << 8);
  }
  return pipes;
}

// The bytes of the stream from `position` on.
std::string stream(std::size_t position, std::size_t count) {
  std::string bytes;
  for (std::size_t i = position; i < position + count; ++i) bytes += static_cast<char>(i % 251);
  return bytes;
}

class Session {
 public:
  explicit Session(Input& input) : mInput(input) {
    FakeUsbDevice device;
    device.interfaces = {{7, "Printer", pipes(input), {}}};
    mService = mUsb.interfaceOf(mUsb.attach(device));
  }

  void run() {
    {
      UsbInterface interface(mService);
      for (std::size_t i = 0; i < kMostReads && !mInput.isEmpty() && readSome(interface); ++i) {
      }
    }
    if (!mUsb.problems().empty()) std::abort();
  }

 private:
  // False when the stream cannot go on.
  bool readSome(UsbInterface& interface) {
    std::string buffer(1 + std::size_t{mInput.byte()} * 5, '?');
    CountingNotifier notifier;
    try {
      interface.read(buffer.data(), buffer.size(), notifier, 1);
    } catch (const IoKitException&) {
      if (notifier.isTold()) std::abort();
      return false;
    }
    while (!notifier.isTold()) serveTransfer();
    notifier.expectToldOnce();
    if (notifier.completed() == 0) return false;
    if (buffer != stream(mTaken, buffer.size())) std::abort();
    mTaken += buffer.size();
    return true;
  }

  void serveTransfer() {
    if (mUsb.transfers().size() != 1) std::abort();
    const std::size_t size = mUsb.transfers().front()->size;
    if (mInput.isEmpty()) {
      mUsb.failTransfer(platform::kIOUSBTransactionTimeout);
    } else {
      const std::size_t count = std::min(std::size_t{mInput.byte()} * 5, size);
      mUsb.completeRead(stream(mSent, count));
      mSent += count;
    }
    mLoop.runAllLater();
  }

  Input& mInput;
  FakeRunLoop mLoop;
  FakeUsbRegistry mUsb;
  LogRecorder mPlatform{{.runLoop = &mLoop, .usb = &mUsb}};
  platform::io_service_t mService = 0;
  std::size_t mSent = 0;
  std::size_t mTaken = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Session(input).run();
  return 0;
}
