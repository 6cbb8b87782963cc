#include <gmock/gmock.h>

#include "PrinterListViewFixture.h"
#include "UsbDeviceFinder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UsbDeviceFinderTest : public PrinterListViewFixture {
 protected:
  UsbDeviceFinderTest() {
    makeView();
    finder.emplace(*view);
  }

  ~UsbDeviceFinderTest() override {
    finder.reset();
    view.reset();
  }

  void start() {
    finder->setupAsyncNotifier(nullptr);
    finder->startAsyncNotifier();
  }

  platform::io_service_t attach(const FakeUsbDevice& device) {
    const platform::io_service_t service = doubles.usb.attach(device);
    doubles.runLoop.runAllLater();
    return service;
  }

  void detach(platform::io_service_t service) {
    doubles.usb.detach(service);
    doubles.runLoop.runAllLater();
  }

  std::optional<UsbDeviceFinder> finder;
};

TEST_F(UsbDeviceFinderTest, PresentPrinterIsLoggedAndListed) {
  attach(fakePrinter("VX0042"));
  EXPECT_THAT(takeEntries(), IsEmpty());
  start();
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{5, "Found Veltra KX350T device with serial number VX0042"},
                          LogEntry{5, "Adding printer with ID=1"}));
}

TEST_F(UsbDeviceFinderTest, PrinterThatComesLaterIsLoggedAndListed) {
  start();
  attach(fakePrinter("VX0042"));
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{5, "Found Veltra KX350T device with serial number VX0042"},
                          LogEntry{5, "Adding printer with ID=1"}));
}

TEST_F(UsbDeviceFinderTest, LooksForTheSupportedModelOnly) {
  start();
  FakeUsbDevice otherProduct = fakePrinter();
  otherProduct.productId = 0x0C29;
  attach(otherProduct);
  FakeUsbDevice otherVendor = fakePrinter();
  otherVendor.vendorId = 0x3A70;
  attach(otherVendor);
  EXPECT_THAT(takeEntries(), IsEmpty());
}

TEST_F(UsbDeviceFinderTest, UnpluggedPrinterLeavesTheListAndComesBackAsANewRecord) {
  start();
  const platform::io_service_t printer = attach(fakePrinter("VX0042"));
  takeEntries();
  detach(printer);
  attach(fakePrinter("VX0042"));
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{5, "Removed Veltra KX350T device with serial number VX0042"},
                          LogEntry{5, "Removing printer with ID=1"},
                          LogEntry{5, "Found Veltra KX350T device with serial number VX0042"},
                          LogEntry{5, "Adding printer with ID=2"}));
}

TEST_F(UsbDeviceFinderTest, EachOfTwoPrintersKeepsItsRow) {
  start();
  const platform::io_service_t first = attach(fakePrinter("1"));
  attach(fakePrinter("2"));
  takeEntries();
  detach(first);
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{5, "Removed Veltra KX350T device with serial number 1"},
                          LogEntry{5, "Removing printer with ID=1"}));
}

TEST_F(UsbDeviceFinderTest, EmptyStringsStillMakeALine) {
  start();
  detach(attach(FakeUsbDevice{}));
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Found   device with serial number "},
                                         LogEntry{5, "Adding printer with ID=1"},
                                         LogEntry{5, "Removed   device with serial number "},
                                         LogEntry{5, "Removing printer with ID=1"}));
}

TEST_F(UsbDeviceFinderTest, NothingComesAfterItsEnd) {
  start();
  doubles.usb.detach(attach(fakePrinter()));
  doubles.usb.attach(fakePrinter("other"));
  takeEntries();
  finder.reset();
  doubles.runLoop.runAllLater();
  EXPECT_THAT(takeEntries(), IsEmpty());
}

}  // namespace
