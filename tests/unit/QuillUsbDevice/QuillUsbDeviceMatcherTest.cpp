#include <stdexcept>

#include "QuillUsbDeviceMatcher.h"
#include "UsbTest.h"

namespace {

using platform::PropertyNumber;
using platform::PropertyValue;
using platform::Text;
using testing::ElementsAre;

class QuillUsbDeviceMatcherTest : public UsbTest {
 protected:
  bool acceptsSerialNumber(const std::string& wanted, const std::string& own) {
    return QuillUsbDeviceMatcher(0x3A71, 0x0C28, wanted)
        .isMatchingDevice(mUsb.attach(fakePrinter(own)));
  }
};

void expectNumber(const std::pair<PropertyValue, PropertyValue>& entry, const std::string& key,
                  PropertyNumber number) {
  EXPECT_EQ(std::get<Text>(entry.first).utf8(), key);
  EXPECT_EQ(std::get<PropertyNumber>(entry.second), number);
}

TEST_F(QuillUsbDeviceMatcherTest, AsksForVendorIn16AndProductIn32Bits) {
  const platform::MatchingDictionary matching =
      QuillUsbDeviceMatcher(0x3A71, 0x0C28).getMatchingDictionary();
  EXPECT_EQ(matching.className.utf8(), "IOUSBDevice");
  ASSERT_EQ(matching.properties.entries.size(), 2u);
  expectNumber(matching.properties.entries[0], "idVendor", {0x3A71, 2});
  expectNumber(matching.properties.entries[1], "idProduct", {0x0C28, 4});
}

TEST_F(QuillUsbDeviceMatcherTest, VendorAboveTheSignedRangeIsTheSame16Bits) {
  const platform::MatchingDictionary matching =
      QuillUsbDeviceMatcher(0xFFFE, 0xFFFF).getMatchingDictionary();
  expectNumber(matching.properties.entries.at(0), "idVendor", {-2, 2});
  expectNumber(matching.properties.entries.at(1), "idProduct", {0xFFFF, 4});
}

TEST_F(QuillUsbDeviceMatcherTest, NoMatchingDictionary) {
  mUsb.script("serviceMatching", platform::kIOReturnError);
  EXPECT_EQ(thrown<std::runtime_error>(
                [] { QuillUsbDeviceMatcher(0x3A71, 0x0C28).getMatchingDictionary(); }),
            "Unable to obtain a matching dictionary.");
}

TEST_F(QuillUsbDeviceMatcherTest, WithoutASerialNumberAnyDeviceIsWanted) {
  const auto device = mUsb.attach(FakeUsbDevice{});
  EXPECT_TRUE(QuillUsbDeviceMatcher(0x3A71, 0x0C28).isMatchingDevice(device));
  EXPECT_TRUE(QuillUsbDeviceMatcher(0x3A71, 0x0C28, "").isMatchingDevice(device));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre());
}

TEST_F(QuillUsbDeviceMatcherTest, SerialNumberMustBeEqualByteForByte) {
  EXPECT_TRUE(acceptsSerialNumber("VX0042", "VX0042"));
  EXPECT_FALSE(acceptsSerialNumber("VX0042", "vx0042"));
  EXPECT_FALSE(acceptsSerialNumber("VX0042", "VX00421"));
  EXPECT_FALSE(acceptsSerialNumber("VX0042", "VX004"));
  EXPECT_FALSE(acceptsSerialNumber("VX0042", ""));
}

TEST_F(QuillUsbDeviceMatcherTest, DeviceWithoutASerialNumberDoesNotMatchOne) {
  const auto device = mUsb.attach(FakeUsbDevice{});
  EXPECT_FALSE(QuillUsbDeviceMatcher(0x3A71, 0x0C28, "VX0042").isMatchingDevice(device));
}

TEST_F(QuillUsbDeviceMatcherTest, VendorAndProductAreNotComparedAgain) {
  EXPECT_TRUE(QuillUsbDeviceMatcher(1, 2, "VX0042").isMatchingDevice(mUsb.attach(fakePrinter())));
}

}  // namespace
