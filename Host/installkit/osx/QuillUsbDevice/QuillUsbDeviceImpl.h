// What all copies of one QuillUsbDevice share. It owns the device's I/O objects and the removal
// notification that discovery made for the device.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

#include "platform/UsbRegistry.h"

class AsyncIoNotifier;
class UsbDevice;
class UsbInterface;

class QuillUsbDeviceImpl {
 public:
  // Throws IoKitException; `notification` then stays the caller's.
  QuillUsbDeviceImpl(unsigned int service, unsigned int notification);
  ~QuillUsbDeviceImpl();
  QuillUsbDeviceImpl(const QuillUsbDeviceImpl&) = delete;
  QuillUsbDeviceImpl& operator=(const QuillUsbDeviceImpl&) = delete;

  void aclWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                unsigned int timeoutMs);
  void aclRead(void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);
  void ewsWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                unsigned int timeoutMs);
  void ewsRead(void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);
  void reEnumerate();

  const std::string& getSerialNum() const { return mSerialNum; }
  const std::string& getProduct() const { return mProduct; }
  const std::string& getManufacturer() const { return mManufacturer; }

  void print(std::ostream& os, bool withInterfaces) const;

 private:
  // In this order: the interfaces must close before the device goes.
  std::unique_ptr<UsbDevice> mDevice;
  std::unique_ptr<UsbInterface> mAcl;  // null when the device has no such interface
  std::unique_ptr<UsbInterface> mEws;  // likewise
  std::string mManufacturer;
  std::string mProduct;
  std::string mSerialNum;
  platform::io_object_t mNotification = 0;
};
