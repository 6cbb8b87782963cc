// What the program relies on in every USB registry, the double included: what is said of attached
// devices, and what is told of their coming and going.
#include <gmock/gmock.h>

#include "UsbContract.h"

namespace {

using platform::io_iterator_t;
using platform::io_object_t;
using platform::io_service_t;
using platform::kIOReturnSuccess;
using platform::PropertyNumber;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Fault = PrinterOnUsb::Fault;

class UsbRegistryContract : public UsbContract {
 protected:
  // Watches for printers as the program does; mArrivals has them, mCalls counts what was told, and
  // mGone has the ends of those for which watchFor() was called.
  void watchForPrinters() {
    mPort = registry().createNotificationPort();
    mPort->addTo(mWorld->runLoop());
    ASSERT_EQ(registry().addMatchingNotification(*mPort, "IOServiceFirstMatch", UsbHost::printers(),
                                                 arrived, this, mIterator),
              kIOReturnSuccess);
    take();
  }

  void take() {
    while (const io_service_t service = registry().iteratorNext(mIterator)) {
      mArrivals.push_back(service);
    }
  }

  io_object_t watchFor(io_service_t service) {
    io_object_t notification = 0;
    EXPECT_EQ(registry().addInterestNotification(*mPort, service, "IOGeneralInterest", gone, this,
                                                 notification),
              kIOReturnSuccess);
    return notification;
  }

  bool awaitArrivals(std::size_t count) {
    return mWorld->runUntil([&] { return mArrivals.size() >= count; });
  }

  bool awaitEnds(std::size_t count) {
    return mWorld->runUntil([&] { return mGone.size() >= count; });
  }

  std::string serialOf(std::size_t arrival) {
    return mHost.text(mArrivals.at(arrival), "USB Serial Number").value_or("none");
  }

  std::string nameOf(io_service_t entry) {
    std::string name;
    EXPECT_EQ(registry().entryName(entry, name), kIOReturnSuccess);
    return name;
  }

  static void arrived(void* refCon, io_iterator_t iterator) {
    auto* const self = static_cast<UsbRegistryContract*>(refCon);
    EXPECT_EQ(iterator, self->mIterator);
    ++self->mCalls;
    self->take();
  }

  static void gone(void* refCon, io_service_t service, std::uint32_t message, void*) {
    EXPECT_EQ(message, platform::kIOMessageServiceIsTerminated);
    static_cast<UsbRegistryContract*>(refCon)->mGone.push_back(service);
  }

