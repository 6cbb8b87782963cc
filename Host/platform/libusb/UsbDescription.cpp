#include "platform/libusb/UsbDescription.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "platform/libusb/SysfsAttribute.h"

namespace platform {
namespace {

constexpr std::size_t kMaxNameBytes = 127;
constexpr std::size_t kMaxHubs = 7;

// Where the device is plugged in: the port on each hub on the way; none for a root hub itself.
struct DevicePlace {
  explicit DevicePlace(libusb_device* device) : bus(libusb_get_bus_number(device)) {
    std::array<std::uint8_t, kMaxHubs> numbers{};
    const int count = libusb_get_port_numbers(device, numbers.data(), kMaxHubs);
    if (count > 0) ports.assign(numbers.begin(), numbers.begin() + count);
  }

  // The kernel's name for the device: "1-2.3" is port 3 of the hub on port 2 of bus 1.
  std::string sysfsName() const {
    if (ports.empty()) return "usb" + std::to_string(bus);
    std::string name = std::to_string(bus);
    char separator = '-';
    for (const std::uint8_t port : ports) {
      name += std::exchange(separator, '.') + std::to_string(port);
    }
    return name;
  }

  // Bus number, then four bits for each port, as far as they go.
  std::uint32_t locationId() const {
    std::uint32_t location = std::uint32_t{bus} << 24;
    int shift = 20;
    for (const std::uint8_t port : ports) {
      if (shift < 0) break;
      location |= (port & 0xFu) << shift;
      shift -= 4;
    }
    return location;
  }

