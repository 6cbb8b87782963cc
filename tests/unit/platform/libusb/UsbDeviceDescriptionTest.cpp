#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "FakeLibusb.h"
#include "TemporaryDirectory.h"
#include "platform/libusb/PropertyMatching.h"
#include "platform/libusb/UsbDescription.h"

namespace {

using platform::UsbDeviceDescription;
using testing::IsEmpty;
using testing::SizeIs;

// A device with configuration 2 active, of two interfaces; the second one has three settings.
class UsbDeviceDescriptionTest : public testing::Test {
 protected:
  UsbDeviceDescriptionTest() {
    mFirst.bInterfaceNumber = 0;
    mFirst.bInterfaceClass = 255;
    for (std::size_t i = 0; i < mSecond.size(); ++i) {
      mSecond[i].bInterfaceNumber = 1;
      mSecond[i].bInterfaceClass = 7;
      mSecond[i].bNumEndpoints = 1;
      mSecond[i].endpoint = &mEndpoints[i];
      mEndpoints[i].bEndpointAddress = static_cast<std::uint8_t>(i + 1);
    }
    mSecond[0].bAlternateSetting = 2;
    mSecond[1].bAlternateSetting = 0;
    mSecond[2].bAlternateSetting = 1;
    mInterfaces[0] = {&mFirst, 1};
    mInterfaces[1] = {mSecond.data(), static_cast<int>(mSecond.size())};
    mDevice.active.bConfigurationValue = 2;
    mDevice.active.bNumInterfaces = 2;
    mDevice.active.interface = mInterfaces.data();
  }

  UsbDeviceDescription describe() {
    return platform::describeUsbDevice(&mDevice, mDirectory.path());
  }

  void store(const std::filesystem::path& attribute, const std::string& value) {
    const auto path = mDirectory.path() / attribute;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << value << '\n';
  }

  void makeInterfaces() {
    store("1-2/bConfigurationValue", "2");
    store("1-2/1-2:2.0/bInterfaceNumber", "00");
    store("1-2/1-2:2.1/bInterfaceNumber", "01");
  }

  static std::string text(const UsbDeviceDescription& device, const char* key) {
    const auto value = platform::findProperty(device.properties, key);
    return value ? std::string(std::get<platform::Text>(*value).utf8()) : "none";
  }

