// A printer on USB that is plugged in and unplugged again and again, half of the times in the
// middle of a download. The kernel's own USB stack is below.
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Course.h"
#include "DownloadAnnouncement.h"
#include "DownloadEvents.h"
#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FirmwareDownloader.h"
#include "LogRecorder.h"
#include "QuillUsbDeviceFinderAsync.h"
#include "UsbHostTest.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "UsbTransport.h"
#include "platform/posix/PosixFiles.h"

namespace {

constexpr std::size_t kShortForm = 16;

// Where the printer is the only one.
constexpr const char* kGadgets = "/sys/kernel/config/usb_gadget";

class Finder : public QuillUsbDeviceFinderAsync {
 public:
  Finder() : QuillUsbDeviceFinderAsync(0x3A71, 0x0C28) {}
  void notifyDeviceFound(QuillUsbDevice& device) override { mDevice = device; }
  void notifyDeviceRemoved(QuillUsbDevice& device) override {
    EXPECT_EQ(device.getSerialNum(), "VP000001");
    mDevice.reset();
  }

  const std::optional<QuillUsbDevice>& device() const { return mDevice; }

 private:
  std::optional<QuillUsbDevice> mDevice;
};

class PluggingTest : public UsbHostTest {
 protected:
  PluggingTest()
      : mFiles(platform::makePosixFiles()),
        mLog({.bundle = &mBundle,
              .files = mFiles.get(),
              .runLoop = &mLoop,
              .events = &mEvents,
              .usb = mRegistry.get(),
              .downloadObserver = mRegistry.get()}),
        mDownloader(std::make_unique<FirmwareDownloader>()),
        mFinder(std::make_unique<Finder>()) {
    handleDownloadEvents(mEvents);
    mFinder->setupAsyncNotifier(&mLoop);
    mFinder->startAsyncNotifier();
    runUntil([this] { return mFinder->device().has_value(); });
    mController = mPrinter.last("plugged").at("controller");
    for (const auto& gadget : std::filesystem::directory_iterator(kGadgets)) {
      mPlug = gadget.path() / "UDC";
    }
  }

  void unplug() {
    setUsbAttribute(mPlug, "\n");
    runUntil([this] { return !mFinder->device().has_value(); });
  }

  void plugIn() {
    setUsbAttribute(mPlug, mController);
    runUntil([this] { return mFinder->device().has_value(); });
  }

  // Up to where the printer is asked who it is and has not answered.
  void beginDownload() {
    const DownloadAnnouncement announced(*mDownloader, {}, {});
    downloadFirmwareThroughUsb(*mFinder->device(), *mDownloader);
    runUntil([this] {
      return !mLog.entries().empty() &&
             mLog.entries().back().text == "Async read request for 16 bytes.";
    });
  }

  void expectFailure() {
    runUntil([this] { return !mEvents.commands().empty(); });
    EXPECT_EQ(mEvents.commands(), std::vector<std::string>{"DlNo"});
  }

  void forgetRecords() {
    mLog.takeEntries();
    mEvents.takeCalls();
    mEvents.takeCommands();
  }

  void runUntil(const std::function<bool()>& done) {
    ASSERT_TRUE(mLoop.runUntil(
        [&] {
          mEvents.deliverAll();
          return done();
        },
        std::chrono::seconds(60)))
        << testing::PrintToString(mLog.lines());
  }

  UsbPrinterProcess mPrinter{{"--fault", "silence@connect"}};
  FakeBundle mBundle;
  FakeEvents mEvents;
  std::unique_ptr<platform::Files> mFiles;
  LogRecorder mLog;
  std::unique_ptr<FirmwareDownloader> mDownloader;
  std::unique_ptr<Finder> mFinder;
  std::string mController;
  std::filesystem::path mPlug;  // takes the name of a controller, or none
};

TEST_F(PluggingTest, PrinterComesAndGoes) {
  const std::size_t times = eventsWanted(kShortForm);
  Course course("plugging", "A printer on USB", "times plugged in and unplugged", times);
  for (std::size_t i = 0; i < times && !HasFailure(); ++i) {
    const bool isDownloading = i % 2 == 1;
    if (isDownloading) beginDownload();
    unplug();
    if (isDownloading) expectFailure();
    EXPECT_EQ(mLoop.timers(), 0u);
    plugIn();
    forgetRecords();
    course.count();
  }
  course.expectToAdd(40);
  EXPECT_THAT(mErrors, testing::IsEmpty());
}

}  // namespace
