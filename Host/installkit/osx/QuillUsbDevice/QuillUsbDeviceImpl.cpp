#include "QuillUsbDeviceImpl.h"

#include "IoKitException.h"
#include "UsbDevice.h"
#include "UsbInterface.h"
#include "getUsbString.h"
#include "platform/Platform.h"

namespace {

constexpr int kPrinterInterfaceClass = 7;
constexpr int kVendorSpecificInterfaceClass = 255;

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
  aclInterface().write(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::aclRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                 unsigned int timeoutMs) {
  aclInterface().read(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::ewsWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                  unsigned int timeoutMs) {
  ewsInterface().write(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::ewsRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                                 unsigned int timeoutMs) {
  ewsInterface().read(buf, len, notifier, timeoutMs);
}

void QuillUsbDeviceImpl::reEnumerate() { mDevice->reEnumerate(); }

void QuillUsbDeviceImpl::print(std::ostream& os, bool withInterfaces) const {
  mDevice->print(os);
  if (!withInterfaces) return;
  if (mAcl) mAcl->print(os);
  if (mEws) mEws->print(os);
}

UsbInterface& QuillUsbDeviceImpl::aclInterface() const {
  if (!mAcl) {
    throw IoKitException("The device has no ACL channel.",
                         static_cast<unsigned int>(platform::kIOReturnNotFound));
  }
  return *mAcl;
}

UsbInterface& QuillUsbDeviceImpl::ewsInterface() const {
  if (!mEws) {
    throw IoKitException("The device has no EWS channel.",
                         static_cast<unsigned int>(platform::kIOReturnNotFound));
  }
  return *mEws;
}
