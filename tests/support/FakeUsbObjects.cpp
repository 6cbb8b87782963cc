#include "FakeUsbObjects.h"

#include <algorithm>
#include <chrono>
#include <utility>

using platform::IOReturn;
using platform::kIOReturnSuccess;

namespace {

bool isWanted(std::uint16_t wanted, std::uint16_t own) {
  return wanted == platform::kIOUSBFindInterfaceDontCare || wanted == own;
}

bool isWanted(const platform::IOUSBFindInterfaceRequest& request,
              const FakeUsbInterface& interface) {
  return isWanted(request.bInterfaceClass, interface.interfaceClass) &&
         isWanted(request.bInterfaceSubClass, interface.interfaceSubClass) &&
         isWanted(request.bInterfaceProtocol, interface.interfaceProtocol) &&
         isWanted(request.bAlternateSetting, interface.alternateSetting);
}

// Of two time-outs, of which 0 is none.
std::uint32_t shorter(std::uint32_t a, std::uint32_t b) {
  return a == 0 || b == 0 ? std::max(a, b) : std::min(a, b);
}

}  // namespace

FakeUsbPort::~FakeUsbPort() {
  mRegistry.mRecord.note("destroy port");
  mRegistry.forgetPort(*this);
}

void FakeUsbPort::addTo(platform::RunLoop& runLoop) {
  mRegistry.mRecord.note("port addTo");
  mRunLoop = &runLoop;
}

FakeUsbPlugIn::~FakeUsbPlugIn() {
  mRegistry.mRecord.note("releasePlugIn " + mEntry->label);
  --mRegistry.mPlugIns;
}

IOReturn FakeUsbPlugIn::queryDevice(std::unique_ptr<platform::UsbDeviceObject>& device) {
  const auto answer =
      mRegistry.mRecord.note("queryDevice " + mEntry->label,
                             mEntry->isDevice ? kIOReturnSuccess : platform::kIOReturnUnsupported);
  if (answer.withObject) device = std::make_unique<FakeUsbDeviceObject>(mRegistry, mEntry);
  return answer.result;
}

IOReturn FakeUsbPlugIn::queryInterface(std::unique_ptr<platform::UsbInterfaceObject>& interface) {
  const auto answer =
      mRegistry.mRecord.note("queryInterface " + mEntry->label,
                             mEntry->isDevice ? platform::kIOReturnUnsupported : kIOReturnSuccess);
  if (answer.withObject) interface = std::make_unique<FakeUsbInterfaceObject>(mRegistry, mEntry);
  return answer.result;
}

FakeUsbDeviceObject::~FakeUsbDeviceObject() {
  mRegistry.mRecord.note("releaseObject " + mEntry->label);
  endSession();
}

IOReturn FakeUsbDeviceObject::open() {
  IOReturn usual = mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice;
  for (const platform::io_service_t interface : mEntry->interfaces) {
    if (mRegistry.entry(interface)->isClaimedElsewhere) usual = platform::kIOReturnExclusiveAccess;
  }
  if (mEntry->wholeOpenedBy != nullptr) usual = platform::kIOReturnExclusiveAccess;
  const IOReturn result = mRegistry.mRecord.note("open " + mEntry->label, usual).result;
  if (result == kIOReturnSuccess) mEntry->wholeOpenedBy = this;
  return result;
}

IOReturn FakeUsbDeviceObject::close() {
  const IOReturn usual = isOpen() ? kIOReturnSuccess : platform::kIOReturnNotOpen;
  endSession();
  return mRegistry.mRecord.note("close " + mEntry->label, usual).result;
}

void FakeUsbDeviceObject::endSession() {
  if (isOpen()) mEntry->wholeOpenedBy = nullptr;
}

IOReturn FakeUsbDeviceObject::reEnumerate() {
  IOReturn usual = mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice;
  if (!isOpen()) usual = platform::kIOReturnNotOpen;
  const std::string call = "reEnumerate " + mEntry->label;
  const IOReturn result = mRegistry.mRecord.note(call, usual).result;
  if (result == kIOReturnSuccess) {
    mRegistry.detach(mEntry->number);
    mRegistry.attach(mEntry->device);
  }
  return result;
}

