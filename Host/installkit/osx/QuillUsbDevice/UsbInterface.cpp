#include "UsbInterface.h"

#include <algorithm>
#include <limits>
#include <sstream>

#include "AsyncIoNotifier.h"
#include "IoKitException.h"
#include "ShortReadBuffer.h"
#include "checkIoKitResult.h"
#include "createPlugIn.h"
#include "platform/Assertion.h"
#include "platform/Platform.h"
#include "printKeys.h"

using platform::IOReturn;
using platform::kIOReturnSuccess;

namespace {

// A pipe takes 32-bit lengths; a longer request must not be cut to what its low bits say.
std::uint32_t transferLength(std::size_t len, const char* message) {
  if (len > std::numeric_limits<std::uint32_t>::max()) {
    throwIoKitException(message, platform::kIOReturnBadArgument);
  }
  return static_cast<std::uint32_t>(len);
}

// A reference to a pipe is a byte. No pipe at all (-1) thus becomes 255, which no interface has, so
// that the operation on it fails.
std::uint8_t pipeReference(int pipe) { return static_cast<std::uint8_t>(pipe & 0xFF); }

std::string failureMessage(const char* operation, IOReturn result) {
  std::ostringstream message;
  message << operation << " failed: I/O Kit error=0x" << std::hex
          << static_cast<std::uint32_t>(result);
  return message.str();
}

// Ends the interface's ownership of `context`. Null when it has ended before.
template <typename Context>
std::unique_ptr<Context> take(std::vector<std::unique_ptr<Context>>& contexts,
                              const Context* context) {
  const auto found =
      std::find_if(contexts.begin(), contexts.end(),
                   [context](const std::unique_ptr<Context>& c) { return c.get() == context; });
  if (found == contexts.end()) return nullptr;
  std::unique_ptr<Context> taken = std::move(*found);
  contexts.erase(found);
  return taken;
}

}  // namespace

UsbInterface::UsbInterface(platform::io_service_t service) : mService(service) {
  platform::UsbRegistry& registry = *platform::current().usb;
  if (registry.entryName(service, mName) != kIOReturnSuccess) mName.clear();
  const IOReturn result = createPlugIn(service, platform::UsbRegistry::ClientType::Interface)
                              ->queryInterface(mInterface);
  if (result < 0 || !mInterface) {
    throwIoKitException("Couldn’t create a device interface for the interface.", result);
  }
  registry.retain(service);
}

UsbInterface::~UsbInterface() {
  if (mIsOpen) {
    mInterface->close();
    mIsOpen = false;
  }
  // Ends the transfers under way. Until then they use the buffer and the contexts.
  mInterface.reset();
  platform::current().usb->release(mService);
}

void UsbInterface::initEndpointPipes() {
  checkIoKitResult("Unable to open interface.", mInterface->open());
  mIsOpen = true;
  findPipes();
  platform::UsbEventSource* source = nullptr;
  checkIoKitResult("Unable to create asynchronous event source.",
                   mInterface->createAsyncEventSource(source));
  source->addTo(*platform::current().runLoop);
}

void UsbInterface::findPipes() {
  std::uint8_t count = 0;
  checkIoKitResult("Unable to get number of endpoints.", mInterface->getNumEndpoints(count));
  for (int pipe = 1; pipe <= count && (mInPipe == -1 || mOutPipe == -1); ++pipe) {
    platform::UsbPipeProperties properties;
    checkIoKitResult("Unable to get properties of pipe.",
                     mInterface->getPipeProperties(pipeReference(pipe), properties));
    if (properties.direction == platform::UsbDirection::Out) {
      mOutPipe = pipe;
    } else if (properties.direction == platform::UsbDirection::In) {
      mInPipe = pipe;
      mMaxPacketSize = properties.maxPacketSize;
    }
  }
}

void UsbInterface::clearPipeStall(int pipe) {
  checkIoKitResult("Failed to clear pipe stall.",
                   mInterface->clearPipeStallBothEnds(pipeReference(pipe)));
}

void UsbInterface::write(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                         unsigned int timeoutMs) {
  const std::uint32_t size = transferLength(len, "Async write request failed.");
  if (!mIsOpen) initEndpointPipes();

  WriteContext* context =
      mWrites.emplace_back(std::make_unique<WriteContext>(WriteContext{this, &notifier})).get();
  try {
    clearPipeStall(mOutPipe);
    checkIoKitResult("Async write request failed.",
                     mInterface->writePipeAsyncTO(pipeReference(mOutPipe), buf, size, timeoutMs,
                                                  timeoutMs, writeCompletionCallback, context));
  } catch (const IoKitException&) {
    take(mWrites, context);
    throw;
  }
}

