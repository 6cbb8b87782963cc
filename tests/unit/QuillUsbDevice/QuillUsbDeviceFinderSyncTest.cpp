#include <stdexcept>

#include "QuillUsbDeviceFinderSync.h"
#include "UsbTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class RecordingSyncFinder : public QuillUsbDeviceFinderSync {
 public:
  using QuillUsbDeviceFinderSync::QuillUsbDeviceFinderSync;

  void notifyDeviceFound(QuillUsbDevice& device) override {
    mFound.push_back(device.getSerialNum());
    if (mThrows) throw std::runtime_error("enough");
  }

  std::vector<std::string> mFound;
  bool mThrows = false;
};

class QuillUsbDeviceFinderSyncTest : public UsbTest {
 protected:
  RecordingSyncFinder mFinder{0x3A71, 0x0C28};
};

TEST_F(QuillUsbDeviceFinderSyncTest, ReportsEachAttachedDevice) {
  mUsb.attach(labelled("one"));
  mUsb.attach(labelled("two"));
  mFinder.findAttached();
  EXPECT_THAT(mFinder.mFound, ElementsAre("one", "two"));
}

TEST_F(QuillUsbDeviceFinderSyncTest, AsksForVendorAndProduct) {
  mFinder.findAttached();
  EXPECT_THAT(mUsb.takeCalls(),
              Contains("matchingServices IOUSBDevice idVendor=14961:2 idProduct=3112:4"));
}

TEST_F(QuillUsbDeviceFinderSyncTest, OtherDevicesAndThoseThatAreGoneAreNotReported) {
  FakeUsbDevice other = labelled("other");
  other.productId = 0x0C29;
  mUsb.attach(other);
  mUsb.detach(mUsb.attach(labelled("gone")));
  mFinder.findAttached();
  EXPECT_THAT(mFinder.mFound, IsEmpty());
}

TEST_F(QuillUsbDeviceFinderSyncTest, VendorAboveTheSignedRangeIsFound) {
  FakeUsbDevice other = labelled("high");
  other.vendorId = 0xFFFE;
  mUsb.attach(other);
  RecordingSyncFinder finder(0xFFFE, 0x0C28);
  finder.findAttached();
  EXPECT_THAT(finder.mFound, ElementsAre("high"));
}

TEST_F(QuillUsbDeviceFinderSyncTest, SerialNumberPicksOneDevice) {
  mUsb.attach(labelled("one"));
  mUsb.attach(labelled("two"));
  RecordingSyncFinder finder(0x3A71, 0x0C28, "two");
  finder.findAttached();
  EXPECT_THAT(finder.mFound, ElementsAre("two"));
  EXPECT_THAT(mUsb.takeCalls(), Not(Contains("createPlugIn one device")));
}

TEST_F(QuillUsbDeviceFinderSyncTest, AsksForNoRemovalNotification) {
  mUsb.attach(labelled("one"));
  mFinder.findAttached();
  EXPECT_THAT(mUsb.interests(), IsEmpty());
}

TEST_F(QuillUsbDeviceFinderSyncTest, FailedSearchIsThrown) {
  mUsb.script("matchingServices", platform::kIOReturnNoMemory);
  EXPECT_EQ(thrown<IoKitException>([&] { mFinder.findAttached(); }),
            "IOServiceGetMatchingServices failed. [return value = 0xe00002bd]");
}

TEST_F(QuillUsbDeviceFinderSyncTest, DeviceThatCannotBeMadeEndsTheSearch) {
  mUsb.attach(labelled("one"));
  mUsb.attach(labelled("two"));
  mUsb.script("createPlugIn one", platform::kIOReturnNoResources);
  EXPECT_THAT(thrown<IoKitException>([&] { mFinder.findAttached(); }),
              StartsWith("Unable to create a plug-in."));
  EXPECT_THAT(mFinder.mFound, IsEmpty());
}

TEST_F(QuillUsbDeviceFinderSyncTest, WhatTheReceiverThrowsLeavesNothingBehind) {
  mUsb.attach(labelled("one"));
  mFinder.mThrows = true;
  EXPECT_EQ(thrown<std::runtime_error>([&] { mFinder.findAttached(); }), "enough");
}

}  // namespace
