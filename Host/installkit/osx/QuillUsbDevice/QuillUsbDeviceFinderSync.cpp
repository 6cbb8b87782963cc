#include "QuillUsbDeviceFinderSync.h"

#include "IoObjectHolder.h"
#include "QuillUsbDeviceMatcher.h"
#include "checkIoKitResult.h"
#include "platform/Platform.h"

QuillUsbDeviceFinderSync::QuillUsbDeviceFinderSync(unsigned short vendorId,
                                                   unsigned short productId)
    : mMatcher(std::make_unique<QuillUsbDeviceMatcher>(vendorId, productId)) {}

QuillUsbDeviceFinderSync::QuillUsbDeviceFinderSync(unsigned short vendorId,
                                                   unsigned short productId,
                                                   const std::string& serialNum)
    : mMatcher(std::make_unique<QuillUsbDeviceMatcher>(vendorId, productId, serialNum)) {}

QuillUsbDeviceFinderSync::~QuillUsbDeviceFinderSync() = default;

void QuillUsbDeviceFinderSync::findAttached() {
  platform::UsbRegistry& registry = *platform::current().usb;
  platform::io_iterator_t found = 0;
  const platform::IOReturn result =
      registry.matchingServices(mMatcher->getMatchingDictionary(), found);
  const IoObjectHolder iterator(found);
  checkIoKitResult("IOServiceGetMatchingServices failed.", result);
  while (const platform::io_service_t next = registry.iteratorNext(iterator.get())) {
    const IoObjectHolder service(next);
    if (!mMatcher->isMatchingDevice(service.get())) continue;
    QuillUsbDevice device;
    device.init(service.get(), 0);
    notifyDeviceFound(device);
  }
}
