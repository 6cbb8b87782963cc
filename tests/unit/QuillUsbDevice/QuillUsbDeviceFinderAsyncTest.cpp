#include <functional>
#include <stdexcept>

#include "QuillUsbDeviceFinderAsync.h"
#include "UsbTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class RecordingAsyncFinder : public QuillUsbDeviceFinderAsync {
 public:
  using QuillUsbDeviceFinderAsync::QuillUsbDeviceFinderAsync;

  void notifyDeviceFound(QuillUsbDevice& device) override {
    mTold.push_back("found " + device.getSerialNum());
    mFound.push_back(device);
    if (mThrows) throw std::runtime_error("enough");
  }

  void notifyDeviceRemoved(QuillUsbDevice& device) override {
    mTold.push_back("removed " + device.getSerialNum());
    mRemoved.push_back(device);
    if (mTakesOver) mTakesOver(device);
    if (mThrows) throw std::runtime_error("enough");
  }

  std::vector<std::string> mTold;
  std::vector<QuillUsbDevice> mFound;
  std::vector<QuillUsbDevice> mRemoved;
  bool mThrows = false;
  std::function<void(QuillUsbDevice&)> mTakesOver;
};

class QuillUsbDeviceFinderAsyncTest : public UsbTest {
 protected:
  RecordingAsyncFinder& make(const std::string& serialNumber = "") {
    mFinder = std::make_unique<RecordingAsyncFinder>(0x3A71, 0x0C28, serialNumber);
    return *mFinder;
  }

  RecordingAsyncFinder& start(const std::string& serialNumber = "") {
    make(serialNumber).setupAsyncNotifier(nullptr);
    mFinder->startAsyncNotifier();
    return *mFinder;
  }

  platform::io_service_t attach(const std::string& serialNumber) {
    const auto service = mUsb.attach(labelled(serialNumber));
    mLoop.runAllLater();
    return service;
  }

  void detach(platform::io_service_t service) {
    mUsb.detach(service);
    mLoop.runAllLater();
  }

  void TearDown() override { mFinder.reset(); }

  std::unique_ptr<RecordingAsyncFinder> mFinder;
};

