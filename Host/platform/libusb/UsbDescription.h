// What is known of an attached device and its interfaces without opening it: descriptors from
// libusb's copy, strings from sysfs. Read once, when the device arrives, and kept unchanged, so
// that it can be read after the device has gone. Every device on the bus is described, so a
// malformed one must do no harm.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/PropertyList.h"
#include "platform/UsbRegistry.h"

namespace platform {

struct UsbEndpointDescription {
  std::uint8_t address = 0;
  UsbPipeProperties properties;
};

// One interface in its first alternate setting, which is the one that the host sets.
struct UsbInterfaceDescription {
  std::string name;  // of the registry entry
  std::uint8_t number = 0;
  std::uint8_t alternateSetting = 0;
  std::uint8_t interfaceClass = 0;
  std::uint8_t interfaceSubClass = 0;
  std::uint8_t interfaceProtocol = 0;
  std::vector<UsbEndpointDescription> endpoints;  // in descriptor order
  PropertyDictionary properties;
};

struct UsbDeviceDescription {
  std::string name;  // of the registry entry
  PropertyDictionary properties;
  bool configured = false;
  std::vector<UsbInterfaceDescription> interfaces;  // of the current configuration
};

UsbDeviceDescription describeUsbDevice(libusb_device* device);

// `configuration` is the value of the interface's configuration, `deviceDirectory` the device in
// sysfs.
UsbInterfaceDescription describeUsbInterface(const libusb_interface_descriptor& interface,
                                             std::uint8_t configuration,
                                             const std::filesystem::path& deviceDirectory);

}  // namespace platform
