#include "UsbDescription.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

namespace platform {
namespace {

constexpr std::size_t kMaxNameBytes = 127;

// The kernel's name for the device: "1-2.3" is port 3 of the hub on port 2 of bus 1.
std::string sysfsName(libusb_device* device) {
  const std::string bus = std::to_string(libusb_get_bus_number(device));
  std::array<std::uint8_t, 7> ports{};
  const int count = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
  if (count <= 0) return "usb" + bus;
  std::string name = bus;
  for (int i = 0; i < count; ++i) {
    name += i == 0 ? '-' : '.';
    name += std::to_string(ports[static_cast<std::size_t>(i)]);
  }
  return name;
}

// The text of one attribute; null when there is none, as for a string that the device lacks.
Text readAttribute(const std::filesystem::path& directory, const char* attribute) {
  std::ifstream file(directory / attribute, std::ios::binary);
  if (!file) return {};
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) return {};
  if (text.ends_with('\n')) text.pop_back();
  return Text::fromUtf8(text);
}

void add(PropertyDictionary& properties, const char* key, PropertyValue value) {
  properties.entries.emplace_back(Text::fromUtf8(key), std::move(value));
}

void addNumber(PropertyDictionary& properties, const char* key, std::uint8_t value) {
  add(properties, key, PropertyNumber{value, 2});
}

void addNumber(PropertyDictionary& properties, const char* key, std::uint16_t value) {
  add(properties, key, PropertyNumber{static_cast<std::int16_t>(value), 2});
}

void addNumber(PropertyDictionary& properties, const char* key, std::uint32_t value) {
  add(properties, key, PropertyNumber{static_cast<std::int32_t>(value), 4});
}

void addText(PropertyDictionary& properties, const char* key, const Text& text) {
  if (!text.isNull()) add(properties, key, text);
}

// Bus number, then four bits for the port on each hub on the way.
std::uint32_t locationId(libusb_device* device) {
  std::array<std::uint8_t, 7> ports{};
  const int count = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
  std::uint32_t location = std::uint32_t{libusb_get_bus_number(device)} << 24;
  for (int i = 0; i < count && i < 6; ++i) {
    location |= (ports[static_cast<std::size_t>(i)] & 0xFu) << (20 - 4 * i);
  }
  return location;
}

// At most 127 bytes, and whole characters.
std::string entryName(const Text& text, const char* otherwise) {
  if (text.length() == 0) return otherwise;
  std::array<char, kMaxNameBytes> buffer;
  const Text::Conversion converted = text.copyUtf8(text.length(), buffer);
  return {buffer.data(), converted.bytes};
}

UsbEndpointDescription describeEndpoint(const libusb_endpoint_descriptor& endpoint) {
  UsbEndpointDescription description;
  description.address = endpoint.bEndpointAddress;
  description.properties.direction = endpoint.bEndpointAddress >> 7;
  description.properties.number = endpoint.bEndpointAddress & LIBUSB_ENDPOINT_ADDRESS_MASK;
  description.properties.transferType = endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
  // The bits above the size count further transactions in one microframe.
  description.properties.maxPacketSize = endpoint.wMaxPacketSize & 0x7FF;
  description.properties.interval = endpoint.bInterval;
  return description;
}

UsbInterfaceDescription describeInterface(const libusb_interface_descriptor& interface,
                                          std::uint8_t configuration,
                                          const std::filesystem::path& deviceDirectory) {
  UsbInterfaceDescription description;
  description.number = interface.bInterfaceNumber;
  description.alternateSetting = interface.bAlternateSetting;
  description.interfaceClass = interface.bInterfaceClass;
  description.interfaceSubClass = interface.bInterfaceSubClass;
  description.interfaceProtocol = interface.bInterfaceProtocol;
  for (int i = 0; i < interface.bNumEndpoints; ++i) {
    description.endpoints.push_back(describeEndpoint(interface.endpoint[i]));
  }

  const std::filesystem::path directory =
      deviceDirectory / (deviceDirectory.filename().string() + ":" + std::to_string(configuration) +
                         "." + std::to_string(interface.bInterfaceNumber));
  const Text name = readAttribute(directory, "interface");
  description.name = entryName(name, "IOUSBInterface");

  PropertyDictionary& properties = description.properties;
  addText(properties, "USB Interface Name", name);
  addNumber(properties, "bInterfaceNumber", interface.bInterfaceNumber);
  addNumber(properties, "bAlternateSetting", interface.bAlternateSetting);
  addNumber(properties, "bInterfaceClass", interface.bInterfaceClass);
  addNumber(properties, "bInterfaceSubClass", interface.bInterfaceSubClass);
  addNumber(properties, "bInterfaceProtocol", interface.bInterfaceProtocol);
  addNumber(properties, "bNumEndpoints", interface.bNumEndpoints);
  addNumber(properties, "bConfigurationValue", configuration);
  addNumber(properties, "iInterface", interface.iInterface);
  return description;
}

void describeConfiguration(libusb_device* device, const std::filesystem::path& directory,
                           UsbDeviceDescription& description) {
  libusb_config_descriptor* active = nullptr;
  if (libusb_get_active_config_descriptor(device, &active) != LIBUSB_SUCCESS) return;
  const std::unique_ptr<libusb_config_descriptor, decltype(&libusb_free_config_descriptor)> holder(
      active, libusb_free_config_descriptor);
  description.configured = true;
  for (int i = 0; i < active->bNumInterfaces; ++i) {
    const libusb_interface& interface = active->interface[i];
    if (interface.num_altsetting < 1) continue;
    description.interfaces.push_back(
        describeInterface(interface.altsetting[0], active->bConfigurationValue, directory));
  }
}

std::uint64_t asUnsigned(const PropertyNumber& number) {
  const auto value = static_cast<std::uint64_t>(number.value);
  return number.width >= sizeof value ? value
                                      : value & ((std::uint64_t{1} << (8 * number.width)) - 1);
}

bool isWanted(const PropertyValue& wanted, const PropertyValue& own) {
  const auto* const wantedNumber = std::get_if<PropertyNumber>(&wanted);
  const auto* const ownNumber = std::get_if<PropertyNumber>(&own);
  if (wantedNumber != nullptr && ownNumber != nullptr) {
    if (wantedNumber->width == 2) return asUnsigned(*wantedNumber) == asUnsigned(*ownNumber);
    return wantedNumber->value == static_cast<std::int64_t>(asUnsigned(*ownNumber));
  }
  const auto* const wantedText = std::get_if<Text>(&wanted);
  const auto* const ownText = std::get_if<Text>(&own);
  return wantedText != nullptr && ownText != nullptr && !wantedText->isNull() &&
         wantedText->utf8() == ownText->utf8();
}

}  // namespace

