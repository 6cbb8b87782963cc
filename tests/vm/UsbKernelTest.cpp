// What the registry makes of the kernel's ways, beyond what every registry promises.
#include <gmock/gmock.h>

#include <filesystem>

#include "AsOtherUser.h"
#include "OtherProgram.h"
#include "UsbHostTest.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"

namespace {

using platform::io_service_t;
using platform::kIOReturnSuccess;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

// The devices' nodes that this process has open.
std::size_t openNodes() {
  std::size_t count = 0;
  for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code none;
    const std::string file = std::filesystem::read_symlink(descriptor, none).string();
    count += file.starts_with("/dev/bus/usb/") ? 1 : 0;
  }
  return count;
}

class UsbKernelTest : public UsbHostTest {
 protected:
  UsbKernelTest() {
    EXPECT_TRUE(mLoop.runUntil([] { return kernelDriver() == "usblp"; }));
  }

  std::unique_ptr<platform::UsbInterfaceObject> makeAcl() {
    return mHost.interfaceObject(mDevice, UsbHost::kPrinterClass);
  }

  std::unique_ptr<platform::UsbInterfaceObject> openAcl() {
    return mHost.openInterface(mDevice, UsbHost::kPrinterClass);
  }

  UsbPrinterProcess mPrinter;
  io_service_t mDevice = mHost.awaitPrinter();
};

TEST_F(UsbKernelTest, TheKernelDriverGivesWayAndComesBack) {
  auto acl = makeAcl();
  ASSERT_EQ(acl->open(), kIOReturnSuccess);
  EXPECT_EQ(kernelDriver(), "usbfs");
  EXPECT_EQ(acl->close(), kIOReturnSuccess);
  EXPECT_EQ(kernelDriver(), "usblp");
  ASSERT_EQ(acl->open(), kIOReturnSuccess);
  EXPECT_EQ(kernelDriver(), "usbfs");
  acl.reset();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbKernelTest, WithoutARightListingWorksAndOpeningIsNotPermitted) {
  const AsOtherUser nobody;
  EXPECT_EQ(mHost.text(mDevice, "USB Serial Number"), "VP000001");
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnNotPermitted);
  EXPECT_EQ(mHost.deviceObject(mDevice)->open(), platform::kIOReturnNotPermitted);
}

TEST_F(UsbKernelTest, AnInterfaceOfAnotherProgramIsExclusive) {
  const OtherProgram other("VP000001", 1);
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(mHost.interfaceObject(mDevice, UsbHost::kVendorClass)->open(), kIOReturnSuccess);
}

std::string inUseBy(const std::string& holder) {
  return "The printer's interface is in use by " + holder + ".";
}

std::string inUseBy(const std::string& name, const OtherProcess& process) {
  return inUseBy(name + " (process " + std::to_string(process.number()) + ")");
}

TEST_F(UsbKernelTest, WhoHasAnInterfaceIsLogged) {
  const OtherProcess other("ipp-usb", "VP000001", 1);
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, ElementsAre(inUseBy("ipp-usb", other)));
  EXPECT_EQ(mHost.interfaceObject(mDevice, UsbHost::kVendorClass)->open(), kIOReturnSuccess);
  EXPECT_THAT(mErrors, testing::SizeIs(1));
}

// The kernel does not tell which of them has it.
TEST_F(UsbKernelTest, WhoHasTheDeviceOpenIsLogged) {
  const OtherProcess looking("looking", "VP000001");
  const OtherProcess other("cupsd", "VP000001", 1);
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, UnorderedElementsAre(inUseBy("looking", looking), inUseBy("cupsd", other)));
}

TEST_F(UsbKernelTest, WhatAnotherUserRunsIsLoggedWithoutAName) {
  const OtherProcess other("ipp-usb", "VP000001", 1);
  const auto ews = mHost.openInterface(mDevice, UsbHost::kVendorClass);
  const AsOtherUser nobody;
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, ElementsAre(inUseBy("another program")));
}

TEST_F(UsbKernelTest, WhatThisProgramHasIsNotLogged) {
  const auto acl = openAcl();
  EXPECT_EQ(makeAcl()->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, testing::IsEmpty());
}

TEST_F(UsbKernelTest, APacketThatDoesNotFitIsAnOverrun) {
  const auto acl = openAcl();
  mHost.write(*acl, kStatusOff);
  mHost.write(*acl, kIdRequest);
  std::string bytes;
  EXPECT_EQ(mHost.read(*acl, bytes, 8).result, platform::kIOReturnOverrun);
}

TEST_F(UsbKernelTest, ATransferAboveTheKernelsLimitIsOutOfMemory) {
  const auto acl = openAcl();
  EXPECT_EQ(mHost.write(*acl, std::string((16 << 20) + 1, 'x')),
            (TransferEnd{platform::kIOReturnNoMemory, 0}));
  EXPECT_EQ(mHost.write(*acl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
}

TEST_F(UsbKernelTest, TheDeviceIsDescribedWithoutATimerRunning) {
  platform::PropertyDictionary properties;
  EXPECT_EQ(mRegistry->properties(mDevice, properties), kIOReturnSuccess);
  EXPECT_THAT(properties.entries, testing::SizeIs(17));
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(mLoop.timers(), 0u);
}

TEST_F(UsbKernelTest, AllThatIsOpenOfADeviceSharesOneNode) {
  auto acl = openAcl();
  auto ews = mHost.openInterface(mDevice, UsbHost::kVendorClass);
  auto device = mHost.deviceObject(mDevice);
  EXPECT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(openNodes(), 1u);
  acl.reset();
  device->close();
  EXPECT_EQ(openNodes(), 1u);
  EXPECT_EQ(mHost.write(*ews, "x"), (TransferEnd{kIOReturnSuccess, 1}));
  ews.reset();
  EXPECT_EQ(openNodes(), 0u);
}

TEST_F(UsbKernelTest, APrinterThatIsUnpluggedCostsNoNode) {
  const auto acl = openAcl();
  const auto device = mHost.deviceObject(mDevice);
  EXPECT_EQ(device->open(), kIOReturnSuccess);
  EXPECT_EQ(openNodes(), 1u);
  mPrinter.stop();
  ASSERT_TRUE(mHost.awaitGone());
  EXPECT_EQ(openNodes(), 0u);
  EXPECT_EQ(device->reEnumerate(), platform::kIOReturnNoDevice);
  EXPECT_EQ(device->close(), kIOReturnSuccess);
}

TEST_F(UsbKernelTest, ADeviceThatLeavesBeforeItIsConfiguredNeverComes) {
  {
    const AuthorizingNobody nobody;
    UsbPrinterProcess other({"--serial", "OTHER"});
    ASSERT_TRUE(mLoop.runUntil([] { return !usbDevice("OTHER").empty(); }));
    // It is looked at again and again.
    ASSERT_TRUE(mLoop.runUntil([this] { return mLoop.timers() == 1u; }));
  }
  mLoop.runFor(std::chrono::seconds(2));
  EXPECT_THAT(mHost.attached(), testing::SizeIs(1));
  EXPECT_EQ(mLoop.timers(), 0u);
}

}  // namespace
