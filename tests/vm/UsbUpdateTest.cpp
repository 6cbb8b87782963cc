// The download engine over real USB: the whole way of an update, what it gets over, and what the
// fault matrix (UsbFaultsTest) does not have of an unplugged printer. The log is compared entry for
// entry, but for debug entries.
#include <gmock/gmock.h>

#include <functional>

#include "DownloadAnnouncement.h"
#include "DownloadEvents.h"
#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FirmwareDownloader.h"
#include "Log.h"
#include "LogRecorder.h"
#include "Places.h"
#include "QuillUsbDeviceFinderAsync.h"
#include "UsbHostTest.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "UsbTransport.h"
#include "platform/posix/PosixFiles.h"

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

namespace {

using Lines = std::vector<std::string>;

// Of the image "small", which is the same at each build.
const std::string kSmallImageSha256 =
    "86dfb7d5b41ced632f85142605d1a58a665deb28a47ed557b4e436fe565575ad";

class Finder : public QuillUsbDeviceFinderAsync {
 public:
  Finder() : QuillUsbDeviceFinderAsync(0x3A71, 0x0C28) {}
  void notifyDeviceFound(QuillUsbDevice& device) override { found.push_back(device); }
  void notifyDeviceRemoved(QuillUsbDevice& device) override { removed.push_back(device); }

  std::vector<QuillUsbDevice> found;
  std::vector<QuillUsbDevice> removed;
};

// What the log says until the printer has its image, step by step.
const Lines kSteps{
    "5 Connecting to I/O transport...",
    "5 Clearing unsolicited status updates...",
    "5 Async write request for 34 bytes.",
    "5 Requesting IEEE 1284 device ID from the printer...",
    "5 Async write request for 59 bytes.",
    "5 IEEE 1284 device ID request sent to printer, waiting for response...",
    "5 Async read request for 16 bytes.",
    "5 Reading IEEE 1284 device ID...",
    "5 Async read request for 106 bytes.",
    "5 Validating IEEE 1284 device ID...",
    ("5 IEEE 1284 device ID is MFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:Veltra KX350T;"
     "SN:VP000001;LIC:QT725013;FWVER:00000100;"),
    "5 Choosing and loading a firmware file...",
    "5 Firmware version in IEEE 1284 string: 00000100",
    "5 Firmware version in file: 00000200",
    "5 Async write request for 50 bytes.",
    "5 Writing new firmware to printer...",
    "5 Async write request for 100000 bytes.",
    "5 Finalising the firmware download...",
    "5 Async write request for 9 bytes.",
    ("5 New firmware sent to printer, waiting for the printer to burn it to flash and send "
     "response."),
    "5 This will take some time; using a timeout of 6000ms.",
    "5 Async read request for 16 bytes.",
};

class UsbUpdateTest : public UsbHostTest {
 protected:
  UsbUpdateTest()
      : mFiles(platform::makePosixFiles()),
        mRecorder({.bundle = &mBundle,
                   .files = mFiles.get(),
                   .runLoop = &mLoop,
                   .events = &mEvents,
                   .usb = mRegistry.get(),
                   .downloadObserver = mRegistry.get()}),
        mDownloader(std::make_unique<FirmwareDownloader>()),
        mFinder(std::make_unique<Finder>()) {
    useFirmware("small");
    mLogError = [](const std::string& entry) { Log<3>() << entry << std::flush; };
    handleDownloadEvents(mEvents);
    mFinder->setupAsyncNotifier(&mLoop);
    mFinder->startAsyncNotifier();
    mRecorder.takeEntries();
  }

  void useFirmware(const std::string& name) {
    mBundle.setResourcesDirectory(builtFile("tests/vm/firmware/" + name));
  }

  void plugIn(std::vector<std::string> options = {}) {
    options.insert(options.end(), {"--burn-seconds", "0.2", "--return-seconds", "0.5",
                                   "--hang-up-seconds", "0.2"});
    mPrinter = std::make_unique<UsbPrinterProcess>(options);
    ASSERT_TRUE(mLoop.runUntil([this] { return !mFinder->found.empty(); }));
  }

  void plugInWithFault(const std::string& fault) { plugIn({"--fault", fault}); }