  std::uint8_t bus;
  std::vector<std::uint8_t> ports;
};

void addText(PropertyDictionary& properties, const char* key, const Text& text) {
  if (!text.isNull()) properties.entries.emplace_back(Text::fromUtf8(key), text);
}

void addNumber(PropertyDictionary& properties, const char* key, PropertyNumber number) {
  properties.entries.emplace_back(Text::fromUtf8(key), number);
}

// Fields of a descriptor.
void addFields(PropertyDictionary& properties,
               std::initializer_list<std::pair<const char*, std::uint16_t>> fields) {
  for (const auto& [key, value] : fields) {
    addNumber(properties, key, {static_cast<std::int16_t>(value), sizeof value});
  }
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
  description.properties.direction =
      (endpoint.bEndpointAddress & LIBUSB_ENDPOINT_IN) != 0 ? UsbDirection::In : UsbDirection::Out;
  description.properties.number = endpoint.bEndpointAddress & LIBUSB_ENDPOINT_ADDRESS_MASK;
  description.properties.transferType = endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
  // The bits above the size count further transactions in one microframe.
  description.properties.maxPacketSize = endpoint.wMaxPacketSize & 0x7FF;
  description.properties.interval = endpoint.bInterval;
  return description;
}

// Where the descriptors end in the middle of an interface, libusb gives their number and none.
std::span<const libusb_endpoint_descriptor> endpointsOf(
    const libusb_interface_descriptor& interface) {
  if (interface.endpoint == nullptr) return {};
  return {interface.endpoint, interface.bNumEndpoints};
}

// Those of a root hub, "usb1", are named as if it were in port 0 of its bus.
std::string interfacePrefix(const std::string& device) {
  constexpr std::string_view kRootHub = "usb";
  return device.starts_with(kRootHub) ? device.substr(kRootHub.size()) + "-0" : device;
}

std::uint64_t incarnationOf(const std::filesystem::path& directory) {
  struct stat status = {};
  return stat(directory.c_str(), &status) == 0 ? status.st_ino : 0;
}

// The setting that is active: nobody here chooses one, and the kernel goes back to setting 0, or
// the first where there is none, each time that an interface changes hands.
const libusb_interface_descriptor& activeSetting(const libusb_interface& interface) {
  const std::span settings(interface.altsetting,
                           static_cast<std::size_t>(interface.num_altsetting));
  for (const libusb_interface_descriptor& setting : settings) {
    if (setting.bAlternateSetting == 0) return setting;
  }
  return settings.front();
}

// A configuration that libusb cannot parse is one all the same; its interfaces stay unknown.
void describeConfiguration(libusb_device* device, UsbDeviceDescription& description) {
  libusb_config_descriptor* active = nullptr;
  description.configuration = readSysfsAttribute(description.directory, "bConfigurationValue");
  const int result = libusb_get_active_config_descriptor(device, &active);
  description.configured = result != LIBUSB_ERROR_NOT_FOUND && result != LIBUSB_ERROR_NO_DEVICE;
  if (result != LIBUSB_SUCCESS) return;
  const std::unique_ptr<libusb_config_descriptor, decltype(&libusb_free_config_descriptor)> holder(
      active, libusb_free_config_descriptor);
  for (int i = 0; i < active->bNumInterfaces; ++i) {
    const libusb_interface& interface = active->interface[i];
    if (interface.num_altsetting < 1) continue;
    description.interfaces.push_back(describeUsbInterface(
        activeSetting(interface), active->bConfigurationValue, description.directory));
    if (description.interfaces.back().incarnation == 0) description.configured = false;
  }
}

}  // namespace

UsbInterfaceDescription describeUsbInterface(const libusb_interface_descriptor& interface,
                                             std::uint8_t configuration,
                                             const std::filesystem::path& deviceDirectory) {
  UsbInterfaceDescription description;
  description.number = interface.bInterfaceNumber;
  description.alternateSetting = interface.bAlternateSetting;
  description.interfaceClass = interface.bInterfaceClass;
  description.interfaceSubClass = interface.bInterfaceSubClass;
  description.interfaceProtocol = interface.bInterfaceProtocol;
  for (const libusb_endpoint_descriptor& endpoint : endpointsOf(interface)) {
    description.endpoints.push_back(describeEndpoint(endpoint));
  }

  description.directory = deviceDirectory / (interfacePrefix(deviceDirectory.filename().string()) +
                                             ":" + std::to_string(configuration) + "." +
                                             std::to_string(interface.bInterfaceNumber));
  description.incarnation = incarnationOf(description.directory);
  const Text name = readSysfsAttribute(description.directory, "interface");
  description.name = entryName(name, "IOUSBInterface");
  addText(description.properties, "USB Interface Name", name);
  addFields(description.properties, {{"bInterfaceNumber", interface.bInterfaceNumber},
                                     {"bAlternateSetting", interface.bAlternateSetting},
                                     {"bInterfaceClass", interface.bInterfaceClass},
                                     {"bInterfaceSubClass", interface.bInterfaceSubClass},
                                     {"bInterfaceProtocol", interface.bInterfaceProtocol},
                                     {"bNumEndpoints", interface.bNumEndpoints},
                                     {"bConfigurationValue", configuration},
                                     {"iInterface", interface.iInterface}});
  return description;
}

bool isPresent(const UsbInterfaceDescription& interface) {
  return incarnationOf(interface.directory) == interface.incarnation;
}

bool hasChanged(const UsbDeviceDescription& description) {
  if (incarnationOf(description.directory) != description.incarnation) return false;
  const Text configuration = readSysfsAttribute(description.directory, "bConfigurationValue");
  return configuration.utf8() != description.configuration.utf8() ||
         std::any_of(
             description.interfaces.begin(), description.interfaces.end(),
             [](const UsbInterfaceDescription& interface) { return !isPresent(interface); });
}

UsbDeviceDescription describeUsbDevice(libusb_device* device,
                                       const std::filesystem::path& devices) {
  const DevicePlace place(device);
  const std::filesystem::path directory = devices / place.sysfsName();
  libusb_device_descriptor descriptor{};
  libusb_get_device_descriptor(device, &descriptor);

  UsbDeviceDescription description;
  description.directory = directory;
  description.incarnation = incarnationOf(directory);
  const Text product = readSysfsAttribute(directory, "product");
  description.name = entryName(product, "IOUSBDevice");

  PropertyDictionary& properties = description.properties;
  addText(properties, "USB Product Name", product);
  addText(properties, "USB Vendor Name", readSysfsAttribute(directory, "manufacturer"));
  addText(properties, "USB Serial Number", readSysfsAttribute(directory, "serial"));
  addFields(properties, {{"idVendor", descriptor.idVendor},
                         {"idProduct", descriptor.idProduct},
                         {"bcdDevice", descriptor.bcdDevice},
                         {"bcdUSB", descriptor.bcdUSB},
                         {"bDeviceClass", descriptor.bDeviceClass},
                         {"bDeviceSubClass", descriptor.bDeviceSubClass},
                         {"bDeviceProtocol", descriptor.bDeviceProtocol},
                         {"bMaxPacketSize0", descriptor.bMaxPacketSize0},
                         {"bNumConfigurations", descriptor.bNumConfigurations},
                         {"iManufacturer", descriptor.iManufacturer},
                         {"iProduct", descriptor.iProduct},
                         {"iSerialNumber", descriptor.iSerialNumber},
                         {"USB Address", libusb_get_device_address(device)}});
  const std::uint32_t location = place.locationId();
  addNumber(properties, "locationID", {static_cast<std::int32_t>(location), sizeof location});
  describeConfiguration(device, description);
  return description;
}

}  // namespace platform
