#include "FakeUsbObjects.h"

#include <algorithm>

using platform::IOReturn;
using platform::kIOReturnSuccess;

FakeUsbPort::~FakeUsbPort() {
  mRegistry.mRecord.note("destroy port");
  mRegistry.forgetPort(*this);
}

void FakeUsbPort::addTo(platform::RunLoop& runLoop) {
  mRegistry.mRecord.note("port addTo");
  mRunLoop = &runLoop;
}

FakeUsbPlugIn::~FakeUsbPlugIn() { mRegistry.mRecord.note("releasePlugIn " + mEntry->label); }

IOReturn FakeUsbPlugIn::queryDevice(std::unique_ptr<platform::UsbDeviceObject>& device) {
  const auto answer = mRegistry.mRecord.note("queryDevice " + mEntry->label);
  if (answer.withObject) device = std::make_unique<FakeUsbDeviceObject>(mRegistry, mEntry);
  return answer.result;
}

IOReturn FakeUsbPlugIn::queryInterface(std::unique_ptr<platform::UsbInterfaceObject>& interface) {
  const auto answer = mRegistry.mRecord.note("queryInterface " + mEntry->label);
  if (answer.withObject) interface = std::make_unique<FakeUsbInterfaceObject>(mRegistry, mEntry);
  return answer.result;
}

FakeUsbDeviceObject::~FakeUsbDeviceObject() {
  mRegistry.mRecord.note("releaseObject " + mEntry->label);
}

IOReturn FakeUsbDeviceObject::noteIo(const std::string& call) {
  return mRegistry.mRecord
      .note(call, mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice)
      .result;
}

IOReturn FakeUsbDeviceObject::open() { return noteIo("open " + mEntry->label); }

IOReturn FakeUsbDeviceObject::close() { return noteIo("close " + mEntry->label); }

IOReturn FakeUsbDeviceObject::reEnumerate(std::uint32_t options) {
  return noteIo("reEnumerate " + mEntry->label + " options=" + std::to_string(options));
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
    const bool wanted =
        request.bInterfaceClass == platform::kIOUSBFindInterfaceDontCare ||
        mRegistry.entry(number)->interface.interfaceClass == request.bInterfaceClass;
    if (wanted) found.push_back(number);
  }
  iterator = mRegistry.newIterator(std::move(found));
  return answer.result;
}

FakeUsbInterfaceObject::~FakeUsbInterfaceObject() {
  mRegistry.mRecord.note(line("releaseObject"));
  cancelTransfers();
}

IOReturn FakeUsbInterfaceObject::open() {
  const IOReturn usual = mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice;
  const IOReturn result = mRegistry.mRecord.note(line("open"), usual).result;
  if (result == kIOReturnSuccess) mIsOpen = true;
  return result;
}

IOReturn FakeUsbInterfaceObject::close() {
  const IOReturn result = mRegistry.mRecord.note(line("close")).result;
  cancelTransfers();
  mIsOpen = false;
  return result;
}

IOReturn FakeUsbInterfaceObject::getNumEndpoints(std::uint8_t& count) {
  const auto answer = mRegistry.mRecord.note(line("getNumEndpoints"));
  if (answer.withObject) count = static_cast<std::uint8_t>(mEntry->interface.pipes.size());
  return answer.result;
}

IOReturn FakeUsbInterfaceObject::getPipeProperties(std::uint8_t pipe,
                                                   platform::UsbPipeProperties& properties) {
  const bool known = pipe >= 1 && pipe <= mEntry->interface.pipes.size();
  const auto answer =
      mRegistry.mRecord.note(line("getPipeProperties") + " pipe=" + std::to_string(pipe),
                             known ? kIOReturnSuccess : platform::kIOUSBUnknownPipeErr);
  if (answer.withObject) properties = mEntry->interface.pipes.at(pipe - 1u);
  return answer.result;
}

