#include <sstream>
#include <stdexcept>

#include "QuillUsbDevice.h"
#include "UsbTest.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* kEmptyHandle = "Querying device object before initialising it.";

class QuillUsbDeviceTest : public UsbTest {
 protected:
  QuillUsbDevice make(const FakeUsbDevice& description = fakePrinter()) {
    QuillUsbDevice device;
    mService = mUsb.attach(description);
    device.init(mService, 0);
    mUsb.takeCalls();
    return device;
  }

  void complete(const std::string& read) {
    mUsb.completeRead(read);
    mLoop.runAllLater();
  }

  platform::io_service_t mService = 0;
  RecordingNotifier mNotifier;
};

TEST_F(QuillUsbDeviceTest, EmptyHandleThrowsWhateverIsAskedOfIt) {
  QuillUsbDevice device;
  std::ostringstream out;
  char byte = 0;
  const auto text = [](auto action) { return thrown<std::logic_error>(action); };
  EXPECT_EQ(text([&] { device.getSerialNum(); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.getProduct(); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.getManufacturer(); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.aclRead(&byte, 1, mNotifier, 1); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.aclWrite(&byte, 1, mNotifier, 1); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.ewsRead(&byte, 1, mNotifier, 1); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.ewsWrite(&byte, 1, mNotifier, 1); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.reEnumerate(); }), kEmptyHandle);
  EXPECT_EQ(text([&] { device.print(out, true); }), kEmptyHandle);
  EXPECT_EQ(out.str(), "");
}

TEST_F(QuillUsbDeviceTest, CopyOfAnEmptyHandleIsEmpty) {
  QuillUsbDevice device;
  const QuillUsbDevice copy(device);
  EXPECT_EQ(thrown<std::logic_error>([&] { copy.getSerialNum(); }), kEmptyHandle);
  EXPECT_TRUE(copy == device);
}

TEST_F(QuillUsbDeviceTest, TakesInterfacesAndStringsAtOnceAndOpensNothing) {
  QuillUsbDevice device;
  const auto service = mUsb.attach(fakePrinter());
  device.init(service, 0);
  EXPECT_THAT(takeCallsOf({"retain", "property"}),
              ElementsAre("retain printer", "retain printer/7", "retain printer/255",
                          "property printer USB Serial Number", "property printer USB Vendor Name",
                          "property printer USB Product Name"));
  EXPECT_FALSE(mUsb.isOpen(service));
  EXPECT_FALSE(mUsb.isOpen(mUsb.interfaceOf(service, 0)));
  EXPECT_FALSE(mUsb.isOpen(mUsb.interfaceOf(service, 1)));
}

TEST_F(QuillUsbDeviceTest, GivesTheStringsOfTheDevice) {
  const QuillUsbDevice device = make(fakePrinter("VX0042"));
  EXPECT_EQ(device.getSerialNum(), "VX0042");
  EXPECT_EQ(device.getManufacturer(), "Veltra");
  EXPECT_EQ(device.getProduct(), "KX350T");
}

TEST_F(QuillUsbDeviceTest, MissingStringsAreEmpty) {
  const QuillUsbDevice device = make(FakeUsbDevice{});
  EXPECT_EQ(device.getSerialNum(), "");
  EXPECT_EQ(device.getManufacturer(), "");
  EXPECT_EQ(device.getProduct(), "");
}

TEST_F(QuillUsbDeviceTest, CopiesShareOneDevice) {
  QuillUsbDevice device = make();
  QuillUsbDevice copy(device);
  EXPECT_TRUE(copy == device);
  EXPECT_EQ(&copy.getSerialNum(), &device.getSerialNum());
  EXPECT_EQ(&copy.getProduct(), &device.getProduct());
  EXPECT_EQ(&copy.getManufacturer(), &device.getManufacturer());

  std::string first(1, '?');
  std::string second(2, '?');
  device.aclRead(first.data(), 1, mNotifier, 1);
  complete("abc");
  copy.aclRead(second.data(), 2, mNotifier, 1);
  EXPECT_EQ(first + second, "abc");
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
}

TEST_F(QuillUsbDeviceTest, HandlesOnDifferentDevicesAreNotEqual) {
  const QuillUsbDevice device = make();
  const QuillUsbDevice twin = make();
  EXPECT_FALSE(device == twin);
  EXPECT_FALSE(device == QuillUsbDevice());
}

