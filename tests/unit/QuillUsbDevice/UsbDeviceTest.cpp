#include <sstream>

#include "UsbDevice.h"
#include "UsbTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kFindPrinterClass =
    "createInterfaceIterator printer class=7 subclass=65535 protocol=65535 alternate=65535";

class UsbDeviceTest : public UsbTest {
 protected:
  UsbDevice& make(const FakeUsbDevice& device = fakePrinter()) {
    mService = mUsb.attach(device);
    mDevice = std::make_unique<UsbDevice>(mService);
    mUsb.takeCalls();
    return *mDevice;
  }

  std::string makeFails() {
    return thrown<IoKitException>([&] { make(); });
  }

  void TearDown() override { mDevice.reset(); }

  platform::io_service_t mService = 0;
  std::unique_ptr<UsbDevice> mDevice;
};

TEST_F(UsbDeviceTest, IsMadeWithoutBeingOpened) {
  mService = mUsb.attach(fakePrinter());
  mDevice = std::make_unique<UsbDevice>(mService);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre("createPlugIn printer device", "queryDevice printer",
                                            "releasePlugIn printer", "retain printer"));
  EXPECT_EQ(mUsb.references(mService), 1);
}

TEST_F(UsbDeviceTest, IsReleasedWithoutBeingClosed) {
  make();
  mDevice.reset();
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre("releaseObject printer", "release printer"));
}

TEST_F(UsbDeviceTest, NoPlugIn) {
  mUsb.script("createPlugIn", platform::kIOReturnNoMemory);
  EXPECT_EQ(makeFails(), "Unable to create a plug-in. [return value = 0xe00002bd]");
  EXPECT_EQ(mUsb.references(mService), 0);
}

TEST_F(UsbDeviceTest, SuccessWithoutPlugInIsAFailure) {
  mUsb.script("createPlugIn", platform::kIOReturnSuccess);
  EXPECT_EQ(makeFails(), "Unable to create a plug-in. [return value = 0x0]");
}

TEST_F(UsbDeviceTest, FailureWithAPlugInReleasesIt) {
  mUsb.script("createPlugIn", platform::kIOReturnNoMemory, true);
  EXPECT_EQ(makeFails(), "Unable to create a plug-in. [return value = 0xe00002bd]");
  EXPECT_EQ(mUsb.plugIns(), 0);
}

TEST_F(UsbDeviceTest, FailedQueryReleasesThePlugIn) {
  mUsb.script("queryDevice", platform::kIOReturnUnsupported);
  EXPECT_EQ(makeFails(),
            "Couldn\u2019t create a device interface for the device."
            " [return value = 0xe00002c7]");
  EXPECT_EQ(mUsb.plugIns(), 0);
}

TEST_F(UsbDeviceTest, NegativeQueryResultWithAnObjectReleasesBoth) {
  mUsb.script("queryDevice", platform::kIOReturnError, true);
  EXPECT_EQ(makeFails(),
            "Couldn\u2019t create a device interface for the device."
            " [return value = 0xe00002bc]");
  EXPECT_EQ(mUsb.plugIns(), 0);
  EXPECT_THAT(mUsb.takeCalls(), Contains("releaseObject printer"));
}

TEST_F(UsbDeviceTest, SuccessfulQueryWithoutObjectIsAFailure) {
  mUsb.script("queryDevice", platform::kIOReturnSuccess);
  EXPECT_EQ(makeFails(),
            "Couldn\u2019t create a device interface for the device. [return value = 0x0]");
}

TEST_F(UsbDeviceTest, PositiveQueryResultIsASuccess) {
  mUsb.script("queryDevice", 1, true);
  make();
}

TEST_F(UsbDeviceTest, GivesAnInterfaceByItsClass) {
  UsbDevice& device = make();
  const auto entry = mUsb.interfaceOf(mService);
  {
    const std::unique_ptr<UsbInterface> interface = device.getInterface(7);
    ASSERT_NE(interface, nullptr);
    EXPECT_THAT(takeCallsOf({"createInterfaceIterator", "iteratorNext", "retain", "release "}),
                ElementsAre(kFindPrinterClass, "iteratorNext iterator1", "release iterator1",
                            "retain printer/7", "release printer/7"));
    EXPECT_EQ(mUsb.references(entry), 1);
  }
  EXPECT_EQ(mUsb.references(entry), 0);
}

