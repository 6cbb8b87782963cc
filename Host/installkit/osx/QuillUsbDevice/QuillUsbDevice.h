// A printer attached by USB, as the rest of the program sees it: two byte channels, the three
// strings that describe it, and little else. It is a cheap value: copies share one
// QuillUsbDeviceImpl, which is destroyed with the last of them. The device finders make handles;
// the printer records and the USB transport keep copies, and so keep the device's objects alive.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

class AsyncIoNotifier;
class QuillUsbDeviceImpl;

class QuillUsbDevice {
 public:
  // An empty handle. Everything but init(), copying and comparing throws std::logic_error on it.
  QuillUsbDevice() = default;

  // Makes this handle, and none of its copies, stand for the device entry `service`. Once this has
  // returned, `notification` (0 for none) belongs to the handle and is released with the last copy.
  // Throws IoKitException; the handle and the notification then stay as they were.
  void init(unsigned int service, unsigned int notification);

  // True for handles that share one device object (or are both empty). A device that was unplugged
  // and plugged in again is another device, whatever its serial number says.
  bool operator==(const QuillUsbDevice& other) const = default;

  // The ACL channel is the device's first interface of USB class 7, the EWS channel its first one
  // of class 255. Both transfer as UsbInterface::read() and write() do. A device without the
  // interface throws IoKitException with kIOReturnNotFound, so that a download to it ends as failed
  // with the reason in the log.
  void aclWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                unsigned int timeoutMs);
  void aclRead(void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);
  void ewsWrite(const void* buf, std::size_t len, AsyncIoNotifier& notifier,
                unsigned int timeoutMs);
  void ewsRead(void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);

  // Makes the device drop off the bus and come back, as a new device.
  void reEnumerate();

  // As the device gave them when the handle was initialised; empty where it gave none.
  const std::string& getSerialNum() const;
  const std::string& getProduct() const;
  const std::string& getManufacturer() const;

  // Writes the registry's properties of the device, then, if wanted, of its two channels.
  void print(std::ostream& os, bool withInterfaces) const;

 private:
  QuillUsbDeviceImpl& getImpl() const;

  std::shared_ptr<QuillUsbDeviceImpl> mImpl;
};
