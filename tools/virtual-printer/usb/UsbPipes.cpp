#include "UsbPipes.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace virtualprinter {

UsbPipes::UsbPipes(AsyncIo& io, FileDescriptor out, FileDescriptor in, Handlers handlers)
    : mIo(io), mOut(std::move(out)), mIn(std::move(in)), mHandlers(std::move(handlers)) {}

void UsbPipes::start() {
  stop();
  mEpoch = std::make_shared<int>();
  mReading = true;
  read();
}

void UsbPipes::stop() {
  mEpoch.reset();
  mUnsent.clear();
  mReading = false;
}

void UsbPipes::read() {
  if (!mReading) return;
  mIo.read(
      mOut.get(), mHandlers.wanted(),
      [this, epoch = std::weak_ptr<int>(mEpoch)](long result, std::span<const std::uint8_t> bytes) {
        if (epoch.expired()) return;
        // Any other error is the end of the pipe, which the control endpoint tells of.
        if (result < 0 && result != -EAGAIN && result != -EINTR) return;
        if (!bytes.empty()) mHandlers.received(bytes);
        if (!epoch.expired()) read();
      });
}

void UsbPipes::send(std::span<const std::uint8_t> bytes) {
  if (!mEpoch) return;
  mUnsent.emplace_back(bytes.begin(), bytes.end());
  if (mUnsent.size() == 1) write();
}

void UsbPipes::write() {
  mIo.write(mIn.get(), mUnsent.front(),
            [this, epoch = std::weak_ptr<int>(mEpoch)](long result, std::span<const std::uint8_t>) {
              if (epoch.expired() || result < 0) return;
              mUnsent.pop_front();
              if (!mUnsent.empty()) {
                write();
              } else {
                mHandlers.allSent();
              }
            });
}

// FunctionFS halts an endpoint that is used in the wrong direction.
void UsbPipes::stall() {
  std::uint8_t byte = 0;
  [[maybe_unused]] ssize_t refused = ::read(mIn.get(), &byte, sizeof byte);
  refused = ::write(mOut.get(), &byte, sizeof byte);
}

}  // namespace virtualprinter
