#include "UsbDevice.h"

#include <cstdint>

#include "IoKitException.h"
#include "IoObjectHolder.h"
#include "platform/Platform.h"
#include "printKeys.h"

using platform::IOReturn;
using platform::kIOReturnSuccess;

UsbDevice::UsbDevice(platform::io_service_t service) : mService(service) {
  platform::UsbRegistry& registry = *platform::current().usb;
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  IOReturn result =
      registry.createPlugIn(service, platform::UsbRegistry::ClientType::Device, plugIn);
  if (result != kIOReturnSuccess || !plugIn) {
    throw IoKitException("Unable to create a plug-in.", static_cast<unsigned int>(result));
  }
  result = plugIn->queryDevice(mDevice);
  plugIn.reset();
  if (result < 0 || !mDevice) {
    throw IoKitException("Couldn’t create a device interface for the device.",
                         static_cast<unsigned int>(result));
  }
  registry.retain(service);
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
  if (result != kIOReturnSuccess || found == 0) {
    throw IoKitException("Failed to get interface iterator for device.",
                         static_cast<unsigned int>(result));
  }
  return platform::current().usb->iteratorNext(iterator.get());
}

void UsbDevice::reEnumerate() {
  IOReturn result = mDevice->open();
  if (result != kIOReturnSuccess) {
    throw IoKitException("Failed to open device.", static_cast<unsigned int>(result));
  }
  result = mDevice->reEnumerate(0);
  if (result != kIOReturnSuccess) {
    throw IoKitException("Failed to re-enumerate device.", static_cast<unsigned int>(result));
  }
  mDevice->close();
}

void UsbDevice::print(std::ostream& os) const { printKeys(os, mService, "device", nullptr); }
