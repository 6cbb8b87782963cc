#include "UsbPipes.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace virtualprinter {
namespace {

constexpr std::size_t kReadsInFlight = 4;

}  // namespace

UsbPipes::UsbPipes(AsyncIo& io, FileDescriptor out, FileDescriptor in, Handlers handlers)
    : mIo(io), mOut(std::move(out)), mIn(std::move(in)), mHandlers(std::move(handlers)) {}

void UsbPipes::start() {
  stop();
  mEpoch = std::make_shared<int>();
  mReading = true;
  askForMore();
}

void UsbPipes::stop() {
  stopReading();
  mReads.clear();
  mEpoch.reset();
  mUnsent.clear();
}

void UsbPipes::stopReading() {
  mReading = false;
  for (const Read& read : mReads) mIo.cancel(read.number);
}

// Several at once, so that a host which has only so much time for a transfer need not wait for this
// process to be scheduled.
void UsbPipes::askForMore() {
  while (mReading && mReads.size() < kReadsInFlight) {
    std::size_t asked = 0;
    for (const Read& read : mReads) asked += read.size;
    const std::size_t size = mHandlers.wanted(asked);
    const AsyncIo::Number number =
        mIo.read(mOut.get(), size,
                 [this, epoch = std::weak_ptr<int>(mEpoch)](long result,
                                                            std::span<const std::uint8_t> bytes) {
                   if (epoch.expired()) return;
                   mReads.pop_front();
                   if (!mReading) return;
                   if (!bytes.empty()) mHandlers.received(bytes);
                   if (epoch.expired()) return;
                   // After any other error the pipe is gone, and the control endpoint tells of
                   // that.
                   if (result >= 0 || result == -EAGAIN || result == -EINTR) askForMore();
                 });
    mReads.push_back({number, size});
  }
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
  [[maybe_unused]] const ssize_t refusedRead = ::read(mIn.get(), &byte, sizeof byte);
  [[maybe_unused]] const ssize_t refusedWrite = ::write(mOut.get(), &byte, sizeof byte);
}

}  // namespace virtualprinter
