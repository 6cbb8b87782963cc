#include "AttachedDevice.h"

#include <utility>

#include "LibusbResults.h"

namespace platform {

OpenDevice::~OpenDevice() { libusb_close(mHandle); }

IOReturn OpenDevice::claim(std::uint8_t interface) {
  // libusb would let the same handle claim an interface twice.
  if (mClaimed.contains(interface)) return kIOReturnExclusiveAccess;
  const IOReturn result = resultOfCall(libusb_claim_interface(mHandle, interface));
  if (result == kIOReturnSuccess) mClaimed.insert(interface);
  return result;
}

void OpenDevice::release(std::uint8_t interface) {
  mClaimed.erase(interface);
  libusb_release_interface(mHandle, interface);
}

AttachedDevice::AttachedDevice(std::shared_ptr<LibusbContext> context, LibusbDevice device,
                               UsbDeviceDescription description)
    : mContext(std::move(context)),
      mDevice(std::move(device)),
      mDescription(std::move(description)) {}

IOReturn AttachedDevice::open(std::shared_ptr<OpenDevice>& opened) {
  if (mGone) return kIOReturnNoDevice;
  opened = mOpen.lock();
  if (opened) return kIOReturnSuccess;
  libusb_device_handle* handle = nullptr;
  const IOReturn result = resultOfCall(libusb_open(mDevice.get(), &handle));
  if (result != kIOReturnSuccess) return result;
  opened = std::make_shared<OpenDevice>(handle);
  // Printers belong to usblp until they are claimed, and again from their release on.
  libusb_set_auto_detach_kernel_driver(handle, 1);
  mOpen = opened;
  return kIOReturnSuccess;
}

IOReturn AttachedDevice::reset(OpenDevice& opened) {
  if (mGone) return kIOReturnNoDevice;
  const int result = libusb_reset_device(opened.handle());
  // The device has changed so much that the kernel itself lets it leave and come back.
  if (result == LIBUSB_ERROR_NOT_FOUND) return kIOReturnSuccess;
  if (result == LIBUSB_SUCCESS) mContext->announceAnew(mDevice);
  return resultOfCall(result);
}

}  // namespace platform
