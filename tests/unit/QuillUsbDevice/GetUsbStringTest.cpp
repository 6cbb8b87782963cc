#include "UsbTest.h"
#include "getUsbString.h"

namespace {

using platform::PropertyNumber;
using platform::PropertyValue;
using platform::Text;
using testing::ElementsAre;

class GetUsbStringTest : public UsbTest {
 protected:
  std::string serialNumberThatIs(const PropertyValue& value) {
    FakeUsbDevice device;
    device.properties.entries.emplace_back(Text::fromUtf8("USB Serial Number"), value);
    return getUsbString(mUsb.attach(device), UsbSerialNumber);
  }
};

TEST_F(GetUsbStringTest, ReadsEachStringByItsKey) {
  const auto device = mUsb.attach(fakePrinter("VX0042"));
  EXPECT_EQ(getUsbString(device, UsbProductName), "KX350T");
  EXPECT_EQ(getUsbString(device, UsbVendorName), "Veltra");
  EXPECT_EQ(getUsbString(device, UsbSerialNumber), "VX0042");
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre("property printer USB Product Name", "property printer USB Vendor Name",
                          "property printer USB Serial Number"));
}

TEST_F(GetUsbStringTest, NumbersOfTheStringsAreFixed) {
  EXPECT_EQ(UsbProductName, 0);
  EXPECT_EQ(UsbVendorName, 1);
  EXPECT_EQ(UsbSerialNumber, 2);
}

TEST_F(GetUsbStringTest, UnknownStringIsEmptyWithoutAskingTheRegistry) {
  const auto device = mUsb.attach(fakePrinter());
  EXPECT_EQ(getUsbString(device, static_cast<UsbStringId>(3)), "");
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre());
}

TEST_F(GetUsbStringTest, MissingPropertyIsEmpty) {
  EXPECT_EQ(getUsbString(mUsb.attach(FakeUsbDevice{}), UsbSerialNumber), "");
}

TEST_F(GetUsbStringTest, PropertyThatIsNoTextIsEmpty) {
  EXPECT_EQ(serialNumberThatIs(PropertyNumber{42}), "");
  EXPECT_EQ(serialNumberThatIs(true), "");
  EXPECT_EQ(serialNumberThatIs(std::monostate{}), "");
  EXPECT_EQ(serialNumberThatIs(Text()), "");
}

TEST_F(GetUsbStringTest, TextOf255BytesIsReadWhole) {
  const std::string longest(255, 'x');
  EXPECT_EQ(serialNumberThatIs(Text::fromUtf8(longest)), longest);
}

TEST_F(GetUsbStringTest, TextOf256BytesIsEmpty) {
  EXPECT_EQ(serialNumberThatIs(Text::fromUtf8(std::string(256, 'x'))), "");
}

TEST_F(GetUsbStringTest, LimitCountsBytesAndNotCharacters) {
  std::string umlauts;
  for (int i = 0; i < 128; ++i) umlauts += "ü";
  EXPECT_EQ(serialNumberThatIs(Text::fromUtf8(umlauts)), "");
  umlauts.resize(254);
  EXPECT_EQ(serialNumberThatIs(Text::fromUtf8(umlauts)), umlauts);
}

TEST_F(GetUsbStringTest, TextEndsAtItsFirstZero) {
  EXPECT_EQ(serialNumberThatIs(Text::fromUtf8(std::string_view("AB\0CD", 5))), "AB");
}

}  // namespace
