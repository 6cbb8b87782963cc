// What the registry says of attached devices, and what it tells of their coming and going.
#include <gmock/gmock.h>

#include "UsbHostTest.h"

using platform::io_iterator_t;
using platform::io_object_t;
using platform::io_service_t;
using platform::IOReturn;
using platform::kIOReturnSuccess;
using platform::PropertyNumber;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class UsbRegistryTest : public UsbHostTest {
 protected:
  // Watches for printers as the program does; mArrivals counts them, and mGone the ends of those
  // for which watchFor() was called.
  void watchForPrinters() {
    mPort = mRegistry->createNotificationPort();
    mPort->addTo(mLoop);
    ASSERT_EQ(mRegistry->addMatchingNotification(*mPort, "IOServiceFirstMatch", printers(), arrived,
                                                 this, mIterator),
              kIOReturnSuccess);
    take();
  }

  void take() {
    while (const io_service_t service = mRegistry->iteratorNext(mIterator)) {
      mArrivals.push_back(service);
    }
  }

  io_object_t watchFor(io_service_t service) {
    io_object_t notification = 0;
    EXPECT_EQ(mRegistry->addInterestNotification(*mPort, service, "IOGeneralInterest", gone, this,
                                                 notification),
              kIOReturnSuccess);
    return notification;
  }

  bool awaitArrivals(std::size_t count) {
    return mLoop.runUntil([&] { return mArrivals.size() >= count; });
  }
  bool awaitEnds(std::size_t count) {
    return mLoop.runUntil([&] { return mGone.size() >= count; });
  }

  static void arrived(void* refCon, io_iterator_t iterator) {
    auto* const self = static_cast<UsbRegistryTest*>(refCon);
    EXPECT_EQ(iterator, self->mIterator);
    ++self->mCalls;
    self->take();
  }

  static void gone(void* refCon, io_service_t service, std::uint32_t message, void*) {
    EXPECT_EQ(message, platform::kIOMessageServiceIsTerminated);
    static_cast<UsbRegistryTest*>(refCon)->mGone.push_back(service);
  }

  std::unique_ptr<platform::UsbNotificationPort> mPort;
  io_iterator_t mIterator = 0;
  std::vector<io_service_t> mArrivals;
  std::vector<io_service_t> mGone;
  int mCalls = 0;
};

TEST_F(UsbRegistryTest, PropertiesDescribeTheDevice) {
  UsbPrinterProcess printer({"--serial", "VX0042"});
  const io_service_t device = awaitPrinter("VX0042");
  ASSERT_NE(device, 0u);
  EXPECT_EQ(text(device, "USB Vendor Name"), "Veltra");
  EXPECT_EQ(text(device, "USB Product Name"), "KX350T");
  EXPECT_EQ(text(device, "USB Serial Number"), "VX0042");
  EXPECT_EQ(number(device, "idVendor"), (PropertyNumber{0x3A71, 2}));
  EXPECT_EQ(number(device, "idProduct"), (PropertyNumber{0x0C28, 2}));
  EXPECT_EQ(mRegistry->property(device, "no such key"), std::nullopt);
  std::string name;
  EXPECT_EQ(mRegistry->entryName(device, name), kIOReturnSuccess);
  EXPECT_EQ(name, "KX350T");
  platform::PropertyDictionary properties;
  EXPECT_EQ(mRegistry->properties(device, properties), kIOReturnSuccess);
  EXPECT_THAT(properties.entries, SizeIs(17));
}

TEST_F(UsbRegistryTest, EmptyStringsAreNoProperties) {
  UsbPrinterProcess printer({"--usb-manufacturer", "", "--usb-product", "", "--usb-serial", ""});
  std::vector<io_service_t> found;
  ASSERT_TRUE(mLoop.runUntil([&] { return !(found = attached()).empty(); }));
  EXPECT_EQ(text(found[0], "USB Vendor Name"), std::nullopt);
  EXPECT_EQ(text(found[0], "USB Product Name"), std::nullopt);
  EXPECT_EQ(text(found[0], "USB Serial Number"), std::nullopt);
  std::string name;
  EXPECT_EQ(mRegistry->entryName(found[0], name), kIOReturnSuccess);
  EXPECT_EQ(name, "IOUSBDevice");
}

