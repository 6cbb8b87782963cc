#include "QuillUsbDevice.h"

#include <stdexcept>

#include "QuillUsbDeviceImpl.h"

void QuillUsbDevice::init(unsigned int service, unsigned int notification) {
  mImpl = std::make_shared<QuillUsbDeviceImpl>(service, notification);
}

void QuillUsbDevice::aclWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                              unsigned int timeoutMs) {
  getImpl().aclWrite(buf, len, notifier, timeoutMs);
}

void QuillUsbDevice::aclRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                             unsigned int timeoutMs) {
  getImpl().aclRead(buf, len, notifier, timeoutMs);
}

void QuillUsbDevice::ewsWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                              unsigned int timeoutMs) {
  getImpl().ewsWrite(buf, len, notifier, timeoutMs);
}

void QuillUsbDevice::ewsRead(void* buf, std::size_t len, AsyncIoNotifier& notifier,
                             unsigned int timeoutMs) {
  getImpl().ewsRead(buf, len, notifier, timeoutMs);
}

void QuillUsbDevice::reEnumerate() { getImpl().reEnumerate(); }

const std::string& QuillUsbDevice::getSerialNum() const { return getImpl().getSerialNum(); }

const std::string& QuillUsbDevice::getProduct() const { return getImpl().getProduct(); }

const std::string& QuillUsbDevice::getManufacturer() const { return getImpl().getManufacturer(); }

void QuillUsbDevice::print(std::ostream& os, bool withInterfaces) const {
  getImpl().print(os, withInterfaces);
}

QuillUsbDeviceImpl& QuillUsbDevice::getImpl() const {
  if (!mImpl) throw std::logic_error("Querying device object before initialising it.");
  return *mImpl;
}
