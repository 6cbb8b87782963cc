// The kernel's driver has a printer's interface again when a download has ended, though the program
// keeps the interface open.
#include <gmock/gmock.h>
#include <signal.h>

#include <cstdlib>

#include "OtherProgram.h"
#include "UsbHostTest.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"

namespace {

using platform::kIOReturnSuccess;
using testing::ElementsAre;
using testing::IsEmpty;

// An administrator who takes the kernel's driver away for a while.
class WithoutDriver {
 public:
  WithoutDriver() { EXPECT_EQ(std::system("modprobe -r usblp"), 0); }
  ~WithoutDriver() { EXPECT_EQ(std::system("modprobe usblp"), 0); }
  WithoutDriver(const WithoutDriver&) = delete;
  WithoutDriver& operator=(const WithoutDriver&) = delete;
};

class UsbReturnTest : public UsbHostTest {
 protected:
  UsbReturnTest() { awaitDriver("usblp"); }

  void openAcl() {
    mAcl = mHost.openInterface(mDevice, UsbHost::kPrinterClass);
    EXPECT_EQ(kernelDriver(), "usbfs");
  }

  void endDownload() {
    mRegistry->downloadBegan({}, {});
    mRegistry->downloadEnded(platform::DownloadOutcome::Failed);
  }

  void awaitDriver(const std::string& driver) {
    EXPECT_TRUE(mLoop.runUntil([&] { return kernelDriver() == driver; })) << driver;
  }

  // Longer than the registry waits for a driver.
  void settle() { mLoop.runFor(std::chrono::milliseconds(1500)); }

  UsbPrinterProcess mPrinter;
  platform::io_service_t mDevice = mHost.awaitPrinter();
  std::unique_ptr<platform::UsbInterfaceObject> mAcl;
};

TEST_F(UsbReturnTest, TheDriverHasThePrinterAfterADownload) {
  openAcl();
  endDownload();
  awaitDriver("usblp");
  settle();
  EXPECT_EQ(kernelDriver(), "usblp");
  EXPECT_THAT(mErrors, IsEmpty());
  EXPECT_EQ(mLoop.timers(), 0u);
}

TEST_F(UsbReturnTest, TheNextDownloadTakesItAgain) {
  openAcl();
  for (int i = 0; i < 3; ++i) {
    endDownload();
    awaitDriver("usblp");
    EXPECT_EQ(mAcl->clearPipeStallBothEnds(1), kIOReturnSuccess);
    EXPECT_EQ(kernelDriver(), "usbfs");
  }
  EXPECT_EQ(mHost.write(*mAcl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
  mAcl.reset();
  EXPECT_EQ(kernelDriver(), "usblp");
  EXPECT_THAT(mErrors, IsEmpty());
}

TEST_F(UsbReturnTest, ATransferAloneTakesItAgain) {
  openAcl();
  endDownload();
  awaitDriver("usblp");
  EXPECT_EQ(mHost.write(*mAcl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
  EXPECT_EQ(kernelDriver(), "usbfs");
}

TEST_F(UsbReturnTest, WhatAnotherProgramTookMeanwhileIsExclusive) {
  openAcl();
  endDownload();
  awaitDriver("usblp");
  const OtherProcess other("cupsd", "VP000001", 1);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(1), platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, ElementsAre("The printer's interface is in use by cupsd (process " +
                                   std::to_string(other.number()) + ")."));
  mAcl.reset();
  EXPECT_EQ(kernelDriver(), "usbfs");
}

TEST_F(UsbReturnTest, ItStaysOpenForOneObjectAlone) {
  openAcl();
  endDownload();
  awaitDriver("usblp");
  EXPECT_EQ(mHost.interfaceObject(mDevice, UsbHost::kPrinterClass)->open(),
            platform::kIOReturnExclusiveAccess);
  EXPECT_THAT(mErrors, IsEmpty());
}

TEST_F(UsbReturnTest, ATransferUnderWayKeepsIt) {
  openAcl();
  std::string answer(512, '\0');
  TransferRecorder reading;
  mHost.startRead(*mAcl, answer, reading, 0);
  endDownload();
  mLoop.runFor(std::chrono::milliseconds(100));
  EXPECT_EQ(kernelDriver(), "usbfs");
  EXPECT_THAT(reading.ends(), IsEmpty());
}

TEST_F(UsbReturnTest, ADownloadThatFollowsAtOnceKeepsIt) {
  openAcl();
  endDownload();
  mRegistry->downloadBegan({}, {});
  mLoop.runFor(std::chrono::milliseconds(100));
  EXPECT_EQ(kernelDriver(), "usbfs");
}

TEST_F(UsbReturnTest, ADriverThatDoesNotComeBackIsLogged) {
  openAcl();
  const WithoutDriver removed;
  endDownload();
  EXPECT_TRUE(mLoop.runUntil([this] { return !mErrors.empty(); }));
  settle();
  EXPECT_THAT(mErrors,
              ElementsAre("The kernel driver usblp does not have the printer's interface back. "
                          "Unplug the printer from USB and plug it in again to print."));
}

TEST_F(UsbReturnTest, ADriverThatWasNotThereIsNotMissed) {
  const WithoutDriver removed;
  openAcl();
  endDownload();
  settle();
  EXPECT_EQ(kernelDriver(), "");
  EXPECT_THAT(mErrors, IsEmpty());
}

TEST_F(UsbReturnTest, APrinterThatLeavesIsNoError) {
  openAcl();
  const WithoutDriver removed;
  endDownload();
  mLoop.runFor(std::chrono::milliseconds(100));
  EXPECT_EQ(kernelDriver(), "");
  mPrinter.stop();
  settle();
  EXPECT_THAT(mErrors, IsEmpty());
}

// The driver waits five seconds for the printer to say who it is.
TEST_F(UsbReturnTest, APrinterThatHangsHoldsNothingUp) {
  openAcl();
  mPrinter.signal(SIGSTOP);
  const auto start = std::chrono::steady_clock::now();
  endDownload();
  bool isLater = false;
  mLoop.callLater([&] { isLater = true; });
  mLoop.runUntil([&] { return isLater; });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  mPrinter.signal(SIGCONT);
  awaitDriver("usblp");
}

}  // namespace
