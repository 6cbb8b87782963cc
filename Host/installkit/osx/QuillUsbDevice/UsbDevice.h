// One USB device of the registry: the way to its interfaces, by class, in the configuration that
// the system has set. Owned by QuillUsbDeviceImpl. The device itself is open only within
// reEnumerate().
#pragma once

#include <iosfwd>
#include <memory>

#include "UsbInterface.h"
#include "platform/UsbRegistry.h"

class UsbDevice {
 public:
  // Keeps a reference to the registry entry `service`. Throws IoKitException, as all operations do.
  explicit UsbDevice(platform::io_service_t service);
  ~UsbDevice();
  UsbDevice(const UsbDevice&) = delete;
  UsbDevice& operator=(const UsbDevice&) = delete;

  // The first interface of the class; null when there is none.
  std::unique_ptr<UsbInterface> getInterface(int interfaceClass);

  // Makes the device drop off the bus and come back. Fails while another program has it open. When
  // the re-enumeration itself fails, the device stays open.
  void reEnumerate();

  // Writes the registry's properties of the device.
  void print(std::ostream& os) const;

 private:
  // A reference, or 0.
  platform::io_service_t firstInterface(const platform::IOUSBFindInterfaceRequest& request);

  platform::io_service_t mService;
  std::unique_ptr<platform::UsbDeviceObject> mDevice;
};