TEST_F(UsbRegistryTest, InterfacesAreFoundByTheirClass) {
  UsbPrinterProcess printer;
  const io_service_t device = awaitPrinter();
  const io_service_t acl = interfaceEntry(device, kPrinterClass);
  const io_service_t ews = interfaceEntry(device, kVendorClass);
  EXPECT_EQ(number(acl, "bInterfaceNumber"), (PropertyNumber{1, 2}));
  EXPECT_EQ(number(acl, "bInterfaceClass"), (PropertyNumber{7, 2}));
  EXPECT_EQ(number(ews, "bInterfaceNumber"), (PropertyNumber{0, 2}));
  EXPECT_EQ(interfaceEntry(device, 3), 0u);
  EXPECT_EQ(interfaceEntry(device, kPrinterClass), acl);
}

TEST_F(UsbRegistryTest, MissingInterfacesAreNotFound) {
  UsbPrinterProcess noPrinter({"--serial", "A", "--fault", "no-printer-interface"});
  UsbPrinterProcess noVendor({"--serial", "B", "--fault", "no-vendor-interface"});
  const io_service_t a = awaitPrinter("A");
  const io_service_t b = awaitPrinter("B");
  EXPECT_EQ(interfaceEntry(a, kPrinterClass), 0u);
  EXPECT_NE(interfaceEntry(a, kVendorClass), 0u);
  EXPECT_NE(interfaceEntry(b, kPrinterClass), 0u);
  EXPECT_EQ(interfaceEntry(b, kVendorClass), 0u);
}

TEST_F(UsbRegistryTest, OtherDevicesDoNotMatch) {
  UsbPrinterProcess other({"--usb-id", "3a71:ffff", "--serial", "OTHER"});
  std::vector<io_service_t> found;
  ASSERT_TRUE(
      mLoop.runUntil([&] { return !(found = attached(printers(0x3A71, 0xFFFF))).empty(); }));
  EXPECT_THAT(attached(), IsEmpty());
  EXPECT_THAT(attached(printers(0, 0x0C28)), IsEmpty());
  // 16 bits match whatever their sign, 32 bits by their value.
  EXPECT_THAT(attached(printers(0x3A71, -1)), IsEmpty());
  EXPECT_EQ(number(found[0], "idProduct"), (PropertyNumber{-1, 2}));
}

TEST_F(UsbRegistryTest, PresentDevicesComeFirstAndLaterOnesAreToldOf) {
  UsbPrinterProcess first({"--serial", "FIRST"});
  ASSERT_NE(awaitPrinter("FIRST"), 0u);
  watchForPrinters();
  ASSERT_THAT(mArrivals, SizeIs(1));
  EXPECT_EQ(text(mArrivals[0], "USB Serial Number"), "FIRST");
  EXPECT_EQ(mCalls, 0);

  UsbPrinterProcess second({"--serial", "SECOND"});
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_EQ(text(mArrivals[1], "USB Serial Number"), "SECOND");
  EXPECT_EQ(mCalls, 1);
}

TEST_F(UsbRegistryTest, AnIteratorThatIsNotReadIsNotToldOfMore) {
  watchForPrinters();
  mPort = mRegistry->createNotificationPort();
  mPort->addTo(mLoop);
  io_iterator_t unread = 0;
  int calls = 0;
  mRegistry->addMatchingNotification(
      *mPort, "IOServiceFirstMatch", printers(),
      [](void* refCon, io_iterator_t) { ++*static_cast<int*>(refCon); }, &calls, unread);
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(calls, 0);
  EXPECT_NE(mRegistry->iteratorNext(unread), 0u);
}

