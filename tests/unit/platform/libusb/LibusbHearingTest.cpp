// What the registry says when libusb cannot tell it of arrivals or of the ends of transfers.
#include <gtest/gtest.h>
#include <signal.h>

#include "FakeLibusb.h"
#include "FakeRunLoop.h"
#include "platform/libusb/LibusbRegistry.h"

namespace {

class LibusbHearingTest : public testing::Test {
 protected:
  // The result of asking for the arrivals of devices.
  platform::IOReturn watch() {
    const auto registry = platform::makeLibusbRegistry(mLoop);
    const auto port = registry->createNotificationPort();
    platform::io_iterator_t iterator = 0;
    const platform::IOReturn result = registry->addMatchingNotification(
        *port, "IOServiceFirstMatch", *registry->serviceMatching("IOUSBDevice"),
        [](void*, platform::io_iterator_t) {}, nullptr, iterator);
    EXPECT_EQ(iterator != 0, result == platform::kIOReturnSuccess);
    return result;
  }

  FakeRunLoop mLoop;
  FakeLibusb mLibusb;
};

TEST_F(LibusbHearingTest, ArrivalsAreToldWhereLibusbHearsOfThem) {
  EXPECT_EQ(watch(), platform::kIOReturnSuccess);
}

TEST_F(LibusbHearingTest, AHostWithoutUsbHasNoArrivals) {
  mLibusb.initResult = LIBUSB_ERROR_OTHER;
  EXPECT_EQ(watch(), platform::kIOReturnSuccess);
}

TEST_F(LibusbHearingTest, WithoutHotPlugThereIsNothingToHear) {
  mLibusb.hotplugResult = LIBUSB_ERROR_NOT_SUPPORTED;
  EXPECT_EQ(watch(), platform::kIOReturnUnsupported);
}

TEST_F(LibusbHearingTest, WithoutDescriptorsThereIsNothingToHear) {
  mLibusb.hasPollfds = false;
  EXPECT_EQ(watch(), platform::kIOReturnNoResources);
}

TEST_F(LibusbHearingTest, ThreadsOfLibusbTakeNoSignals) {
  watch();
  EXPECT_FALSE(mLibusb.threadsTakeSignals);
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGINT), 0);
}

}  // namespace