IOReturn FakeUsbInterfaceObject::createAsyncEventSource(platform::UsbEventSource*& source) {
  const auto answer = mRegistry.mRecord.note(line("createAsyncEventSource"));
  if (answer.withObject) {
    source = this;
    mHasSource = true;
  }
  return answer.result;
}

void FakeUsbInterfaceObject::addTo(platform::RunLoop& runLoop) {
  mRegistry.mRecord.note(line("addTo"));
  mRunLoop = &runLoop;
}

IOReturn FakeUsbInterfaceObject::usualFor(std::uint8_t pipe) const {
  if (!mIsOpen) return platform::kIOReturnNotOpen;
  if (pipe < 1 || pipe > mEntry->interface.pipes.size()) return platform::kIOUSBUnknownPipeErr;
  return mEntry->attached ? kIOReturnSuccess : platform::kIOReturnNoDevice;
}

IOReturn FakeUsbInterfaceObject::clearPipeStallBothEnds(std::uint8_t pipe) {
  return mRegistry.mRecord
      .note(line("clearPipeStallBothEnds") + " pipe=" + std::to_string(pipe), usualFor(pipe))
      .result;
}

IOReturn FakeUsbInterfaceObject::readPipeAsyncTO(std::uint8_t pipe, void* buffer,
                                                 std::uint32_t size, std::uint32_t noDataTimeout,
                                                 std::uint32_t completionTimeout,
                                                 platform::IOAsyncCallback callback, void* refCon) {
  auto transfer =
      std::make_shared<FakeUsbTransfer>(FakeUsbTransfer{.interface = mEntry->label,
                                                        .isRead = true,
                                                        .pipe = pipe,
                                                        .target = static_cast<char*>(buffer),
                                                        .source = nullptr,
                                                        .written = {},
                                                        .size = size,
                                                        .callback = callback,
                                                        .refCon = refCon});
  return start("readPipeAsyncTO", std::move(transfer), noDataTimeout, completionTimeout);
}

IOReturn FakeUsbInterfaceObject::writePipeAsyncTO(std::uint8_t pipe, const void* buffer,
                                                  std::uint32_t size, std::uint32_t noDataTimeout,
                                                  std::uint32_t completionTimeout,
                                                  platform::IOAsyncCallback callback,
                                                  void* refCon) {
  auto transfer = std::make_shared<FakeUsbTransfer>(
      FakeUsbTransfer{.interface = mEntry->label,
                      .isRead = false,
                      .pipe = pipe,
                      .target = nullptr,
                      .source = buffer,
                      .written = std::string(static_cast<const char*>(buffer), size),
                      .size = size,
                      .callback = callback,
                      .refCon = refCon});
  return start("writePipeAsyncTO", std::move(transfer), noDataTimeout, completionTimeout);
}

IOReturn FakeUsbInterfaceObject::start(const std::string& call,
                                       std::shared_ptr<FakeUsbTransfer> transfer,
                                       std::uint32_t noDataTimeout,
                                       std::uint32_t completionTimeout) {
  IOReturn usual = usualFor(transfer->pipe);
  if (usual == kIOReturnSuccess && !mHasSource) usual = platform::kIOUSBNoAsyncPortErr;
  const IOReturn result = mRegistry.mRecord
                              .note(line(call) + " pipe=" + std::to_string(transfer->pipe) +
                                        " size=" + std::to_string(transfer->size) +
                                        " timeouts=" + std::to_string(noDataTimeout) + "," +
                                        std::to_string(completionTimeout),
                                    usual)
                              .result;
  if (result != kIOReturnSuccess) return result;
  transfer->runLoop = mRunLoop;
  mStarted.push_back(transfer);
  mRegistry.mTransfers.push_back(std::move(transfer));
  return result;
}

void FakeUsbInterfaceObject::cancelTransfers() {
  for (const std::weak_ptr<FakeUsbTransfer>& started : mStarted) {
    if (const auto transfer = started.lock()) transfer->cancelled = true;
  }
  mStarted.clear();
  std::erase_if(mRegistry.mTransfers, [](const auto& transfer) { return transfer->cancelled; });
}
