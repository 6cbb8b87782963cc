#include "QuillUsbDeviceImpl.h"

#include "UsbDevice.h"
#include "UsbInterface.h"
#include "checkIoKitResult.h"
#include "getUsbString.h"
#include "platform/Platform.h"

namespace {

constexpr int kPrinterInterfaceClass = 7;
constexpr int kVendorSpecificInterfaceClass = 255;

constexpr const char* kNoAcl = "The device has no ACL channel.";
constexpr const char* kNoEws = "The device has no EWS channel.";

UsbInterface& channel(const std::unique_ptr<UsbInterface>& interface, const char* ifMissing) {
  if (!interface) throwIoKitException(ifMissing, platform::kIOReturnNotFound);
  return *interface;
}

}  // namespace

QuillUsbDeviceImpl::QuillUsbDeviceImpl(unsigned int service, unsigned int notification)
    : mDevice(std::make_unique<UsbDevice>(service)),
      mAcl(mDevice->getInterface(kPrinterInterfaceClass)),
      mEws(mDevice->getInterface(kVendorSpecificInterfaceClass)),
      mNotification(notification) {
  mSerialNum = getUsbString(service, UsbSerialNumber);
  mManufacturer = getUsbString(service, UsbVendorName);
  mProduct = getUsbString(service, UsbProductName);
}

QuillUsbDeviceImpl::~QuillUsbDeviceImpl() {
  if (mNotification != 0) platform::current().usb->release(mNotification);
}

void QuillUsbDeviceImpl::aclWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                  unsigned int timeoutMs) {
  channel(mAcl, kNoAcl).write(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::aclRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                 unsigned int timeoutMs) {
  channel(mAcl, kNoAcl).read(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::ewsWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                  unsigned int timeoutMs) {
  channel(mEws, kNoEws).write(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::ewsRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                 unsigned int timeoutMs) {
  channel(mEws, kNoEws).read(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::reEnumerate() { mDevice->reEnumerate(); }

void QuillUsbDeviceImpl::print(std::ostream& os, bool withInterfaces) const {
  mDevice->print(os);
  if (!withInterfaces) return;
  if (mAcl) mAcl->print(os);
  if (mEws) mEws->print(os);
}
