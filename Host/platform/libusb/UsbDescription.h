// What is known of an attached device and its interfaces without opening it: descriptors from
// libusb's copy, strings from sysfs. Read once, when the device arrives or is configured, and kept
// unchanged, so that it can be read after the device has gone. Every device on the bus is
// described, so a malformed one must do no harm.
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

// One interface in its active alternate setting.
struct UsbInterfaceDescription {
  std::string name;                 // of the registry entry
  std::filesystem::path directory;  // in sysfs
  std::uint64_t incarnation = 0;    // that directory's number; 0 while the kernel has not made it
  std::uint8_t number = 0;
  std::uint8_t alternateSetting = 0;
  std::uint8_t interfaceClass = 0;
  std::uint8_t interfaceSubClass = 0;
  std::uint8_t interfaceProtocol = 0;
  std::vector<UsbEndpointDescription> endpoints;  // in descriptor order
  PropertyDictionary properties;
};

struct UsbDeviceDescription {
  std::string name;                 // of the registry entry
  std::filesystem::path directory;  // in sysfs
  std::uint64_t incarnation = 0;    // that directory's number; 0 when it is not there
  PropertyDictionary properties;
  Text configuration;       // its value, in sysfs; null or empty while there is none
  bool configured = false;  // the configuration is set, and the kernel has made all its interfaces
  std::vector<UsbInterfaceDescription> interfaces;  // of the current configuration
};

// `devices` is the directory of all devices in sysfs.
UsbDeviceDescription describeUsbDevice(
    libusb_device* device, const std::filesystem::path& devices = "/sys/bus/usb/devices");

// `configuration` is the value of the interface's configuration, `deviceDirectory` the device in
// sysfs.
UsbInterfaceDescription describeUsbInterface(const libusb_interface_descriptor& interface,
                                             std::uint8_t configuration,
                                             const std::filesystem::path& deviceDirectory);

// Whether the interface is the one that was described: neither gone nor made anew.
bool isPresent(const UsbInterfaceDescription& interface);

// Whether the device, if it is still there, has another configuration by now, or its interfaces
// have been made anew. Another device may have taken its place; what has changed then is not it.
bool hasChanged(const UsbDeviceDescription& description);

}  // namespace platform