void UsbInterface::writeCompletionCallback(void* refCon, int result, void*) {
  if (refCon == nullptr) return;
  WriteContext& context = *static_cast<WriteContext*>(refCon);
  if (result != kIOReturnSuccess) {
    const std::unique_ptr<WriteContext> ended = take(context.owner->mWrites, &context);
    ended->notifier->failed(failureMessage("Async write", result));
  } else {
    context.owner->handleWriteCompletion(context);
  }
}

void UsbInterface::handleWriteCompletion(WriteContext& context) {
  const std::unique_ptr<WriteContext> ended = take(mWrites, &context);
  ended->notifier->complete();
}

void UsbInterface::read(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                        unsigned int timeoutMs) {
  const std::uint32_t size = transferLength(len, "Async read request failed.");
  if (!mIsOpen) initEndpointPipes();
  if (mMaxPacketSize == 0) {
    throwIoKitException("The interface cannot be read.", platform::kIOReturnNotFound);
  }
  if (!mShortReadBuffer) mShortReadBuffer = std::make_unique<ShortReadBuffer>(mMaxPacketSize);

  ReadContext* context =
      mReads
          .emplace_back(std::make_unique<ReadContext>(ReadContext{
              this, &notifier, static_cast<char*>(buf), size, timeoutMs, size < mMaxPacketSize}))
          .get();
  bool isComplete = false;
  try {
    isComplete = read(*context);
  } catch (const IoKitException&) {
    take(mReads, context);
    throw;
  }
  if (isComplete) take(mReads, context)->notifier->complete();
}

// What the short read buffer holds goes first. After that either the request is complete or the
// buffer is empty, so this and handleReadCompletion() do not call each other any deeper.
bool UsbInterface::read(ReadContext& context) {
  if (mShortReadBuffer->available() != 0) {
    return handleReadCompletion(context, mShortReadBuffer->read(context.buffer, context.mLen));
  }
  issueRead(context);
  return false;
}

// Only whole packets are ever asked of the pipe.
void UsbInterface::issueRead(ReadContext& context) {
  context.isShortRead = context.mLen < mMaxPacketSize;
  char* const target = context.isShortRead ? mShortReadBuffer->data() : context.buffer;
  const std::size_t length =
      context.isShortRead ? mShortReadBuffer->capacity() : bulkReadLen(context.mLen);
  clearPipeStall(mInPipe);
  checkIoKitResult("Async read request failed.",
                   mInterface->readPipeAsyncTO(pipeReference(mInPipe), target,
                                               static_cast<std::uint32_t>(length), context.timeout,
                                               context.timeout, readCompletionCallback, &context));
}

// Nobody above the run loop could handle it when the next part of a read cannot be started: the
// request's notifier is told, or its owner would wait forever. What the notifier itself throws is
// no failure of the request, and so it is told only after that.
void UsbInterface::readCompletionCallback(void* refCon, int result, void* arg0) {
  if (refCon == nullptr) return;
  ReadContext& context = *static_cast<ReadContext*>(refCon);
  UsbInterface& owner = *context.owner;
  bool isComplete = false;
  std::string failure;
  if (result != kIOReturnSuccess) {
    failure = failureMessage("Async read", result);
  } else {
    try {
      const std::size_t numBytes = reinterpret_cast<std::uintptr_t>(arg0);
      isComplete = context.isShortRead ? owner.handleShortReadCompletion(context, numBytes)
                                       : owner.handleReadCompletion(context, numBytes);
    } catch (const IoKitException& e) {
      failure = e.what();
    }
  }
  if (isComplete) {
    take(owner.mReads, &context)->notifier->complete();
  } else if (!failure.empty()) {
    take(owner.mReads, &context)->notifier->failed(failure);
  }
}

bool UsbInterface::handleReadCompletion(ReadContext& context, std::size_t numBytes) {
  platform::assertAt(numBytes <= context.mLen, "numBytes <= context.mLen", "handleReadCompletion",
                     "Host/installkit/osx/QuillUsbDevice/UsbInterface", __LINE__);
  if (numBytes == context.mLen) return true;
  context.mLen -= static_cast<std::uint32_t>(numBytes);
  context.buffer += numBytes;
  return read(context);
}

bool UsbInterface::handleShortReadCompletion(ReadContext& context, std::size_t numBytes) {
  mShortReadBuffer->handleReadCompletion(numBytes);
  return read(context);
}

void UsbInterface::print(std::ostream& os) const {
  printKeys(os, mService, "interface", mName.c_str());
}

std::size_t UsbInterface::bulkReadLen(std::size_t len) const {
  return mMaxPacketSize == 0 ? 0 : len / mMaxPacketSize * mMaxPacketSize;
}