TEST_F(UsbRegistryTest, NothingIsToldAfterTheEndOfThePort) {
  watchForPrinters();
  mPort.reset();
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(mCalls, 0);
}

TEST_F(UsbRegistryTest, UnpluggingIsToldOnceToThoseWhoAreInterested) {
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  watchForPrinters();
  watchFor(mArrivals.at(0));
  const io_object_t released = watchFor(mArrivals.at(0));
  mRegistry->release(released);
  printer.stop();
  ASSERT_TRUE(awaitEnds(1));
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(mGone, mArrivals);
  EXPECT_THAT(attached(), IsEmpty());
}

TEST_F(UsbRegistryTest, AnEntryOutlivesItsDevice) {
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  watchForPrinters();
  const io_service_t device = mArrivals.at(0);
  printer.stop();
  ASSERT_TRUE(awaitGone());

  EXPECT_EQ(text(device, "USB Serial Number"), "VP000001");
  EXPECT_NE(interfaceEntry(device, kVendorClass), 0u);
  EXPECT_EQ(interfaceObject(device, kPrinterClass)->open(), platform::kIOReturnNoDevice);
  EXPECT_EQ(deviceObject(device)->open(), platform::kIOReturnNoDevice);
  watchFor(device);
  EXPECT_TRUE(awaitEnds(1));
}

TEST_F(UsbRegistryTest, AnEntryIsGoneWithItsLastReference) {
  UsbPrinterProcess printer;
  const io_service_t device = awaitPrinter();
  printer.stop();
  ASSERT_TRUE(awaitGone());
  mRegistry->retain(device);
  mRegistry->release(device);
  EXPECT_TRUE(text(device, "USB Serial Number"));
  mRegistry->release(device);
  EXPECT_FALSE(text(device, "USB Serial Number"));
  std::string name;
  EXPECT_EQ(mRegistry->entryName(device, name), platform::kIOReturnBadArgument);
}

TEST_F(UsbRegistryTest, APrinterThatReturnsIsAnotherEntry) {
  watchForPrinters();
  {
    UsbPrinterProcess printer;
    ASSERT_TRUE(awaitArrivals(1));
    watchFor(mArrivals.at(0));
  }
  ASSERT_TRUE(awaitEnds(1));
  UsbPrinterProcess printer;
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_NE(mArrivals[0], mArrivals[1]);
  EXPECT_EQ(text(mArrivals[0], "USB Serial Number"), text(mArrivals[1], "USB Serial Number"));
}

TEST_F(UsbRegistryTest, AResetDeviceIsAnotherEntry) {
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  watchForPrinters();
  watchFor(mArrivals.at(0));
  const auto device = deviceObject(mArrivals[0]);
  EXPECT_EQ(device->reEnumerate(0), platform::kIOReturnNotOpen);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(device->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(device->reEnumerate(0), kIOReturnSuccess);
  EXPECT_EQ(device->close(), kIOReturnSuccess);
  ASSERT_TRUE(awaitEnds(1));
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_EQ(text(mArrivals[1], "USB Serial Number"), "VP000001");
}

TEST_F(UsbRegistryTest, NoTimerRunsWhileNothingHappens) {
  UsbPrinterProcess printer;
  ASSERT_NE(awaitPrinter(), 0u);
  watchForPrinters();
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(mLoop.timers(), 0u);
}

TEST_F(UsbRegistryTest, UnknownKindsAreRefused) {
  EXPECT_EQ(mRegistry->serviceMatching("IONetworkInterface"), std::nullopt);
  watchForPrinters();
  io_iterator_t iterator = 0;
  EXPECT_EQ(mRegistry->addMatchingNotification(*mPort, "IOServiceTerminate", printers(), arrived,
                                               this, iterator),
            platform::kIOReturnUnsupported);
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  EXPECT_EQ(mRegistry->createPlugIn(4711, platform::UsbRegistry::ClientType::Device, plugIn),
            platform::kIOReturnBadArgument);
}

}  // namespace
