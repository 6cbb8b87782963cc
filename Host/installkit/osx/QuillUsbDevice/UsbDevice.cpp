#include "UsbDevice.h"

#include <cstdint>

#include "IoObjectHolder.h"
#include "checkIoKitResult.h"
#include "createPlugIn.h"
#include "platform/Platform.h"
#include "printKeys.h"

using platform::IOReturn;

UsbDevice::UsbDevice(platform::io_service_t service) : mService(service) {
  const IOReturn result =
      createPlugIn(service, platform::UsbRegistry::ClientType::Device)->queryDevice(mDevice);
  if (result < 0 || !mDevice) {
    throwIoKitException("Couldn’t create a device interface for the device.", result);
  }
  platform::current().usb->retain(service);
}

UsbDevice::~UsbDevice() {
  mDevice.reset();
  platform::current().usb->release(mService);
}

std::unique_ptr<UsbInterface> UsbDevice::getInterface(int interfaceClass) {
  platform::IOUSBFindInterfaceRequest request;
  request.bInterfaceClass = static_cast<std::uint16_t>(interfaceClass);
  const IoObjectHolder entry(firstInterface(request));
  if (entry.get() == 0) return nullptr;
  return std::make_unique<UsbInterface>(entry.get());
}

platform::io_service_t UsbDevice::firstInterface(
    const platform::IOUSBFindInterfaceRequest& request) {
  platform::io_iterator_t found = 0;
  const IOReturn result = mDevice->createInterfaceIterator(request, found);
  const IoObjectHolder iterator(found);
  if (result != platform::kIOReturnSuccess || found == 0) {
    throwIoKitException("Failed to get interface iterator for device.", result);
  }
  return platform::current().usb->iteratorNext(iterator.get());
}

void UsbDevice::reEnumerate() {
  checkIoKitResult("Failed to open device.", mDevice->open());
  checkIoKitResult("Failed to re-enumerate device.", mDevice->reEnumerate());
  mDevice->close();
}

void UsbDevice::print(std::ostream& os) const { printKeys(os, mService, "device", nullptr); }
