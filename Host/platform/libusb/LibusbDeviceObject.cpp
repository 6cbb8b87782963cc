#include "platform/libusb/LibusbDeviceObject.h"

#include <utility>

namespace platform {
namespace {

bool isWanted(std::uint16_t wanted, std::uint8_t own) {
  return wanted == kIOUSBFindInterfaceDontCare || wanted == own;
}

bool isWanted(const IOUSBFindInterfaceRequest& request, const UsbInterfaceDescription& interface) {
  return isWanted(request.bInterfaceClass, interface.interfaceClass) &&
         isWanted(request.bInterfaceSubClass, interface.interfaceSubClass) &&
         isWanted(request.bInterfaceProtocol, interface.interfaceProtocol) &&
         isWanted(request.bAlternateSetting, interface.alternateSetting);
}

class LibusbDeviceObject : public UsbDeviceObject {
 public:
  LibusbDeviceObject(std::shared_ptr<ObjectTable> objects, std::shared_ptr<DeviceEntry> entry)
      : mObjects(std::move(objects)), mEntry(std::move(entry)) {}

  IOReturn open() override {
    if (mOpen) return kIOReturnExclusiveAccess;
    return mEntry->device()->openWhole(mOpen);
  }

  IOReturn close() override {
    if (!mOpen) return kIOReturnNotOpen;
    mOpen.reset();
    return kIOReturnSuccess;
  }

  IOReturn reEnumerate() override {
    if (!mOpen) return kIOReturnNotOpen;
    return mEntry->device()->reset(*mOpen);
  }

  IOReturn createInterfaceIterator(const IOUSBFindInterfaceRequest& request,
                                   io_iterator_t& iterator) override {
    const auto found = std::make_shared<EntryIterator>();
    for (const ObjectReference& reference : mEntry->interfaces()) {
      const auto interface = mObjects->find<InterfaceEntry>(reference.number());
      if (interface && isWanted(request, interface->description())) {
        found->add(ObjectReference::retain(mObjects, reference.number()));
      }
    }
    iterator = mObjects->add(found);
    return kIOReturnSuccess;
  }

 private:
  std::shared_ptr<ObjectTable> mObjects;
  std::shared_ptr<DeviceEntry> mEntry;
  std::shared_ptr<WholeDevice> mOpen;
};

}  // namespace

std::unique_ptr<UsbDeviceObject> makeLibusbDeviceObject(std::shared_ptr<ObjectTable> objects,
                                                        std::shared_ptr<DeviceEntry> entry) {
  return std::make_unique<LibusbDeviceObject>(std::move(objects), std::move(entry));
}

}  // namespace platform
