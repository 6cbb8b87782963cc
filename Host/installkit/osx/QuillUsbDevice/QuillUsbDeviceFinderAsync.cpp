#include "QuillUsbDeviceFinderAsync.h"

#include <stdexcept>

#include "IoObjectHolder.h"
#include "QuillUsbDeviceMatcher.h"
#include "checkIoKitResult.h"
#include "platform/Platform.h"

namespace {

QuillUsbDeviceFinderAsync& finderOf(void* refCon) {
  if (refCon == nullptr) {
    throw std::logic_error("Device finder object has not been supplied as context.");
  }
  return *static_cast<QuillUsbDeviceFinderAsync*>(refCon);
}

}  // namespace

QuillUsbDeviceFinderAsync::QuillUsbDeviceFinderAsync(unsigned short vendorId,
                                                     unsigned short productId)
    : mMatcher(std::make_unique<QuillUsbDeviceMatcher>(vendorId, productId)) {}

QuillUsbDeviceFinderAsync::QuillUsbDeviceFinderAsync(unsigned short vendorId,
                                                     unsigned short productId,
                                                     const std::string& serialNum)
    : mMatcher(std::make_unique<QuillUsbDeviceMatcher>(vendorId, productId, serialNum)) {}

QuillUsbDeviceFinderAsync::~QuillUsbDeviceFinderAsync() {
  mNotifyPort.reset();
  if (mAddedIterator != 0) platform::current().usb->release(mAddedIterator);
}

void QuillUsbDeviceFinderAsync::setupAsyncNotifier(platform::RunLoop* runLoop) {
  if (mNotifyPort) return;
  platform::UsbRegistry& registry = *platform::current().usb;
  mNotifyPort = registry.createNotificationPort();
  if (runLoop == nullptr) runLoop = platform::current().runLoop;
  if (runLoop == nullptr) throw std::runtime_error("Failed to get current run loop.");
  mNotifyPort->addTo(*runLoop);
  checkIoKitResult("IOServiceAddMatchingNotification failed.",
                   registry.addMatchingNotification(*mNotifyPort, "IOServiceFirstMatch",
                                                    mMatcher->getMatchingDictionary(), devicesAdded,
                                                    this, mAddedIterator));
}

void QuillUsbDeviceFinderAsync::startAsyncNotifier() {
  if (!mNotifyPort) throw std::logic_error("A notifier has not been added to the run loop.");
  devicesAdded(this, mAddedIterator);
}

void QuillUsbDeviceFinderAsync::devicesAdded(void* refCon, platform::io_iterator_t iterator) {
  QuillUsbDeviceFinderAsync& finder = finderOf(refCon);
  while (const platform::io_service_t next = platform::current().usb->iteratorNext(iterator)) {
    const IoObjectHolder service(next);
    finder.addDevice(service.get(), true);
  }
}

void QuillUsbDeviceFinderAsync::deviceNotification(void* refCon, platform::io_service_t service,
                                                   std::uint32_t messageType, void*) {
  if (messageType != platform::kIOMessageServiceIsTerminated) return;
  finderOf(refCon).removeDevice(service);
}

void QuillUsbDeviceFinderAsync::addDevice(platform::io_service_t service, bool notify) {
  if (!mMatcher->isMatchingDevice(service)) return;
  const auto known = mDevices.find(service);
  QuillUsbDevice device = known != mDevices.end() ? known->second : keepDevice(service, notify);
  notifyDeviceFound(device);
}

QuillUsbDevice& QuillUsbDeviceFinderAsync::keepDevice(platform::io_service_t service, bool notify) {
  platform::io_object_t added = 0;
  if (notify) {
    checkIoKitResult(
        "IOServiceAddInterestNotification failed.",
        platform::current().usb->addInterestNotification(*mNotifyPort, service, "IOGeneralInterest",
                                                         deviceNotification, this, added));
  }
  IoObjectHolder notification(added);
  QuillUsbDevice device;
  device.init(service, notification.get());
  notification.disown();
  return mDevices[service] = device;
}

void QuillUsbDeviceFinderAsync::removeDevice(platform::io_service_t service) {
  const auto known = mDevices.find(service);
  if (known == mDevices.end()) return;
  QuillUsbDevice device = known->second;
  notifyDeviceRemoved(device);
  mDevices.erase(service);
}