  // Downloads to the printer that was found last, and returns the outcome.
  std::string update() {
    mEvents.takeCommands();
    {
      const DownloadAnnouncement announced(*mDownloader, {}, {});
      downloadFirmwareThroughUsb(mFinder->found.back(), *mDownloader);
    }
    runUntil([this] { return !mEvents.commands().empty(); });
    mEvents.deliverAll();
    EXPECT_THAT(mEvents.commands(), SizeIs(1));
    return mEvents.commands().empty() ? "" : mEvents.commands().front();
  }

  bool runUntil(const std::function<bool()>& done) {
    return mLoop.runUntil(
        [&] {
          mEvents.deliverAll();
          return done();
        },
        std::chrono::seconds(60));
  }

  // Entries that are not for debugging.
  Lines takeLog() {
    Lines lines;
    for (const LogEntry& entry : mRecorder.takeEntries()) {
      if (entry.priority != 7) lines.push_back(std::to_string(entry.priority) + " " + entry.text);
    }
    return lines;
  }

  // The first steps, then these lines.
  static Lines steps(std::size_t count, const Lines& lines) {
    Lines all(kSteps.begin(), kSteps.begin() + static_cast<std::ptrdiff_t>(count));
    all.insert(all.end(), lines.begin(), lines.end());
    return all;
  }

  void expectUpdated() {
    EXPECT_EQ(update(), "DlOk");
    EXPECT_EQ(takeLog(),
              steps(kSteps.size(), {"5 Firmware download is complete, the printer will restart.",
                                    "5 Cleaning up USB transport."}));
    ASSERT_TRUE(mLoop.runUntil([this] { return mPrinter->count("burn") == 1; }));
    const nlohmann::json burn = mPrinter->last("burn");
    EXPECT_EQ(burn.at("status"), 1);
    EXPECT_EQ(burn.at("bytes"), 100000);
    EXPECT_EQ(burn.at("sha256"), kSmallImageSha256);
    EXPECT_EQ(mPrinter->count("violation"), 0u);
  }

  // The kernel's driver has the printer's interface again, and nobody complains.
  void expectDriverBack() {
    EXPECT_TRUE(mLoop.runUntil([] { return kernelDriver() == "usblp"; }));
    EXPECT_THAT(takeLog(), IsEmpty());
  }