  TemporaryDirectory mDirectory;
  std::array<libusb_endpoint_descriptor, 3> mEndpoints{};
  libusb_interface_descriptor mFirst{};
  std::array<libusb_interface_descriptor, 3> mSecond{};
  std::array<libusb_interface, 2> mInterfaces{};
  libusb_device mDevice;
};

TEST_F(UsbDeviceDescriptionTest, StringsAreThoseOfThePlaceOnTheWayThroughTheHubs) {
  const auto nameAt = [&](std::uint8_t bus, std::vector<std::uint8_t> ports) {
    mDevice.bus = bus;
    mDevice.ports = std::move(ports);
    return text(describe(), "USB Product Name");
  };
  store("usb1/product", "root hub");
  store("1-2/product", "in port 2");
  store("1-2.3/product", "behind a hub");
  store("1-2.3.14/product", "behind two hubs");
  store("12-1/product", "on another bus");
  EXPECT_EQ(nameAt(1, {}), "root hub");
  EXPECT_EQ(nameAt(1, {2}), "in port 2");
  EXPECT_EQ(nameAt(1, {2, 3}), "behind a hub");
  EXPECT_EQ(nameAt(1, {2, 3, 14}), "behind two hubs");
  EXPECT_EQ(nameAt(12, {1}), "on another bus");
  EXPECT_EQ(nameAt(2, {2, 3}), "none");

  store("1-2.3/manufacturer", "Veltra");
  store("1-2.3/serial", "VX0042");
  mDevice.bus = 1;
  mDevice.ports = {2, 3};
  EXPECT_EQ(text(describe(), "USB Vendor Name"), "Veltra");
  EXPECT_EQ(text(describe(), "USB Serial Number"), "VX0042");
}

TEST_F(UsbDeviceDescriptionTest, InterfacesAreThoseOfTheActiveConfiguration) {
  makeInterfaces();
  store("1-2/1-2:2.1/interface", "Printer");
  store("1-2/1-2:1.1/interface", "of another configuration");
  const UsbDeviceDescription device = describe();
  EXPECT_TRUE(device.configured);
  ASSERT_THAT(device.interfaces, SizeIs(2));
  EXPECT_EQ(device.interfaces[0].interfaceClass, 255);
  EXPECT_EQ(device.interfaces[1].interfaceClass, 7);
  EXPECT_EQ(device.interfaces[1].name, "Printer");
  EXPECT_EQ(device.interfaces[1].directory, mDirectory.path() / "1-2" / "1-2:2.1");
  const auto value = platform::findProperty(device.interfaces[1].properties, "bConfigurationValue");
  ASSERT_TRUE(value);
  EXPECT_EQ(std::get<platform::PropertyNumber>(*value), (platform::PropertyNumber{2, 2}));
}

TEST_F(UsbDeviceDescriptionTest, InterfaceIsInSettingZeroWhereverThatIsListed) {
  makeInterfaces();
  const auto interface = describe().interfaces.at(1);
  EXPECT_EQ(interface.alternateSetting, 0);
  ASSERT_THAT(interface.endpoints, SizeIs(1));
  EXPECT_EQ(interface.endpoints[0].address, 2);
}

TEST_F(UsbDeviceDescriptionTest, InterfaceWithoutASettingZeroIsInTheFirstOne) {
  makeInterfaces();
  mSecond[1].bAlternateSetting = 3;
  EXPECT_EQ(describe().interfaces.at(1).alternateSetting, 2);
}

TEST_F(UsbDeviceDescriptionTest, InterfacesOfARootHubAreThoseOfPortZero) {
  mDevice.ports.clear();
  store("usb1/1-0:2.0/interface", "hub");
  EXPECT_EQ(describe().interfaces.at(0).name, "hub");
}

TEST_F(UsbDeviceDescriptionTest, WithoutAConfigurationItIsUnconfigured) {
  mDevice.activeResult = LIBUSB_ERROR_NOT_FOUND;
  EXPECT_FALSE(describe().configured);
  mDevice.activeResult = LIBUSB_ERROR_NO_DEVICE;
  EXPECT_FALSE(describe().configured);
}

TEST_F(UsbDeviceDescriptionTest, AConfigurationThatCannotBeParsedIsOneWithoutInterfaces) {
  mDevice.activeResult = LIBUSB_ERROR_IO;
  EXPECT_TRUE(describe().configured);
  EXPECT_THAT(describe().interfaces, IsEmpty());
}

TEST_F(UsbDeviceDescriptionTest, IsUnconfiguredUntilTheKernelHasMadeAllInterfaces) {
  store("1-2/1-2:2.0/bInterfaceNumber", "00");
  EXPECT_FALSE(describe().configured);
  store("1-2/1-2:2.1/bInterfaceNumber", "01");
  EXPECT_TRUE(describe().configured);
}

TEST_F(UsbDeviceDescriptionTest, ChangesWithItsConfiguration) {
  makeInterfaces();
  const UsbDeviceDescription device = describe();
  EXPECT_FALSE(hasChanged(device));
  store("1-2/bConfigurationValue", "1");
  EXPECT_TRUE(hasChanged(device));
  store("1-2/bConfigurationValue", "");
  EXPECT_TRUE(hasChanged(device));
  store("1-2/bConfigurationValue", "2");
  EXPECT_FALSE(hasChanged(device));
}

TEST_F(UsbDeviceDescriptionTest, ChangesWithAnInterfaceThatIsMadeAnew) {
  makeInterfaces();
  const UsbDeviceDescription device = describe();
  const auto interface = mDirectory.path() / "1-2" / "1-2:2.1";
  std::filesystem::rename(interface, mDirectory.path() / "old");
  EXPECT_TRUE(hasChanged(device));
  makeInterfaces();
  EXPECT_TRUE(hasChanged(device));
}

TEST_F(UsbDeviceDescriptionTest, DoesNotChangeByLeaving) {
  makeInterfaces();
  const UsbDeviceDescription device = describe();
  std::filesystem::remove_all(mDirectory.path() / "1-2");
  EXPECT_FALSE(hasChanged(device));
}

// It keeps what it was described as, and is told of as gone.
TEST_F(UsbDeviceDescriptionTest, DoesNotChangeByAnotherInItsPlace) {
  makeInterfaces();
  const UsbDeviceDescription device = describe();
  std::filesystem::rename(mDirectory.path() / "1-2", mDirectory.path() / "old");
  store("1-2/bConfigurationValue", "1");
  makeInterfaces();
  EXPECT_FALSE(hasChanged(device));
}

}  // namespace