IOReturn FakeUsbDeviceObject::createInterfaceIterator(
    const platform::IOUSBFindInterfaceRequest& request, platform::io_iterator_t& iterator) {
  const auto answer =
      mRegistry.mRecord.note("createInterfaceIterator " + mEntry->label +
                             " class=" + std::to_string(request.bInterfaceClass) +
                             " subclass=" + std::to_string(request.bInterfaceSubClass) +
                             " protocol=" + std::to_string(request.bInterfaceProtocol) +
                             " alternate=" + std::to_string(request.bAlternateSetting));
  if (!answer.withObject) return answer.result;
  std::vector<platform::io_service_t> found;
  for (const platform::io_service_t number : mEntry->interfaces) {
    if (isWanted(request, mRegistry.entry(number)->interface)) found.push_back(number);
  }
  iterator = mRegistry.newIterator(std::move(found));
  return answer.result;
}

FakeUsbInterfaceObject::~FakeUsbInterfaceObject() {
  mRegistry.mRecord.note(line("releaseObject"));
  endSession();
}

IOReturn FakeUsbInterfaceObject::open() {
  IOReturn usual = kIOReturnSuccess;
  if (!mEntry->attached) usual = platform::kIOReturnNoDevice;
  if (mEntry->openedBy != nullptr || mEntry->isClaimedElsewhere)
    usual = platform::kIOReturnExclusiveAccess;
  const IOReturn result = mRegistry.mRecord.note(line("open"), usual).result;
  if (result == kIOReturnSuccess) {
    mIsOpen = true;
    mEntry->openedBy = this;
  }
  return result;
}

IOReturn FakeUsbInterfaceObject::close() {
  const IOReturn result = mRegistry.mRecord.note(line("close"), usualWhenOpen()).result;
  endSession();
  return result;
}

IOReturn FakeUsbInterfaceObject::usualWhenOpen() const {
  return mIsOpen ? kIOReturnSuccess : platform::kIOReturnNotOpen;
}

IOReturn FakeUsbInterfaceObject::getNumEndpoints(std::uint8_t& count) {
  const auto answer = mRegistry.mRecord.note(line("getNumEndpoints"), usualWhenOpen());
  if (answer.withObject) count = static_cast<std::uint8_t>(mEntry->interface.pipes.size());
  return answer.result;
}

IOReturn FakeUsbInterfaceObject::getPipeProperties(std::uint8_t pipe,
                                                   platform::UsbPipeProperties& properties) {
  const auto answer = mRegistry.mRecord.note(
      line("getPipeProperties") + " pipe=" + std::to_string(pipe), usualFor(pipe));
  if (answer.withObject) properties = mEntry->interface.pipes.at(pipe - 1u);
  return answer.result;
}

IOReturn FakeUsbInterfaceObject::createAsyncEventSource(platform::UsbEventSource*& source) {
  const auto answer = mRegistry.mRecord.note(line("createAsyncEventSource"), usualWhenOpen());
  if (answer.withObject) {
    source = this;
    mHasSource = true;
  }
  return answer.result;
}

void FakeUsbInterfaceObject::addTo(platform::RunLoop& runLoop) {
  mRegistry.mRecord.note(line("addTo"));
  mRunLoop = &runLoop;
  for (std::function<void()>& completion : std::exchange(mUndelivered, {})) {
    mRunLoop->callLater(std::move(completion));
  }
}

void FakeUsbInterfaceObject::deliver(std::shared_ptr<FakeUsbTransfer> transfer, IOReturn result,
                                     std::size_t numBytes) {
  std::function<void()> completion = [transfer = std::move(transfer), result, numBytes] {
    if (transfer->cancelled) return;
    transfer->callback(transfer->refCon, result, reinterpret_cast<void*>(numBytes));
  };
  if (mRunLoop != nullptr) {
    mRunLoop->callLater(std::move(completion));
  } else {
    mUndelivered.push_back(std::move(completion));
  }
}

IOReturn FakeUsbInterfaceObject::usualFor(std::uint8_t pipe) const {
  if (!mIsOpen) return platform::kIOReturnNotOpen;
  const bool isKnown = pipe >= 1 && pipe <= mEntry->interface.pipes.size();
  return isKnown ? kIOReturnSuccess : platform::kIOUSBUnknownPipeErr;
}

IOReturn FakeUsbInterfaceObject::usualFor(const FakeUsbTransfer& transfer) const {
  const IOReturn result = usualFor(transfer.pipe);
  if (result != kIOReturnSuccess) return result;
  if (!mHasSource) return platform::kIOUSBNoAsyncPortErr;
  const platform::UsbDirection direction = mEntry->interface.pipes[transfer.pipe - 1u].direction;
  if (direction != (transfer.isRead ? platform::UsbDirection::In : platform::UsbDirection::Out))
    return platform::kIOReturnBadArgument;
  return mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice;
}

