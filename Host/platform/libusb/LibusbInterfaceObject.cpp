#include "platform/libusb/LibusbInterfaceObject.h"

#include <algorithm>
#include <utility>

#include "platform/libusb/InterfaceSession.h"

namespace platform {
namespace {

class LibusbInterfaceObject : public UsbInterfaceObject {
 public:
  LibusbInterfaceObject(std::shared_ptr<AttachedDevice> device, std::size_t index)
      : mDevice(std::move(device)), mInterface(mDevice->description().interfaces.at(index)) {}

  IOReturn open() override {
    if (mSession) return kIOReturnExclusiveAccess;
    return InterfaceSession::open(mDevice, mInterface, mSession);
  }

  IOReturn close() override {
    if (!mSession) return kIOReturnNotOpen;
    mHasSource = false;
    mSession.reset();
    return kIOReturnSuccess;
  }

  IOReturn getNumEndpoints(std::uint8_t& count) override {
    if (!mSession) return kIOReturnNotOpen;
    count = static_cast<std::uint8_t>(mInterface.endpoints.size());
    return kIOReturnSuccess;
  }

  IOReturn getPipeProperties(std::uint8_t pipe, UsbPipeProperties& properties) override {
    const UsbEndpointDescription* endpoint = nullptr;
    const IOReturn result = find(pipe, endpoint);
    if (result == kIOReturnSuccess) properties = endpoint->properties;
    return result;
  }

  IOReturn createAsyncEventSource(UsbEventSource*& source) override {
    if (!mSession) return kIOReturnNotOpen;
    source = mSession.get();
    mHasSource = true;
    return kIOReturnSuccess;
  }

  IOReturn clearPipeStallBothEnds(std::uint8_t pipe) override {
    const UsbEndpointDescription* endpoint = nullptr;
    const IOReturn result = find(pipe, endpoint);
    return result == kIOReturnSuccess ? mSession->clearStall(*endpoint) : result;
  }

  IOReturn readPipeAsyncTO(std::uint8_t pipe, void* buffer, std::uint32_t size,
                           std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                           IOAsyncCallback callback, void* refCon) override {
    return start(pipe, UsbDirection::In, buffer, size, shorter(noDataTimeout, completionTimeout),
                 callback, refCon);
  }

  IOReturn writePipeAsyncTO(std::uint8_t pipe, const void* buffer, std::uint32_t size,
                            std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                            IOAsyncCallback callback, void* refCon) override {
    // libusb has one type for both directions, and only reads what it sends.
    return start(pipe, UsbDirection::Out, const_cast<void*>(buffer), size,
                 shorter(noDataTimeout, completionTimeout), callback, refCon);
  }

 private:
  // libusb knows one time, for the whole of a transfer, and nothing of its progress.
  static std::uint32_t shorter(std::uint32_t a, std::uint32_t b) {
    return a == 0 || b == 0 ? std::max(a, b) : std::min(a, b);
  }

  IOReturn find(std::uint8_t pipe, const UsbEndpointDescription*& endpoint) const {
    if (!mSession) return kIOReturnNotOpen;
    if (pipe < 1 || pipe > mInterface.endpoints.size()) return kIOUSBUnknownPipeErr;
    endpoint = &mInterface.endpoints[pipe - 1u];
    return kIOReturnSuccess;
  }

  IOReturn start(std::uint8_t pipe, UsbDirection direction, void* buffer, std::uint32_t size,
                 std::uint32_t timeout, IOAsyncCallback callback, void* refCon) {
    const UsbEndpointDescription* endpoint = nullptr;
    const IOReturn result = find(pipe, endpoint);
    if (result != kIOReturnSuccess) return result;
    if (!mHasSource) return kIOUSBNoAsyncPortErr;
    if (endpoint->properties.direction != direction) return kIOReturnBadArgument;
    return mSession->submit({*endpoint, buffer, size, timeout, callback, refCon});
  }

  std::shared_ptr<AttachedDevice> mDevice;
  const UsbInterfaceDescription& mInterface;
  std::unique_ptr<InterfaceSession> mSession;
  bool mHasSource = false;
};

}  // namespace

std::unique_ptr<UsbInterfaceObject> makeLibusbInterfaceObject(
    std::shared_ptr<AttachedDevice> device, std::size_t index) {
  return std::make_unique<LibusbInterfaceObject>(std::move(device), index);
}

}  // namespace platform