TEST_F(QuillUsbDeviceFinderAsyncTest, SetupRegistersOnTheCurrentRunLoop) {
  make().setupAsyncNotifier(nullptr);
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre("createNotificationPort", "port addTo", "serviceMatching IOUSBDevice",
                          "addMatchingNotification IOServiceFirstMatch IOUSBDevice "
                          "idVendor=14961:2 idProduct=3112:4"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, SetupTakesAnotherRunLoop) {
  FakeRunLoop other;
  make().setupAsyncNotifier(&other);
  mFinder->startAsyncNotifier();
  attach("one");
  EXPECT_THAT(mFinder->mTold, IsEmpty());
  other.runAllLater();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, SecondSetupDoesNothing) {
  start();
  mUsb.takeCalls();
  mFinder->setupAsyncNotifier(nullptr);
  EXPECT_THAT(mUsb.takeCalls(), IsEmpty());
}

TEST_F(QuillUsbDeviceFinderAsyncTest, NoRunLoop) {
  make();
  const LogRecorder withoutLoop({.usb = &mUsb});
  EXPECT_EQ(thrown<std::runtime_error>([&] { mFinder->setupAsyncNotifier(nullptr); }),
            "Failed to get current run loop.");
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre("createNotificationPort"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, FailedRegistrationIsThrown) {
  make();
  mUsb.script("addMatchingNotification", platform::kIOReturnNoResources);
  EXPECT_EQ(thrown<IoKitException>([&] { mFinder->setupAsyncNotifier(nullptr); }),
            "IOServiceAddMatchingNotification failed. [return value = 0xe00002be]");
  mFinder->startAsyncNotifier();
  mFinder.reset();
  EXPECT_THAT(mUsb.takeCalls(), Contains("destroy port"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, NoMatchingDictionary) {
  make();
  mUsb.script("serviceMatching", platform::kIOReturnError);
  EXPECT_EQ(thrown<std::runtime_error>([&] { mFinder->setupAsyncNotifier(nullptr); }),
            "Unable to obtain a matching dictionary.");
}

TEST_F(QuillUsbDeviceFinderAsyncTest, StartBeforeSetupIsMisuse) {
  make();
  EXPECT_EQ(thrown<std::logic_error>([&] { mFinder->startAsyncNotifier(); }),
            "A notifier has not been added to the run loop.");
}

TEST_F(QuillUsbDeviceFinderAsyncTest, ReportsPresentDevicesWithinTheStart) {
  mUsb.attach(labelled("one"));
  mUsb.attach(labelled("two"));
  EXPECT_THAT(start().mTold, ElementsAre("found one", "found two"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, ReportsNothingBeforeTheStart) {
  make().setupAsyncNotifier(nullptr);
  attach("one");
  EXPECT_THAT(mFinder->mTold, IsEmpty());
  mFinder->startAsyncNotifier();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, ReportsEachLaterArrival) {
  start();
  attach("one");
  attach("two");
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found two"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, TwoArrivalsMayComeAtOnce) {
  start();
  mUsb.attach(labelled("one"));
  attach("two");
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found two"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, ArrivalIsTakenInThisOrder) {
  start();
  mUsb.takeCalls();
  FakeUsbDevice bare;
  bare.label = "bare";
  mUsb.attach(bare);
  mLoop.runAllLater();
  EXPECT_THAT(
      takeCallsOf({"iteratorNext iterator1", "addInterestNotification", "retain", "release bare"}),
      ElementsAre("iteratorNext iterator1", "addInterestNotification bare IOGeneralInterest",
                  "retain bare", "release bare", "iteratorNext iterator1"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, OtherModelsAreNotReported) {
  start();
  FakeUsbDevice other = labelled("other");
  other.vendorId = 0x3A72;
  mUsb.attach(other);
  mLoop.runAllLater();
  EXPECT_THAT(mFinder->mTold, IsEmpty());
}

TEST_F(QuillUsbDeviceFinderAsyncTest, SerialNumberPicksOneDevice) {
  start("two");
  attach("one");
  const auto wanted = attach("two");
  EXPECT_THAT(mFinder->mTold, ElementsAre("found two"));
  ASSERT_EQ(mUsb.interests().size(), 1u);
  EXPECT_EQ(mUsb.interests().front().service, wanted);
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceReportedTwiceKeepsItsHandle) {
  start();
  const auto device = attach("one");
  mUsb.announceAgain(device);
  mLoop.runAllLater();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found one"));
  EXPECT_TRUE(mFinder->mFound.at(0) == mFinder->mFound.at(1));
  EXPECT_EQ(mUsb.interests().size(), 1u);

  detach(device);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found one", "removed one"));
}

// Known or not, a device is asked first whether it is the wanted one.
TEST_F(QuillUsbDeviceFinderAsyncTest, KnownDeviceIsMatchedAgainBeforeItIsReportedAgain) {
  start("one");
  const auto device = attach("one");
  mUsb.takeCalls();
  mUsb.announceAgain(device);
  mLoop.runAllLater();
  EXPECT_THAT(mUsb.takeCalls(), Contains("property one USB Serial Number"));
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, RemovalGivesTheHandleThatWasFound) {
  start();
  const auto device = attach("one");
  attach("two");
  detach(device);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "found two", "removed one"));
  EXPECT_TRUE(mFinder->mRemoved.at(0) == mFinder->mFound.at(0));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, RemovedDeviceIsReleasedWithItsNotification) {
  start();
  const auto device = attach("one");
  mFinder->mFound.clear();
  detach(device);
  EXPECT_EQ(mUsb.interests().size(), 1u);  // the receiver still has a copy
  EXPECT_NE(mUsb.references(device), 0);
  mFinder->mRemoved.clear();
  EXPECT_THAT(mUsb.interests(), IsEmpty());
  EXPECT_EQ(mUsb.references(device), 0);
}

// What the receiver does to the handle that it is given does not reach the one that is kept.
TEST_F(QuillUsbDeviceFinderAsyncTest, RemovalGivesACopyOfTheHandleThatIsKept) {
  start();
  const auto device = attach("one");
  mFinder->mFound.clear();
  mFinder->mTakesOver = [&](QuillUsbDevice& given) {
    mFinder->mRemoved.clear();
    given = QuillUsbDevice();
    EXPECT_NE(mUsb.references(device), 0);
  };
  detach(device);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one"));
  EXPECT_EQ(mUsb.references(device), 0);
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceThatComesBackIsANewOne) {
  start();
  detach(attach("one"));
  attach("one");
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one", "found one"));
  EXPECT_FALSE(mFinder->mFound.at(0) == mFinder->mFound.at(1));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceThatIsGoneBeforeItIsTakenComesAndGoes) {
  start();
  mUsb.detach(mUsb.attach(labelled("one")));
  mLoop.runAllLater();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, OnlyTheTerminationIsActedOn) {
  start();
  const auto device = attach("one");
  mUsb.sendMessage(device, 0xE0000020);
  mUsb.sendMessage(device, 0);
  mLoop.runAllLater();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, TerminationOfAnUnknownDeviceIsIgnored) {
  start();
  attach("one");
  const auto stranger = mUsb.attach(FakeUsbDevice{});
  const FakeUsbRegistry::Interest interest = mUsb.interests().front();
  interest.callback(interest.refCon, stranger, platform::kIOMessageServiceIsTerminated, nullptr);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, TerminationCountsOnce) {
  start();
  const auto device = attach("one");
  mUsb.sendMessage(device, platform::kIOMessageServiceIsTerminated);
  detach(device);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, CallbackWithoutContextIsMisuse) {
  start();
  const auto device = attach("one");
  const std::string text = "Device finder object has not been supplied as context.";
  const FakeUsbRegistry::Match match = mUsb.matches().front();
  EXPECT_EQ(thrown<std::logic_error>([&] { match.callback(nullptr, match.iterator); }), text);
  const FakeUsbRegistry::Interest interest = mUsb.interests().front();
  EXPECT_EQ(thrown<std::logic_error>([&] {
              interest.callback(nullptr, device, platform::kIOMessageServiceIsTerminated, nullptr);
            }),
            text);
  interest.callback(nullptr, device, 0, nullptr);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, FailedRemovalNotificationIsThrown) {
  start();
  mUsb.script("addInterestNotification", platform::kIOReturnNoResources);
  const auto device = mUsb.attach(labelled("one"));
  EXPECT_EQ(thrown<IoKitException>([&] { mLoop.runAllLater(); }),
            "IOServiceAddInterestNotification failed. [return value = 0xe00002be]");
  EXPECT_THAT(mFinder->mTold, IsEmpty());
  EXPECT_EQ(mUsb.references(device), 0);
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceThatCannotBeMadeIsThrownAndLeavesNoNotification) {
  start();
  mUsb.script("createPlugIn", platform::kIOReturnNoResources);
  mUsb.attach(labelled("one"));
  EXPECT_THAT(thrown<IoKitException>([&] { mLoop.runAllLater(); }),
              StartsWith("Unable to create a plug-in."));
  EXPECT_THAT(mFinder->mTold, IsEmpty());
  EXPECT_THAT(mUsb.interests(), IsEmpty());
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceIsKeptBeforeItIsReported) {
  start().mThrows = true;
  const auto device = mUsb.attach(labelled("one"));
  EXPECT_EQ(thrown<std::runtime_error>([&] { mLoop.runAllLater(); }), "enough");
  mFinder->mThrows = false;
  detach(device);
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, DeviceIsDroppedAfterItsRemovalIsReported) {
  start();
  const auto device = attach("one");
  mFinder->mThrows = true;
  mUsb.detach(device);
  EXPECT_EQ(thrown<std::runtime_error>([&] { mLoop.runAllLater(); }), "enough");
  mFinder->mThrows = false;
  mUsb.sendMessage(device, platform::kIOMessageServiceIsTerminated);
  mUsb.sendMessage(device, platform::kIOMessageServiceIsTerminated);
  mLoop.runAllLater();
  EXPECT_THAT(mFinder->mTold, ElementsAre("found one", "removed one", "removed one"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, EndsInThisOrder) {
  start();
  attach("one");
  mFinder->mFound.clear();
  mUsb.takeCalls();
  mFinder.reset();
  EXPECT_THAT(takeCallsOf({"destroy port", "release iterator1", "release notification1"}),
              ElementsAre("destroy port", "release iterator1", "release notification1"));
}

TEST_F(QuillUsbDeviceFinderAsyncTest, NothingComesAfterItsEnd) {
  start();
  const auto device = attach("one");
  mUsb.attach(labelled("two"));
  mUsb.detach(device);
  mFinder.reset();
  mLoop.runAllLater();
}

TEST_F(QuillUsbDeviceFinderAsyncTest, UnusedFinderAsksNothing) {
  make();
  mFinder.reset();
  EXPECT_THAT(mUsb.takeCalls(), IsEmpty());
}

}  // namespace