  FakeBundle mBundle;
  FakeEvents mEvents;
  std::unique_ptr<platform::Files> mFiles;
  LogRecorder mRecorder;
  std::unique_ptr<FirmwareDownloader> mDownloader;
  std::unique_ptr<Finder> mFinder;
  std::unique_ptr<UsbPrinterProcess> mPrinter;
};

TEST_F(UsbUpdateTest, TheImageIsBurned) {
  plugIn();
  expectUpdated();
  EXPECT_EQ(mPrinter->receivedMessages(),
            (Lines{"status-off", "id-request", "burn-header", "image", "uel"}));
}

TEST_F(UsbUpdateTest, APrinterThatWasUpdatedReturnsAndIsUpToDate) {
  plugIn();
  expectUpdated();
  ASSERT_TRUE(mLoop.runUntil([this] { return mFinder->found.size() == 2; }));
  EXPECT_THAT(mFinder->removed, SizeIs(1));
  expectDriverBack();
  EXPECT_EQ(update(), "DlUd");
}

TEST_F(UsbUpdateTest, AnUpToDatePrinterGetsNothing) {
  plugIn({"--fwver", "00000200"});
  EXPECT_EQ(update(), "DlUd");
  const Lines log = takeLog();
  EXPECT_EQ(log.at(log.size() - 2), "5 Firmware on the printer is already up-to-date.");
  EXPECT_EQ(mPrinter->receivedMessages(), (Lines{"status-off", "id-request"}));
  expectDriverBack();
  // And can be asked again.
  EXPECT_EQ(update(), "DlUd");
}

TEST_F(UsbUpdateTest, AFailedBurnIsReported) {
  plugInWithFault("fail-burn");
  EXPECT_EQ(update(), "DlNo");
  EXPECT_EQ(takeLog(), steps(kSteps.size(), {"3 The firmware download failed on the printer.",
                                             "5 Cleaning up USB transport."}));
  expectDriverBack();
}

TEST_F(UsbUpdateTest, AnImageOfWholePacketsIsBurned) {
  useFirmware("packets");
  plugIn();
  EXPECT_EQ(update(), "DlOk");
  EXPECT_EQ(mPrinter->last("burn").at("bytes"), 131072);
}

// Faults that an update gets over. --------------------------------------------------------------

TEST_F(UsbUpdateTest, RepliesInOddPacketsAreRead) {
  plugInWithFault("dribble=7/0");
  expectUpdated();
}

TEST_F(UsbUpdateTest, RepliesInSlowSingleBytesAreRead) {
  plugInWithFault("dribble=1/5");
  expectUpdated();
}

TEST_F(UsbUpdateTest, RepliesInOnePacketAreRead) {
  plugInWithFault("merge");
  expectUpdated();
}

TEST_F(UsbUpdateTest, RepliesThatAreCutWithinTheResponseAreRead) {
  plugInWithFault("split=10");
  expectUpdated();
}

TEST_F(UsbUpdateTest, EmptyPacketsBetweenRepliesAreSkipped) {
  plugInWithFault("zero-packets");
  expectUpdated();
}

TEST_F(UsbUpdateTest, TheOrderOfThePipesDoesNotMatter) {
  plugInWithFault("in-pipe-first");
  expectUpdated();
}

TEST_F(UsbUpdateTest, TheVendorsInterfaceIsNotNeeded) {
  plugInWithFault("no-vendor-interface");
  expectUpdated();
}

TEST_F(UsbUpdateTest, StringsMayBeEmpty) {
  plugIn({"--usb-manufacturer", "", "--usb-product", "", "--usb-serial", ""});
  EXPECT_EQ(mFinder->found.back().getSerialNum(), "");
  expectUpdated();
}

TEST_F(UsbUpdateTest, TwoPrintersAreUpdatedOneAfterTheOther) {
  UsbPrinterProcess other({"--serial", "OTHER", "--fwver", "00000200"});
  ASSERT_TRUE(mLoop.runUntil([this] { return mFinder->found.size() == 1; }));
  plugIn();
  ASSERT_TRUE(mLoop.runUntil([this] { return mFinder->found.size() == 2; }));
  expectUpdated();
  std::swap(mFinder->found[0], mFinder->found[1]);
  EXPECT_EQ(update(), "DlUd");
  EXPECT_EQ(other.receivedMessages(), (Lines{"status-off", "id-request"}));
}

// Unplugging. -----------------------------------------------------------------------------------

TEST_F(UsbUpdateTest, APrinterThatIsGoneBeforeItBeginsFails) {
  plugIn();
  mPrinter->stop();
  ASSERT_TRUE(mLoop.runUntil([this] { return mFinder->removed.size() == 1; }));
  EXPECT_EQ(update(), "DlNo");
  EXPECT_EQ(takeLog(),
            steps(3, {"3 I/O Kit error occurred during async task: Unable to open interface. "
                      "[return value = 0xe00002c0]",
                      "5 Cleaning up USB transport."}));
}

class UsbUnplugTest : public UsbUpdateTest, public testing::WithParamInterface<const char*> {};

TEST_P(UsbUnplugTest, EndsTheUpdateAsFailed) {
  plugInWithFault(std::string("unplug@") + GetParam() + "=300");
  EXPECT_EQ(update(), "DlNo");
  const Lines log = takeLog();
  // Which call it is that meets the end of the device is a matter of chance; within a read it is
  // told by the transfer's end, without the controller's words.
  EXPECT_THAT(log.at(log.size() - 2),
              MatchesRegex("3 (Async (write|read) failed: I/O Kit error=0xe00002(ca|c0)|"
                           "(I/O Kit error occurred during async task: )?"
                           "(Failed to clear pipe stall|Async (write|read) request failed)\\. "
                           "\\[return value = 0xe00002(ca|c0)\\])"));
  EXPECT_EQ(log.back(), "5 Cleaning up USB transport.");
  // It comes back as another one.
  ASSERT_TRUE(mLoop.runUntil([this] { return mFinder->found.size() == 2; }));
  EXPECT_THAT(mFinder->removed, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(AtFurtherSteps, UsbUnplugTest,
                         testing::Values("mid-status-off", "mid-id-request", "mid-id-response",
                                         "id-response", "device-id", "mid-burn-header", "mid-uel",
                                         "mid-burn-reply"),
                         [](const testing::TestParamInfo<const char*>& tested) {
                           std::string name;
                           bool upper = true;
                           for (const char* c = tested.param; *c != '\0'; ++c) {
                             if (*c == '-') {
                               upper = true;
                             } else {
                               name += upper ? static_cast<char>(*c - 'a' + 'A') : *c;
                               upper = false;
                             }
                           }
                           return name;
                         });

}  // namespace