TEST_F(QuillUsbDeviceTest, DeviceGoesWithTheLastCopy) {
  auto device = std::make_unique<QuillUsbDevice>(make());
  auto copy = std::make_unique<QuillUsbDevice>(*device);
  device.reset();
  EXPECT_EQ(mUsb.references(mService), 1);
  copy.reset();
  EXPECT_THAT(
      takeCallsOf({"releaseObject"}),
      ElementsAre("releaseObject printer/255", "releaseObject printer/7", "releaseObject printer"));
  EXPECT_EQ(mUsb.references(mService), 0);
}

// The notification is any object of the registry here.
TEST_F(QuillUsbDeviceTest, NotificationGoesFirstAndWithTheLastCopy) {
  platform::io_iterator_t notification = 0;
  mUsb.matchingServices({}, notification);
  auto device = std::make_unique<QuillUsbDevice>();
  device->init(mUsb.attach(fakePrinter()), notification);
  auto copy = std::make_unique<QuillUsbDevice>(*device);
  mUsb.takeCalls();
  device.reset();
  EXPECT_EQ(mUsb.references(notification), 1);
  copy.reset();
  EXPECT_THAT(takeCallsOf({"release"}).at(0), "release iterator1");
  EXPECT_EQ(mUsb.references(notification), 0);
}

TEST_F(QuillUsbDeviceTest, NotificationOfAFailedInitStaysTheCallers) {
  platform::io_iterator_t notification = 0;
  mUsb.matchingServices({}, notification);
  const auto service = mUsb.attach(fakePrinter());
  for (const char* const call :
       {"createPlugIn printer", "createPlugIn printer/7", "createPlugIn printer/255"}) {
    mUsb.script(call, platform::kIOReturnNoResources);
    QuillUsbDevice device;
    EXPECT_EQ(thrown<IoKitException>([&] { device.init(service, notification); }),
              "Unable to create a plug-in. [return value = 0xe00002be]");
    EXPECT_EQ(mUsb.references(notification), 1);
  }
  mUsb.release(notification);
}

TEST_F(QuillUsbDeviceTest, AssignmentSharesTheDeviceAndDropsTheOneBefore) {
  const QuillUsbDevice device = make(fakePrinter("ONE"));
  QuillUsbDevice assigned = make(fakePrinter("TWO"));
  const auto dropped = mService;
  assigned = device;
  EXPECT_EQ(&assigned.getSerialNum(), &device.getSerialNum());
  EXPECT_EQ(mUsb.references(dropped), 0);
}

TEST_F(QuillUsbDeviceTest, SelfAssignmentKeepsTheDevice) {
  QuillUsbDevice device = make();
  const QuillUsbDevice& itself = device;
  device = itself;
  EXPECT_EQ(device.getSerialNum(), "VX0042");
  EXPECT_EQ(mUsb.references(mService), 1);
}

TEST_F(QuillUsbDeviceTest, NewInitLeavesTheOtherCopiesOnTheOldDevice) {
  QuillUsbDevice device = make(fakePrinter("OLD"));
  const QuillUsbDevice copy = device;
  device.init(mUsb.attach(fakePrinter("NEW")), 0);
  EXPECT_EQ(device.getSerialNum(), "NEW");
  EXPECT_EQ(copy.getSerialNum(), "OLD");
  EXPECT_FALSE(copy == device);
}

TEST_F(QuillUsbDeviceTest, NewInitOfTheOnlyHandleReleasesTheOldDevice) {
  QuillUsbDevice device = make(fakePrinter("OLD"));
  const auto old = mService;
  device.init(mUsb.attach(fakePrinter("NEW")), 0);
  EXPECT_EQ(mUsb.references(old), 0);
}

TEST_F(QuillUsbDeviceTest, FailedInitKeepsNothingAndChangesNothing) {
  QuillUsbDevice device = make(fakePrinter("OLD"));
  for (const char* const call :
       {"createPlugIn printer", "createPlugIn printer/7", "createPlugIn printer/255"}) {
    const auto service = mUsb.attach(fakePrinter("NEW"));
    mUsb.script(call, platform::kIOReturnNoResources);
    EXPECT_EQ(thrown<IoKitException>([&] { device.init(service, 0); }),
              "Unable to create a plug-in. [return value = 0xe00002be]");
    EXPECT_EQ(mUsb.references(service), 0);
    EXPECT_EQ(device.getSerialNum(), "OLD");
  }
}

