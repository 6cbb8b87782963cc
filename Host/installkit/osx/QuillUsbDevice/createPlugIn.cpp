#include "createPlugIn.h"

#include "checkIoKitResult.h"
#include "platform/Platform.h"

std::unique_ptr<platform::UsbPlugIn> createPlugIn(platform::io_service_t service,
                                                  platform::UsbRegistry::ClientType type) {
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  const platform::IOReturn result = platform::current().usb->createPlugIn(service, type, plugIn);
  if (result != platform::kIOReturnSuccess || !plugIn) {
    throwIoKitException("Unable to create a plug-in.", result);
  }
  return plugIn;
}
