#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <string>

#include "TemporaryDirectory.h"
#include "platform/libusb/PropertyMatching.h"
#include "platform/libusb/UsbDescription.h"

namespace {

using platform::PropertyNumber;
using platform::PropertyValue;
using testing::IsEmpty;
using testing::SizeIs;

class UsbDescriptionTest : public testing::Test {
 protected:
  UsbDescriptionTest() {
    mInterface.bInterfaceNumber = 3;
    mInterface.bNumEndpoints = static_cast<std::uint8_t>(mEndpoints.size());
    mInterface.bInterfaceClass = 7;
    mInterface.bInterfaceSubClass = 1;
    mInterface.bInterfaceProtocol = 2;
    mInterface.endpoint = mEndpoints.data();
    mEndpoints[0].bEndpointAddress = 0x82;
    mEndpoints[0].bmAttributes = 2;
    mEndpoints[0].wMaxPacketSize = 0x1200;  // two more transactions of 512 bytes each microframe
    mEndpoints[1].bEndpointAddress = 0x01;
    mEndpoints[1].bmAttributes = 0xF7;
    mEndpoints[1].wMaxPacketSize = 64;
    mEndpoints[1].bInterval = 9;
  }

  platform::UsbInterfaceDescription describe() {
    return platform::describeUsbInterface(mInterface, 1, mDirectory.path() / "1-2");
  }

  // The interface as sysfs has it: its string, if it has one.
  void nameInterface(const std::string& name) {
    const auto directory = mDirectory.path() / "1-2" / "1-2:1.3";
    std::filesystem::create_directories(directory);
    std::ofstream(directory / "interface") << name << '\n';
  }

  TemporaryDirectory mDirectory;
  std::array<libusb_endpoint_descriptor, 2> mEndpoints{};
  libusb_interface_descriptor mInterface{};
};

TEST_F(UsbDescriptionTest, EndpointsComeInTheirOrderWithWhatTheirFieldsSay) {
  const auto endpoints = describe().endpoints;
  ASSERT_THAT(endpoints, SizeIs(2));
  EXPECT_EQ(endpoints[0].address, 0x82);
  EXPECT_EQ(endpoints[0].properties.direction, platform::UsbDirection::In);
  EXPECT_EQ(endpoints[0].properties.number, 2);
  EXPECT_EQ(endpoints[0].properties.transferType, 2);
  EXPECT_EQ(endpoints[0].properties.maxPacketSize, 512);
  EXPECT_EQ(endpoints[0].properties.interval, 0);
  EXPECT_EQ(endpoints[1].address, 0x01);
  EXPECT_EQ(endpoints[1].properties.direction, platform::UsbDirection::Out);
  EXPECT_EQ(endpoints[1].properties.number, 1);
  EXPECT_EQ(endpoints[1].properties.transferType, 3);
  EXPECT_EQ(endpoints[1].properties.maxPacketSize, 64);
  EXPECT_EQ(endpoints[1].properties.interval, 9);
}

// As libusb gives it when the descriptors end within those of the class.
TEST_F(UsbDescriptionTest, EndpointsThatAreCountedButMissingAreNone) {
  mInterface.endpoint = nullptr;
  EXPECT_THAT(describe().endpoints, IsEmpty());
}

TEST_F(UsbDescriptionTest, InterfaceIsDescribedByItsDescriptor) {
  const auto interface = describe();
  EXPECT_EQ(interface.number, 3);
  EXPECT_EQ(interface.alternateSetting, 0);
  EXPECT_EQ(interface.interfaceClass, 7);
  EXPECT_EQ(interface.interfaceSubClass, 1);
  EXPECT_EQ(interface.interfaceProtocol, 2);
  EXPECT_THAT(interface.properties.entries, SizeIs(8));
  const auto number = [&](const char* key) {
    const std::optional<PropertyValue> value = platform::findProperty(interface.properties, key);
    return value ? std::get<PropertyNumber>(*value) : PropertyNumber{-1, 0};
  };
  EXPECT_EQ(number("bInterfaceNumber"), (PropertyNumber{3, 2}));
  EXPECT_EQ(number("bAlternateSetting"), (PropertyNumber{0, 2}));
  EXPECT_EQ(number("bInterfaceClass"), (PropertyNumber{7, 2}));
  EXPECT_EQ(number("bInterfaceSubClass"), (PropertyNumber{1, 2}));
  EXPECT_EQ(number("bInterfaceProtocol"), (PropertyNumber{2, 2}));
  EXPECT_EQ(number("bNumEndpoints"), (PropertyNumber{2, 2}));
  EXPECT_EQ(number("bConfigurationValue"), (PropertyNumber{1, 2}));
  EXPECT_EQ(number("iInterface"), (PropertyNumber{0, 2}));
}

TEST_F(UsbDescriptionTest, InterfaceIsNamedByItsString) {
  nameInterface("Printer");
  const auto interface = describe();
  EXPECT_EQ(interface.name, "Printer");
  const auto name = platform::findProperty(interface.properties, "USB Interface Name");
  ASSERT_TRUE(name);
  EXPECT_EQ(std::get<platform::Text>(*name).utf8(), "Printer");
}

TEST_F(UsbDescriptionTest, InterfaceWithoutAStringIsNamedByItsKind) {
  EXPECT_EQ(describe().name, "IOUSBInterface");
  nameInterface("");
  EXPECT_EQ(describe().name, "IOUSBInterface");
}

TEST_F(UsbDescriptionTest, NameEndsWithTheLastCharacterThatFitsIn127Bytes) {
  std::string longName(126, 'x');
  nameInterface(longName + "\u00E9yz");
  EXPECT_EQ(describe().name, longName);
  nameInterface(longName + "yz");
  EXPECT_EQ(describe().name, longName + "y");
}

}  // namespace