IOReturn FakeUsbInterfaceObject::clearPipeStallBothEnds(std::uint8_t pipe) {
  IOReturn usual = usualFor(pipe);
  if (usual == kIOReturnSuccess && !mEntry->attached) usual = platform::kIOReturnNoDevice;
  const IOReturn result =
      mRegistry.mRecord
          .note(line("clearPipeStallBothEnds") + " pipe=" + std::to_string(pipe), usual)
          .result;
  if (result == kIOReturnSuccess) mEntry->stalledPipes.erase(pipe);
  return result;
}

IOReturn FakeUsbInterfaceObject::readPipeAsyncTO(std::uint8_t pipe, void* buffer,
                                                 std::uint32_t size, std::uint32_t noDataTimeout,
                                                 std::uint32_t completionTimeout,
                                                 platform::IOAsyncCallback callback, void* refCon) {
  FakeUsbTransfer transfer = transferOf(pipe, size, callback, refCon);
  transfer.isRead = true;
  transfer.target = static_cast<char*>(buffer);
  return start("readPipeAsyncTO", transfer, noDataTimeout, completionTimeout);
}

IOReturn FakeUsbInterfaceObject::writePipeAsyncTO(std::uint8_t pipe, const void* buffer,
                                                  std::uint32_t size, std::uint32_t noDataTimeout,
                                                  std::uint32_t completionTimeout,
                                                  platform::IOAsyncCallback callback,
                                                  void* refCon) {
  FakeUsbTransfer transfer = transferOf(pipe, size, callback, refCon);
  transfer.source = buffer;
  transfer.written.assign(static_cast<const char*>(buffer), size);
  return start("writePipeAsyncTO", transfer, noDataTimeout, completionTimeout);
}

FakeUsbTransfer FakeUsbInterfaceObject::transferOf(std::uint8_t pipe, std::uint32_t size,
                                                   platform::IOAsyncCallback callback,
                                                   void* refCon) {
  FakeUsbTransfer transfer;
  transfer.interface = mEntry->label;
  transfer.pipe = pipe;
  transfer.size = size;
  transfer.callback = callback;
  transfer.refCon = refCon;
  transfer.object = this;
  return transfer;
}

IOReturn FakeUsbInterfaceObject::start(const std::string& call, const FakeUsbTransfer& started,
                                       std::uint32_t noDataTimeout,
                                       std::uint32_t completionTimeout) {
  const IOReturn result = mRegistry.mRecord
                              .note(line(call) + " pipe=" + std::to_string(started.pipe) +
                                        " size=" + std::to_string(started.size) +
                                        " timeouts=" + std::to_string(noDataTimeout) + "," +
                                        std::to_string(completionTimeout),
                                    usualFor(started))
                              .result;
  if (result != kIOReturnSuccess) return result;
  const auto transfer = std::make_shared<FakeUsbTransfer>(started);
  transfer->noDataTimeout = noDataTimeout;
  transfer->completionTimeout = completionTimeout;
  std::erase_if(mStarted, [](const auto& earlier) { return earlier.expired(); });
  // Last comes what makes it one of those under way: where memory ends before, there is none.
  limitTime(transfer, shorter(noDataTimeout, completionTimeout));
  std::erase_if(mStarted, [](const auto& each) { return each.expired(); });
  mStarted.push_back(transfer);
  mRegistry.mTransfers.push_back(transfer);
  if (mEntry->stalledPipes.contains(started.pipe)) {
    mRegistry.end(transfer, platform::kIOUSBPipeStalled, 0);
  }
  return result;
}

void FakeUsbInterfaceObject::limitTime(const std::shared_ptr<FakeUsbTransfer>& transfer,
                                       std::uint32_t timeout) {
  if (timeout == 0 || mRunLoop == nullptr) return;
  transfer->timer = mRunLoop->startTimer(
      std::chrono::milliseconds(timeout), false,
      [&registry = mRegistry, weak = std::weak_ptr<FakeUsbTransfer>(transfer)] {
        registry.end(weak.lock(), platform::kIOUSBTransactionTimeout, 0);
      });
}

// Closing takes back the transfers, those that have ended but not been told included.
void FakeUsbInterfaceObject::endSession() {
  for (const std::weak_ptr<FakeUsbTransfer>& started : mStarted) {
    const auto transfer = started.lock();
    if (!transfer) continue;
    transfer->cancelled = true;
    transfer->timer.reset();
  }
  mStarted.clear();
  mUndelivered.clear();
  std::erase_if(mRegistry.mTransfers, [](const auto& transfer) { return transfer->cancelled; });
  mHasSource = false;
  mRunLoop = nullptr;
  mIsOpen = false;
  if (mEntry->openedBy == this) mEntry->openedBy = nullptr;
}