UsbDeviceDescription describeUsbDevice(libusb_device* device) {
  const std::filesystem::path directory =
      std::filesystem::path("/sys/bus/usb/devices") / sysfsName(device);
  libusb_device_descriptor descriptor{};
  libusb_get_device_descriptor(device, &descriptor);

  UsbDeviceDescription description;
  description.vendorId = descriptor.idVendor;
  description.productId = descriptor.idProduct;
  const Text product = readAttribute(directory, "product");
  description.name = entryName(product, "IOUSBDevice");

  PropertyDictionary& properties = description.properties;
  addText(properties, "USB Product Name", product);
  addText(properties, "USB Vendor Name", readAttribute(directory, "manufacturer"));
  addText(properties, "USB Serial Number", readAttribute(directory, "serial"));
  addNumber(properties, "idVendor", descriptor.idVendor);
  addNumber(properties, "idProduct", descriptor.idProduct);
  addNumber(properties, "bcdDevice", descriptor.bcdDevice);
  addNumber(properties, "bcdUSB", descriptor.bcdUSB);
  addNumber(properties, "bDeviceClass", descriptor.bDeviceClass);
  addNumber(properties, "bDeviceSubClass", descriptor.bDeviceSubClass);
  addNumber(properties, "bDeviceProtocol", descriptor.bDeviceProtocol);
  addNumber(properties, "bMaxPacketSize0", descriptor.bMaxPacketSize0);
  addNumber(properties, "bNumConfigurations", descriptor.bNumConfigurations);
  addNumber(properties, "iManufacturer", descriptor.iManufacturer);
  addNumber(properties, "iProduct", descriptor.iProduct);
  addNumber(properties, "iSerialNumber", descriptor.iSerialNumber);
  addNumber(properties, "locationID", locationId(device));
  addNumber(properties, "USB Address", libusb_get_device_address(device));
  describeConfiguration(device, directory, description);
  return description;
}

bool isMatching(const MatchingDictionary& matching, const PropertyDictionary& properties) {
  if (matching.className.utf8() != "IOUSBDevice") return false;
  for (const auto& [key, wanted] : matching.properties.entries) {
    const Text* const name = std::get_if<Text>(&key);
    if (name == nullptr) return false;
    const std::optional<PropertyValue> own = findProperty(properties, name->utf8());
    if (!own || !isWanted(wanted, *own)) return false;
  }
  return true;
}

std::optional<PropertyValue> findProperty(const PropertyDictionary& properties,
                                          std::string_view key) {
  for (const auto& [name, value] : properties.entries) {
    const Text* const text = std::get_if<Text>(&name);
    if (text != nullptr && text->utf8() == key) return value;
  }
  return std::nullopt;
}

}  // namespace platform
