// Describes what a test attaches to a FakeUsbRegistry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/UsbRegistry.h"

struct FakeUsbInterface {
  std::uint16_t interfaceClass = 7;
  std::string name;  // of the registry entry
  std::vector<platform::UsbPipeProperties> pipes;
  platform::PropertyDictionary properties;
  std::uint16_t interfaceSubClass = 0;
  std::uint16_t interfaceProtocol = 0;
  std::uint16_t alternateSetting = 0;
};

struct FakeUsbDevice {
  std::string label = "printer";  // how the record calls it; its interfaces are "printer/7" etc.
  std::uint16_t vendorId = 0x3A71;
  std::uint16_t productId = 0x0C28;
  platform::PropertyDictionary properties;
  std::vector<FakeUsbInterface> interfaces;

  FakeUsbDevice& with(const std::string& key, const std::string& text) {
    properties.entries.emplace_back(platform::Text::fromUtf8(key), platform::Text::fromUtf8(text));
    return *this;
  }
};

inline platform::UsbPipeProperties outPipe(std::uint16_t maxPacketSize = 64) {
  return {.direction = platform::UsbDirection::Out,
          .number = 1,
          .transferType = 2,
          .maxPacketSize = maxPacketSize};
}

inline platform::UsbPipeProperties inPipe(std::uint16_t maxPacketSize = 64) {
  return {.direction = platform::UsbDirection::In,
          .number = 1,
          .transferType = 2,
          .maxPacketSize = maxPacketSize};
}

// The shape of the real printer: the ACL channel on class 7, the EWS channel on class 255.
inline FakeUsbDevice fakePrinter(const std::string& serialNumber = "VX0042") {
  FakeUsbDevice device;
  device.with("USB Vendor Name", "Veltra")
      .with("USB Product Name", "KX350T")
      .with("USB Serial Number", serialNumber);
  device.interfaces = {{7, "Printer", {outPipe(), inPipe()}, {}},
                       {255, "Web", {outPipe(), inPipe()}, {}}};
  return device;
}