  std::unique_ptr<platform::UsbNotificationPort> mPort;
  io_iterator_t mIterator = 0;
  std::vector<io_service_t> mArrivals;
  std::vector<io_service_t> mGone;
  int mCalls = 0;
};

// What is attached.

TEST_P(UsbRegistryContract, PropertiesDescribeTheDevice) {
  const io_service_t device = plugIn({.serial = "VX0042"});
  EXPECT_EQ(mHost.text(device, "USB Vendor Name"), "Veltra");
  EXPECT_EQ(mHost.text(device, "USB Product Name"), "KX350T");
  EXPECT_EQ(mHost.text(device, "USB Serial Number"), "VX0042");
  EXPECT_EQ(mHost.number(device, "idVendor"), (PropertyNumber{0x3A71, 2}));
  EXPECT_EQ(mHost.number(device, "idProduct"), (PropertyNumber{0x0C28, 2}));
  EXPECT_EQ(registry().property(device, "no such key"), std::nullopt);
  EXPECT_EQ(nameOf(device), "KX350T");

  platform::PropertyDictionary properties;
  EXPECT_EQ(registry().properties(device, properties), kIOReturnSuccess);
  std::vector<std::string> keys;
  for (const auto& entry : properties.entries) {
    keys.emplace_back(std::get<platform::Text>(entry.first).utf8());
  }
  EXPECT_THAT(keys, testing::IsSupersetOf({"USB Vendor Name", "USB Product Name",
                                           "USB Serial Number", "idVendor", "idProduct"}));
}

TEST_P(UsbRegistryContract, EmptyStringsAreNoProperties) {
  mWorld->plugIn({.serial = "", .manufacturer = "", .product = ""});
  std::vector<io_service_t> found;
  ASSERT_TRUE(mWorld->runUntil([&] { return !(found = mHost.attached()).empty(); }));
  EXPECT_EQ(mHost.text(found[0], "USB Vendor Name"), std::nullopt);
  EXPECT_EQ(mHost.text(found[0], "USB Product Name"), std::nullopt);
  EXPECT_EQ(mHost.text(found[0], "USB Serial Number"), std::nullopt);
  EXPECT_EQ(nameOf(found[0]), "IOUSBDevice");
}

TEST_P(UsbRegistryContract, OtherDevicesDoNotMatch) {
  mWorld->plugIn({.serial = "OTHER", .productId = 0xFFFF});
  std::vector<io_service_t> found;
  const auto others = UsbHost::printers(0x3A71, 0xFFFF);
  ASSERT_TRUE(mWorld->runUntil([&] { return !(found = mHost.attached(others)).empty(); }));
  EXPECT_THAT(found, SizeIs(1));
  EXPECT_THAT(mHost.attached(), IsEmpty());
  EXPECT_THAT(mHost.attached(UsbHost::printers(0, 0xFFFF)), IsEmpty());
  // 16 bits match whatever their sign, 32 bits by their value.
  EXPECT_THAT(mHost.attached(UsbHost::printers(0x3A71, -1)), IsEmpty());
  EXPECT_EQ(mHost.number(found[0], "idProduct"), (PropertyNumber{-1, 2}));
}

TEST_P(UsbRegistryContract, InterfacesAreFoundByWhatTheyAre) {
  const io_service_t device = plugIn();
  const io_service_t acl = mHost.interfaceEntry(device, UsbHost::kPrinterClass);
  const io_service_t ews = mHost.interfaceEntry(device, UsbHost::kVendorClass);
  EXPECT_EQ(mHost.number(acl, "bInterfaceClass"), (PropertyNumber{7, 2}));
  EXPECT_EQ(mHost.number(ews, "bInterfaceClass"), (PropertyNumber{255, 2}));
  EXPECT_EQ(nameOf(acl), "Printer");
  EXPECT_EQ(mHost.interfaceEntry(device, 3), 0u);
  EXPECT_THAT(mHost.interfaceEntries(device, {}), ElementsAre(ews, acl));
  EXPECT_THAT(mHost.interfaceEntries(device, {.bInterfaceSubClass = 1, .bInterfaceProtocol = 2}),
              ElementsAre(acl));
  EXPECT_THAT(mHost.interfaceEntries(device, {.bInterfaceClass = 7, .bInterfaceSubClass = 2}),
              IsEmpty());
  EXPECT_THAT(mHost.interfaceEntries(device, {.bInterfaceClass = 7, .bInterfaceProtocol = 1}),
              IsEmpty());
  EXPECT_THAT(mHost.interfaceEntries(device, {.bInterfaceClass = 7, .bAlternateSetting = 1}),
              IsEmpty());
}

TEST_P(UsbRegistryContract, MissingInterfacesAreNotFound) {
  const io_service_t device = plugIn({.fault = Fault::NoPrinterInterface});
  EXPECT_EQ(mHost.interfaceEntry(device, UsbHost::kPrinterClass), 0u);
  EXPECT_NE(mHost.interfaceEntry(device, UsbHost::kVendorClass), 0u);
}

TEST_P(UsbRegistryContract, WhatIsOfAnotherKindIsRefused) {
  using ClientType = platform::UsbRegistry::ClientType;
  EXPECT_EQ(registry().serviceMatching("IONetworkInterface"), std::nullopt);
  EXPECT_EQ(registry().serviceMatching("IOUSBDevice")->className.utf8(), "IOUSBDevice");
  const io_service_t device = plugIn();
  watchForPrinters();
  io_object_t none = 0;
  EXPECT_EQ(registry().addMatchingNotification(*mPort, "IOServiceTerminate", UsbHost::printers(),
                                               arrived, this, none),
            platform::kIOReturnUnsupported);
  EXPECT_EQ(registry().addInterestNotification(*mPort, device, "IOBusyInterest", gone, this, none),
            platform::kIOReturnUnsupported);
  EXPECT_EQ(registry().addInterestNotification(*mPort, 4711, "IOGeneralInterest", gone, this, none),
            platform::kIOReturnBadArgument);
  EXPECT_EQ(none, 0u);

  const io_service_t acl = mHost.interfaceEntry(device, UsbHost::kPrinterClass);
  EXPECT_EQ(mHost.plugIn(4711, ClientType::Device), nullptr);
  EXPECT_EQ(mHost.plugIn(4711, ClientType::Interface), nullptr);
  EXPECT_EQ(mHost.plugIn(device, ClientType::Interface), nullptr);
  EXPECT_EQ(mHost.plugIn(acl, ClientType::Device), nullptr);
  std::unique_ptr<platform::UsbDeviceObject> deviceObject;
  EXPECT_LT(mHost.plugIn(acl, ClientType::Interface)->queryDevice(deviceObject), 0);
  std::unique_ptr<platform::UsbInterfaceObject> interfaceObject;
  EXPECT_LT(mHost.plugIn(device, ClientType::Device)->queryInterface(interfaceObject), 0);
}

// Coming and going.

TEST_P(UsbRegistryContract, PresentDevicesComeFirstAndLaterOnesAreToldOf) {
  plugIn({.serial = "FIRST"});
  watchForPrinters();
  ASSERT_THAT(mArrivals, SizeIs(1));
  EXPECT_EQ(serialOf(0), "FIRST");
  EXPECT_EQ(mCalls, 0);

  mWorld->plugIn({.serial = "SECOND"});
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_EQ(serialOf(1), "SECOND");
  EXPECT_EQ(mCalls, 1);
}

TEST_P(UsbRegistryContract, AnIteratorThatIsNotReadIsNotToldOfMore) {
  mPort = registry().createNotificationPort();
  mPort->addTo(mWorld->runLoop());
  registry().addMatchingNotification(*mPort, "IOServiceFirstMatch", UsbHost::printers(), arrived,
                                     this, mIterator);
  plugIn();
  settle();
  EXPECT_EQ(mCalls, 0);
  EXPECT_NE(registry().iteratorNext(mIterator), 0u);
}

TEST_P(UsbRegistryContract, NothingIsToldAfterTheEndOfThePort) {
  watchForPrinters();
  mPort.reset();
  plugIn();
  settle();
  EXPECT_EQ(mCalls, 0);
}

TEST_P(UsbRegistryContract, UnpluggingIsToldOnceToThoseWhoAreInterested) {
  plugIn();
  watchForPrinters();
  watchFor(mArrivals.at(0));
  registry().release(watchFor(mArrivals.at(0)));
  mWorld->unplug("VP000001");
  ASSERT_TRUE(awaitEnds(1));
  settle();
  EXPECT_EQ(mGone, mArrivals);
  EXPECT_THAT(mHost.attached(), IsEmpty());
}

TEST_P(UsbRegistryContract, AnEntryOutlivesItsDevice) {
  plugIn();
  watchForPrinters();
  const io_service_t device = mArrivals.at(0);
  mWorld->unplug("VP000001");
  ASSERT_TRUE(mHost.awaitGone());

  EXPECT_EQ(serialOf(0), "VP000001");
  EXPECT_NE(mHost.interfaceEntry(device, UsbHost::kVendorClass), 0u);
  EXPECT_EQ(mHost.interfaceObject(device, UsbHost::kPrinterClass)->open(),
            platform::kIOReturnNoDevice);
  EXPECT_EQ(mHost.deviceObject(device)->open(), platform::kIOReturnNoDevice);
  watchFor(device);
  EXPECT_TRUE(awaitEnds(1));
}

TEST_P(UsbRegistryContract, AnEntryIsGoneWithItsLastReference) {
  const io_service_t device = plugIn();
  const io_service_t acl = mHost.interfaceEntry(device, UsbHost::kPrinterClass);
  registry().release(acl);
  mWorld->unplug("VP000001");
  ASSERT_TRUE(mHost.awaitGone());
  registry().retain(device);
  registry().release(device);
  EXPECT_TRUE(mHost.text(device, "USB Serial Number"));
  EXPECT_TRUE(mHost.number(acl, "bInterfaceClass"));

  registry().release(device);
  EXPECT_FALSE(mHost.text(device, "USB Serial Number"));
  EXPECT_FALSE(mHost.number(acl, "bInterfaceClass"));
  std::string name;
  EXPECT_EQ(registry().entryName(device, name), platform::kIOReturnBadArgument);
  platform::PropertyDictionary properties;
  EXPECT_EQ(registry().properties(device, properties), platform::kIOReturnBadArgument);
  EXPECT_EQ(mHost.plugIn(device, platform::UsbRegistry::ClientType::Device), nullptr);
}

TEST_P(UsbRegistryContract, APrinterThatReturnsIsAnotherEntry) {
  watchForPrinters();
  mWorld->plugIn({});
  ASSERT_TRUE(awaitArrivals(1));
  watchFor(mArrivals.at(0));
  mWorld->unplug("VP000001");
  ASSERT_TRUE(awaitEnds(1));
  mWorld->plugIn({});
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_NE(mArrivals[0], mArrivals[1]);
  EXPECT_EQ(serialOf(0), serialOf(1));
  EXPECT_THAT(mGone, SizeIs(1));
}

TEST_P(UsbRegistryContract, ADeviceThatStartsOverIsAnotherEntry) {
  plugIn();
  watchForPrinters();
  watchFor(mArrivals.at(0));
  const auto device = mHost.deviceObject(mArrivals[0]);
  EXPECT_EQ(device->reEnumerate(), platform::kIOReturnNotOpen);
  EXPECT_EQ(device->close(), platform::kIOReturnNotOpen);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(device->open(), platform::kIOReturnExclusiveAccess);
  ASSERT_EQ(device->close(), kIOReturnSuccess);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(device->reEnumerate(), kIOReturnSuccess);
  EXPECT_THAT(mGone, IsEmpty());
  EXPECT_THAT(mArrivals, SizeIs(1));
  EXPECT_EQ(device->close(), kIOReturnSuccess);
  ASSERT_TRUE(awaitEnds(1));
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_THAT(mGone, ElementsAre(mArrivals[0]));
  EXPECT_EQ(serialOf(1), "VP000001");
  EXPECT_EQ(device->open(), platform::kIOReturnNoDevice);
}

TEST_P(UsbRegistryContract, ADeviceIsOpenForOneObject) {
  const io_service_t service = plugIn();
  auto device = mHost.deviceObject(service);
  const auto other = mHost.deviceObject(service);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(other->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(other->reEnumerate(), platform::kIOReturnNotOpen);
  EXPECT_EQ(device->close(), kIOReturnSuccess);
  EXPECT_EQ(other->open(), kIOReturnSuccess);
  EXPECT_EQ(device->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(other->close(), kIOReturnSuccess);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  device.reset();
  EXPECT_EQ(other->open(), kIOReturnSuccess);
}

TEST_P(UsbRegistryContract, ADeviceThatAnotherProgramUsesDoesNotStartOver) {
  const io_service_t service = plugIn();
  const auto device = mHost.deviceObject(service);
  mWorld->claimElsewhere("VP000001", true);
  EXPECT_EQ(device->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(device->reEnumerate(), platform::kIOReturnNotOpen);
  EXPECT_EQ(mHost.interfaceObject(service, UsbHost::kPrinterClass)->open(),
            platform::kIOReturnExclusiveAccess);
  mWorld->claimElsewhere("VP000001", false);
  EXPECT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(device->reEnumerate(), kIOReturnSuccess);
}

// What is configured, and when.

TEST_P(UsbRegistryContract, ADeviceThatIsConfiguredLateComesAgainWithItsInterfaces) {
  watchForPrinters();
  mWorld->plugInUnconfigured({});
  ASSERT_TRUE(awaitArrivals(1));
  EXPECT_EQ(serialOf(0), "VP000001");
  EXPECT_THAT(mHost.interfaceEntries(mArrivals[0], {}), IsEmpty());
  watchFor(mArrivals[0]);
  mWorld->setConfigured("VP000001", true);
  ASSERT_TRUE(awaitEnds(1));
  ASSERT_TRUE(awaitArrivals(2));
  EXPECT_THAT(mGone, ElementsAre(mArrivals[0]));
  EXPECT_EQ(serialOf(1), "VP000001");
  EXPECT_THAT(mHost.interfaceEntries(mArrivals[1], {}), SizeIs(2));
  const auto acl = mHost.openInterface(mArrivals[1], UsbHost::kPrinterClass);
  EXPECT_EQ(mHost.write(*acl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
}

TEST_P(UsbRegistryContract, ADeviceThatIsNeverConfiguredGoesWithItsPlug) {
  watchForPrinters();
  mWorld->plugInUnconfigured({});
  ASSERT_TRUE(awaitArrivals(1));
  watchFor(mArrivals[0]);
  mWorld->unplug("VP000001");
  ASSERT_TRUE(awaitEnds(1));
  EXPECT_THAT(mGone, ElementsAre(mArrivals[0]));
  EXPECT_THAT(mHost.attached(), IsEmpty());
}

TEST_P(UsbRegistryContract, ADeviceThatIsConfiguredAnewIsAnotherEntry) {
  plugIn();
  watchForPrinters();
  watchFor(mArrivals.at(0));
  const auto old = mHost.openInterface(mArrivals[0], UsbHost::kPrinterClass);
  mWorld->setConfigured("VP000001", false);
  ASSERT_TRUE(awaitEnds(1));
  EXPECT_EQ(mGone[0], mArrivals[0]);
  EXPECT_EQ(mHost.write(*old, "x"), (TransferEnd{platform::kIOReturnNoDevice, 0}));

  mWorld->setConfigured("VP000001", true);
  ASSERT_TRUE(mWorld->runUntil([&] {
    return mArrivals.size() > 1 && mHost.interfaceEntry(mArrivals.back(), UsbHost::kPrinterClass);
  }));
  const auto acl = mHost.openInterface(mArrivals.back(), UsbHost::kPrinterClass);
  EXPECT_EQ(mHost.write(*acl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
}

INSTANTIATE_TEST_SUITE_P(Usb, UsbRegistryContract, testing::ValuesIn(usbImplementations()),
                         implementationName);

}  // namespace