TEST_F(UsbDeviceTest, OnlyTheFirstInterfaceOfAClassCounts) {
  FakeUsbDevice twice;
  twice.interfaces = {{255, "Web", {}, {}}, {7, "First", {}, {}}, {7, "Second", {}, {}}};
  const std::unique_ptr<UsbInterface> interface = make(twice).getInterface(7);
  std::ostringstream out;
  interface->print(out);
  EXPECT_EQ(out.str(), "  IORegistry property dictionary for interface First:\n");
  EXPECT_THAT(mUsb.takeCalls(), Not(Contains(HasSubstr("printer/7#2"))));
}

TEST_F(UsbDeviceTest, MissingInterfaceIsNoFailure) { EXPECT_EQ(make().getInterface(3), nullptr); }

TEST_F(UsbDeviceTest, InterfaceClassIsCutTo16Bits) {
  EXPECT_NE(make().getInterface(0x70007), nullptr);
  EXPECT_THAT(mUsb.takeCalls(), Contains(kFindPrinterClass));
}

TEST_F(UsbDeviceTest, NoIterator) {
  mUsb.script("createInterfaceIterator", platform::kIOReturnNoDevice);
  EXPECT_EQ(thrown<IoKitException>([&] { make().getInterface(7); }),
            "Failed to get interface iterator for device. [return value = 0xe00002c0]");
  mUsb.script("createInterfaceIterator", platform::kIOReturnSuccess);
  EXPECT_EQ(thrown<IoKitException>([&] { mDevice->getInterface(7); }),
            "Failed to get interface iterator for device. [return value = 0x0]");
}

TEST_F(UsbDeviceTest, FailureWithAnIteratorReleasesIt) {
  mUsb.script("createInterfaceIterator", platform::kIOReturnNoDevice, true);
  EXPECT_EQ(thrown<IoKitException>([&] { make().getInterface(7); }),
            "Failed to get interface iterator for device. [return value = 0xe00002c0]");
}

TEST_F(UsbDeviceTest, InterfaceThatCannotBeMadeLeavesNothingBehind) {
  mUsb.script("createPlugIn printer/7", platform::kIOReturnNoResources);
  EXPECT_EQ(thrown<IoKitException>([&] { make().getInterface(7); }),
            "Unable to create a plug-in. [return value = 0xe00002be]");
  EXPECT_EQ(mUsb.references(mUsb.interfaceOf(mService)), 0);
}

TEST_F(UsbDeviceTest, ReEnumeratesAnOpenDevice) {
  make().reEnumerate();
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre("open printer", "reEnumerate printer", "close printer"));
}

TEST_F(UsbDeviceTest, DeviceThatAnotherProgramHasOpenIsNotReEnumerated) {
  mUsb.script("open", platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(thrown<IoKitException>([&] { make().reEnumerate(); }),
            "Failed to open device. [return value = 0xe00002c5]");
  EXPECT_FALSE(mUsb.isOpen(mService));
}

TEST_F(UsbDeviceTest, DeviceThatFailsToReEnumerateStaysOpen) {
  mUsb.script("reEnumerate", platform::kIOReturnNotResponding);
  EXPECT_EQ(thrown<IoKitException>([&] { make().reEnumerate(); }),
            "Failed to re-enumerate device. [return value = 0xe00002ed]");
  EXPECT_TRUE(mUsb.isOpen(mService));
  mUsb.takeCalls();
  mDevice.reset();
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre("releaseObject printer", "release printer"));
}

TEST_F(UsbDeviceTest, ResultOfTheCloseIsIgnored) {
  mUsb.script("close", platform::kIOReturnNoDevice);
  make().reEnumerate();
}

TEST_F(UsbDeviceTest, PrintsItsPropertiesWithoutAName) {
  std::ostringstream out;
  make(FakeUsbDevice().with("USB Product Name", "KX350T")).print(out);
  EXPECT_EQ(out.str(),
            "  IORegistry property dictionary for device:\n    USB Product Name -> KX350T\n");
}

}  // namespace
