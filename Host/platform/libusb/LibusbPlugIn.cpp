#include "platform/libusb/LibusbPlugIn.h"

#include <utility>

#include "platform/libusb/LibusbDeviceObject.h"
#include "platform/libusb/LibusbInterfaceObject.h"

namespace platform {
namespace {

class LibusbPlugIn : public UsbPlugIn {
 public:
  LibusbPlugIn(std::shared_ptr<ObjectTable> objects, std::shared_ptr<RegistryEntry> entry)
      : mObjects(std::move(objects)), mEntry(std::move(entry)) {}

  IOReturn queryDevice(std::unique_ptr<UsbDeviceObject>& device) override {
    auto entry = std::dynamic_pointer_cast<DeviceEntry>(mEntry);
    if (!entry) return kIOReturnUnsupported;
    device = makeLibusbDeviceObject(mObjects, std::move(entry));
    return kIOReturnSuccess;
  }

  IOReturn queryInterface(std::unique_ptr<UsbInterfaceObject>& interface) override {
    const auto entry = std::dynamic_pointer_cast<InterfaceEntry>(mEntry);
    if (!entry) return kIOReturnUnsupported;
    interface = makeLibusbInterfaceObject(entry->device(), entry->index());
    return kIOReturnSuccess;
  }

 private:
  std::shared_ptr<ObjectTable> mObjects;
  std::shared_ptr<RegistryEntry> mEntry;
};

}  // namespace

std::unique_ptr<UsbPlugIn> makeLibusbPlugIn(std::shared_ptr<ObjectTable> objects,
                                            std::shared_ptr<RegistryEntry> entry) {
  return std::make_unique<LibusbPlugIn>(std::move(objects), std::move(entry));
}

}  // namespace platform