TEST_F(QuillUsbDeviceTest, ChannelsAreTheInterfacesOfTheirClasses) {
  QuillUsbDevice device = make();
  char byte = 'x';
  device.aclWrite(&byte, 1, mNotifier, 200);
  device.ewsWrite(&byte, 1, mNotifier, 300);
  device.aclRead(&byte, 1, mNotifier, 20000);
  device.ewsRead(&byte, 1, mNotifier, 30000);
  std::vector<std::string> transfers;
  for (const auto& transfer : mUsb.transfers()) {
    transfers.push_back((transfer->isRead ? "read from " : "write to ") + transfer->interface +
                        " within " + std::to_string(transfer->completionTimeout));
  }
  EXPECT_THAT(
      transfers,
      ElementsAre("write to printer/7 within 200", "write to printer/255 within 300",
                  "read from printer/7 within 20000", "read from printer/255 within 30000"));
}

TEST_F(QuillUsbDeviceTest, InterfacesCloseBeforeTheDeviceGoes) {
  auto device = std::make_unique<QuillUsbDevice>(make());
  device->aclWrite("x", 1, mNotifier, 200);
  device->ewsWrite("x", 1, mNotifier, 200);
  mUsb.takeCalls();
  device.reset();
  EXPECT_THAT(takeCallsOf({"close", "releaseObject"}),
              ElementsAre("close printer/255", "releaseObject printer/255", "close printer/7",
                          "releaseObject printer/7", "releaseObject printer"));
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(QuillUsbDeviceTest, MissingChannelsAreAcceptedUntilTheyAreUsed) {
  QuillUsbDevice device = make(FakeUsbDevice().with("USB Serial Number", "S"));
  EXPECT_EQ(device.getSerialNum(), "S");
  char byte = 0;
  const std::string noAcl = "The device has no ACL channel. [return value = 0xe00002f0]";
  const std::string noEws = "The device has no EWS channel. [return value = 0xe00002f0]";
  const auto text = [](auto action) { return thrown<IoKitException>(action); };
  EXPECT_EQ(text([&] { device.aclRead(&byte, 1, mNotifier, 1); }), noAcl);
  EXPECT_EQ(text([&] { device.aclWrite(&byte, 1, mNotifier, 1); }), noAcl);
  EXPECT_EQ(text([&] { device.ewsRead(&byte, 1, mNotifier, 1); }), noEws);
  EXPECT_EQ(text([&] { device.ewsWrite(&byte, 1, mNotifier, 1); }), noEws);
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(QuillUsbDeviceTest, ReEnumeratesTheDevice) {
  make().reEnumerate();
  EXPECT_THAT(takeCallsOf({"reEnumerate"}), SizeIs(1));
}

TEST_F(QuillUsbDeviceTest, PrintsTheDeviceAlone) {
  std::ostringstream out;
  FakeUsbDevice description;
  description.with("USB Serial Number", "S");
  description.interfaces = {{7, "Printer", {}, {}}, {255, "Web", {}, {}}};
  make(description).print(out, false);
  EXPECT_EQ(out.str(),
            "  IORegistry property dictionary for device:\n    USB Serial Number -> S\n");
}

TEST_F(QuillUsbDeviceTest, PrintsTheDeviceThenTheAclThenTheEwsInterface) {
  FakeUsbDevice description;
  description.interfaces = {{255, "Web", {}, {}}, {7, "Printer", {}, {}}};
  std::ostringstream out;
  make(description).print(out, true);
  EXPECT_EQ(out.str(),
            "  IORegistry property dictionary for device:\n"
            "  IORegistry property dictionary for interface Printer:\n"
            "  IORegistry property dictionary for interface Web:\n");
}

TEST_F(QuillUsbDeviceTest, PrintsNoMissingInterfaces) {
  std::ostringstream out;
  make(FakeUsbDevice{}).print(out, true);
  EXPECT_EQ(out.str(), "  IORegistry property dictionary for device:\n");
}

}  // namespace
