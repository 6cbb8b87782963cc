// Watches for wanted devices: reports those that are present at the start, those that come later,
// and the removal of each one that it has reported. A receiver derives from it. Everything after
// startAsyncNotifier() comes from the run loop, until the finder is destroyed; an exception thrown
// while a notification is handled is not caught here.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "QuillUsbDevice.h"
#include "platform/RunLoop.h"
#include "platform/UsbRegistry.h"

class QuillUsbDeviceMatcher;

class QuillUsbDeviceFinderAsync {
 public:
  QuillUsbDeviceFinderAsync(unsigned short vendorId, unsigned short productId);
  QuillUsbDeviceFinderAsync(unsigned short vendorId, unsigned short productId,
                            const std::string& serialNum);
  QuillUsbDeviceFinderAsync(const QuillUsbDeviceFinderAsync&) = delete;
  QuillUsbDeviceFinderAsync& operator=(const QuillUsbDeviceFinderAsync&) = delete;
  virtual ~QuillUsbDeviceFinderAsync();

  // The handle shares the one that the finder keeps; a device can be found more than once, and
  // comes with the same handle then.
  virtual void notifyDeviceFound(QuillUsbDevice& device) = 0;
  virtual void notifyDeviceRemoved(QuillUsbDevice& device) = 0;

  // Registers for arrivals on `runLoop`, or on the current loop when it is null. Does nothing the
  // second time. Throws IoKitException, or std::runtime_error when there is no run loop.
  void setupAsyncNotifier(platform::RunLoop* runLoop);

  // Reports the devices that are present, within this call, and lets later arrivals come. Throws
  // std::logic_error before setupAsyncNotifier().
  void startAsyncNotifier();

 private:
  static void devicesAdded(void* refCon, platform::io_iterator_t iterator);
  static void deviceNotification(void* refCon, platform::io_service_t service,
                                 std::uint32_t messageType, void* messageArgument);
  void addDevice(platform::io_service_t service, bool notify);
  QuillUsbDevice& keepDevice(platform::io_service_t service, bool notify);
  void removeDevice(platform::io_service_t service);

  // Members go in reverse order, the devices before the matcher.
  std::unique_ptr<QuillUsbDeviceMatcher> mMatcher;
  std::unique_ptr<platform::UsbNotificationPort> mNotifyPort;
  platform::io_iterator_t mAddedIterator = 0;
  std::map<platform::io_service_t, QuillUsbDevice> mDevices;  // reported and not yet removed
};
