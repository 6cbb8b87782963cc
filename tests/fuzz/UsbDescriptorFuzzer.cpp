// Whatever descriptors a device gives, it is described by what they say and by nothing beside them.
// The input says where the device is plugged in, and which interfaces, settings and endpoints it
// has, or only claims to have.
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <variant>

#include "FakeLibusb.h"
#include "Script.h"
#include "platform/libusb/PropertyMatching.h"
#include "platform/libusb/UsbDescription.h"
#include "require.h"

namespace {

using platform::PropertyNumber;
using platform::UsbDeviceDescription;
using platform::UsbInterfaceDescription;

// A device's descriptors as libusb gives them, each list in memory of exactly its size.
class Descriptors {
 public:
  explicit Descriptors(Script& script) {
    mDevice.bus = script.take();
    mDevice.ports.clear();
    for (int hubs = script.take() % 8; hubs > 0; --hubs) mDevice.ports.push_back(script.take());
    mDevice.address = script.take();
    mDevice.descriptor.idVendor = word(script);
    mDevice.descriptor.idProduct = word(script);
    mDevice.descriptor.bcdDevice = word(script);
    constexpr std::array<int, 4> kResults{LIBUSB_SUCCESS, LIBUSB_SUCCESS, LIBUSB_ERROR_NOT_FOUND,
                                          LIBUSB_ERROR_IO};
    mDevice.activeResult = script.choose(kResults);
    const std::size_t count = script.take() % 5;
    mInterfaces = std::make_unique<libusb_interface[]>(count);
    for (std::size_t i = 0; i < count; ++i) mInterfaces[i] = interface(script);
    mDevice.active.bConfigurationValue = script.take();
    mDevice.active.bNumInterfaces = static_cast<std::uint8_t>(count);
    mDevice.active.interface = mInterfaces.get();
  }

  libusb_device& device() { return mDevice; }

 private:
  static std::uint16_t word(Script& script) {
    const unsigned low = script.take();
    return static_cast<std::uint16_t>(low | unsigned{script.take()} << 8);
  }

  // One without settings is what libusb leaves of an interface whose descriptors end too early.
  libusb_interface interface(Script& script) {
    const std::size_t count = script.take() % 4;
    if (count == 0) return {nullptr, 0};
    auto& settings = mSettings.emplace_back(std::make_unique<libusb_interface_descriptor[]>(count));
    for (std::size_t i = 0; i < count; ++i) fill(settings[i], script);
    return {settings.get(), static_cast<int>(count)};
  }

  void fill(libusb_interface_descriptor& setting, Script& script) {
    setting.bInterfaceNumber = script.take();
    setting.bAlternateSetting = script.take();
    setting.bInterfaceClass = script.take();
    setting.bInterfaceSubClass = script.take();
    setting.bInterfaceProtocol = script.take();
    setting.iInterface = script.take();
    setting.bNumEndpoints = script.take() % 32;
    if (script.take() % 8 == 0) return;  // counted, and missing
    auto& endpoints = mEndpoints.emplace_back(
        std::make_unique<libusb_endpoint_descriptor[]>(setting.bNumEndpoints));
    for (std::size_t i = 0; i < setting.bNumEndpoints; ++i) {
      endpoints[i].bEndpointAddress = script.take();
      endpoints[i].bmAttributes = script.take();
      endpoints[i].wMaxPacketSize = word(script);
      endpoints[i].bInterval = script.take();
    }
    setting.endpoint = endpoints.get();
  }

  libusb_device mDevice;
  std::unique_ptr<libusb_interface[]> mInterfaces;
  std::deque<std::unique_ptr<libusb_interface_descriptor[]>> mSettings;
  std::deque<std::unique_ptr<libusb_endpoint_descriptor[]>> mEndpoints;
};

PropertyNumber numberOf(const platform::PropertyDictionary& properties, const char* key) {
  const auto value = platform::findProperty(properties, key);
  require(value.has_value());
  return std::get<PropertyNumber>(*value);
}

void checkEndpoints(const UsbInterfaceDescription& interface,
                    const libusb_interface_descriptor& setting) {
  require(interface.endpoints.size() == (setting.endpoint == nullptr ? 0 : setting.bNumEndpoints));
  for (std::size_t i = 0; i < interface.endpoints.size(); ++i) {
    const libusb_endpoint_descriptor& said = setting.endpoint[i];
    const platform::UsbPipeProperties& pipe = interface.endpoints[i].properties;
    require(interface.endpoints[i].address == said.bEndpointAddress);
    require((pipe.direction == platform::UsbDirection::In) == (said.bEndpointAddress >= 0x80));
    require(pipe.number == said.bEndpointAddress % 16 &&
            pipe.transferType == said.bmAttributes % 4);
    require(pipe.maxPacketSize == said.wMaxPacketSize % 2048 && pipe.interval == said.bInterval);
  }
}

void checkInterface(const UsbInterfaceDescription& described, const libusb_interface& interface) {
  const libusb_interface_descriptor* active = interface.altsetting;
  for (int i = interface.num_altsetting - 1; i >= 0; --i) {
    if (interface.altsetting[i].bAlternateSetting == 0) active = &interface.altsetting[i];
  }
  require(described.number == active->bInterfaceNumber);
  require(described.alternateSetting == active->bAlternateSetting);
  require(described.interfaceClass == active->bInterfaceClass);
  require(described.interfaceSubClass == active->bInterfaceSubClass);
  require(described.interfaceProtocol == active->bInterfaceProtocol);
  require(numberOf(described.properties, "bInterfaceClass") ==
          (PropertyNumber{active->bInterfaceClass, 2}));
  require(described.name == "IOUSBInterface" && described.incarnation == 0);
  checkEndpoints(described, *active);
}

// Bus and ports, four bits each, as far as 32 bits go.
std::uint32_t locationOf(const libusb_device& device) {
  std::uint64_t location = device.bus;
  for (std::size_t i = 0; i < 6; ++i) {
    location = location * 16 + (i < device.ports.size() ? device.ports[i] % 16 : 0);
  }
  return static_cast<std::uint32_t>(location);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  const FakeLibusb libusb;
  Descriptors descriptors(script);
  libusb_device& device = descriptors.device();
  const UsbDeviceDescription described = platform::describeUsbDevice(&device, "/nowhere");

  require(described.name == "IOUSBDevice" && described.configuration.isNull());
  require(numberOf(described.properties, "idVendor") ==
          (PropertyNumber{static_cast<std::int16_t>(device.descriptor.idVendor), 2}));
  require(numberOf(described.properties, "idProduct") ==
          (PropertyNumber{static_cast<std::int16_t>(device.descriptor.idProduct), 2}));
  require(numberOf(described.properties, "locationID") ==
          (PropertyNumber{static_cast<std::int32_t>(locationOf(device)), 4}));

  std::size_t next = 0;
  if (device.activeResult == LIBUSB_SUCCESS) {
    for (int i = 0; i < device.active.bNumInterfaces; ++i) {
      const libusb_interface& interface = device.active.interface[i];
      if (interface.num_altsetting == 0) continue;
      require(next < described.interfaces.size());
      checkInterface(described.interfaces[next++], interface);
    }
  }
  require(next == described.interfaces.size());
  // Nobody has made its interfaces.
  require(described.configured == (device.activeResult != LIBUSB_ERROR_NOT_FOUND && next == 0));
  return 0;
}
