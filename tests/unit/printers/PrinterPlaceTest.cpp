#include "PrinterFixture.h"
#include "PrinterPlace.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

class PrinterPlaceTest : public PrinterFixture {};

TEST_F(PrinterPlaceTest, PrinterOnTheCableIsReachedByItsSerialNumber) {
  QuillUsbDevice device = plugIn(fakePrinter("VX0042"));
  const OwnedPrinter printer(Printer::create(device));
  const PrinterPlace place = placeOf(*printer);
  EXPECT_EQ(place.connection, PrinterPlace::Connection::Usb);
  EXPECT_EQ(shown(place.serial), "VX0042");
  EXPECT_EQ(place.address, nullptr);
}

TEST_F(PrinterPlaceTest, PrinterOnTheNetworkIsReachedByItsAddressAndPort) {
  const OwnedPrinter printer(Printer::create(
      text("Front desk"),
      platform::makeData({16, 2, 0x23, 0x8C, 10, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 0})));
  const PrinterPlace place = placeOf(*printer);
  EXPECT_EQ(place.connection, PrinterPlace::Connection::Network);
  EXPECT_TRUE(place.serial.isNull());
  ASSERT_NE(place.address, nullptr);
  EXPECT_EQ(*place.address, (Bytes{16, 2, 0x23, 0x8C, 10, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(PrinterPlaceTest, PrinterWithoutAddressIsOnTheNetworkAllTheSame) {
  const OwnedPrinter printer(Printer::create(text("Front desk"), nullptr));
  const PrinterPlace place = placeOf(*printer);
  EXPECT_EQ(place.connection, PrinterPlace::Connection::Network);
  EXPECT_EQ(place.address, nullptr);
}

}  // namespace
