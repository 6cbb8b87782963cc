#include <optional>
#include <stdexcept>
#include <utility>

#include "DownloadEvents.h"
#include "EngineFixture.h"
#include "FakeRunLoop.h"
#include "FakeUsbRegistry.h"
#include "FirmwareDownloader.h"
#include "IoKitException.h"
#include "Log.h"
#include "UsbTransport.h"
#include "platform/SystemLog.h"

using namespace platform::literals;

namespace {

using platform::OSStatus;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

// A printer on USB whose ACL channel has been opened. Everything is given back at the end.
class UsbFixture : public EngineFixture {
 protected:
  ~UsbFixture() override { EXPECT_THAT(mUsb.problems(), ElementsAre()); }

  platform::Platform withUsb() {
    platform::Platform platform = surfaces();
    platform.runLoop = &mLoop;
    platform.usb = &mUsb;
    return platform;
  }

  QuillUsbDevice plugIn(const FakeUsbDevice& description) {
    QuillUsbDevice device;
    mService = mUsb.attach(description);
    device.init(mService, 0);
    return device;
  }

  bool isAclOpen() const { return mUsb.isOpen(mUsb.interfaceOf(mService)); }

  // The one transfer under way.
  const FakeUsbTransfer& transfer() const {
    EXPECT_EQ(mUsb.transfers().size(), 1u);
    return *mUsb.transfers().at(0);
  }

  void expectTimeOut(unsigned milliseconds) const {
    EXPECT_EQ(transfer().noDataTimeout, milliseconds);
    EXPECT_EQ(transfer().completionTimeout, milliseconds);
  }

  // The printer sends these bytes in one transfer.
  void send(const std::string& bytes) {
    mUsb.completeRead(bytes);
    mLoop.runAllLater();
  }

  void takeWrite() {
    if (!mUsb.transfers().empty()) mTaken.push_back(mUsb.transfers().front()->written);
    mUsb.completeWrite(mTaken.back().size());
    mLoop.runAllLater();
  }

  void fail(platform::IOReturn result) {
    mUsb.failTransfer(result);
    mLoop.runAllLater();
  }

  std::vector<LogEntry> takeEntries() { return mRecorder.takeEntries(); }

  FakeRunLoop mLoop;
  FakeUsbRegistry mUsb;
  LogRecorder mRecorder{withUsb()};
  platform::io_service_t mService = 0;
  std::vector<std::string> mTaken;
};

// A transport by itself; its controller runs no download, and posted events are not delivered.
class UsbTransportTest : public UsbFixture {
 protected:
  void TearDown() override { mTransport.reset(); }

  IoTransport& make(const FakeUsbDevice& description = fakePrinter()) {
    mTransport.emplace(plugIn(description), mDownloader);
    return *mTransport;
  }

  IoTransport& makeOpen() {
    make().write("x", 1);
    takeWrite();
    mEvents.deliverAll();
    takeEntries();
    return *mTransport;
  }

  FirmwareDownloader mDownloader;
  std::optional<UsbTransport> mTransport;
};

TEST_F(UsbTransportTest, ConnectOpensNothingAndPostsOneResume) {
  make().connect();
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
  EXPECT_FALSE(isAclOpen());
  EXPECT_THAT(takeEntries(), IsEmpty());
}

TEST_F(UsbTransportTest, WriteIsOneTransferOf200Milliseconds) {
  makeOpen().write("hello", 5);
  expectTimeOut(200);
  EXPECT_EQ(transfer().interface, "printer/7");
  EXPECT_EQ(transfer().written, "hello");
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async write request for 5 bytes."}));
  EXPECT_THAT(mEvents.waiting(), IsEmpty());
}

TEST_F(UsbTransportTest, CompleteWritePostsOneResume) {
  makeOpen().write("hello", 5);
  takeWrite();
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
}

TEST_F(UsbTransportTest, WriteTellsItsBytesWhenItIsComplete) {
  std::vector<std::string> told;
  makeOpen().write("hello", 5, [&](std::size_t taken) {
    told.push_back(std::to_string(taken) + " before " + std::to_string(mEvents.queued()));
  });
  expectTimeOut(200);
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async write request for 5 bytes."}));
  EXPECT_THAT(told, IsEmpty());
  takeWrite();
  EXPECT_THAT(told, ElementsAre("5 before 0"));
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));

  mTransport->write("more", 4);
  takeWrite();
  EXPECT_THAT(told, ElementsAre("5 before 0"));
}

TEST_F(UsbTransportTest, WriteThatFailsTellsNothing) {
  bool told = false;
  makeOpen().write("hello", 5, [&told](std::size_t) { told = true; });
  fail(platform::kIOUSBTransactionTimeout);
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 2"));
  EXPECT_FALSE(told);
}

TEST_F(UsbTransportTest, ShortWriteIsComplete) {
  makeOpen().write("hello", 5);
  mUsb.completeWrite(3);
  mLoop.runAllLater();
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
}

TEST_F(UsbTransportTest, ReadHas20SecondsForEachTransfer) {
  std::string buffer(70, '?');
  makeOpen().read(buffer.data(), buffer.size());
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async read request for 70 bytes."}));
  EXPECT_EQ(transfer().interface, "printer/7");
  expectTimeOut(20000);
  send(std::string(64, 'a'));
  expectTimeOut(20000);
  EXPECT_THAT(mEvents.waiting(), IsEmpty());
  send("bbbbbb");
  EXPECT_EQ(buffer, std::string(64, 'a') + "bbbbbb");
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
}

TEST_F(UsbTransportTest, ReadTakesAnotherTimeOut) {
  char buffer[16];
  makeOpen().read(buffer, sizeof buffer, 3000);
  expectTimeOut(3000);
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async read request for 16 bytes."}));
}

TEST_F(UsbTransportTest, BytesLeftFromAnEarlierPacketPostAResumeToo) {
  char buffer[2];
  IoTransport& transport = makeOpen();
  transport.read(buffer, 2);
  send("abcd");
  mEvents.deliverAll();
  transport.read(buffer, 2);
  EXPECT_EQ(std::string(buffer, 2), "cd");
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
}

TEST_F(UsbTransportTest, FailedTransferIsLoggedAndPostsOneFailure) {
  char byte = 0;
  makeOpen().read(&byte, 1);
  takeEntries();
  fail(platform::kIOUSBTransactionTimeout);
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{3, "Async read failed: I/O Kit error=0xe0004051"}));
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 2"));
}

TEST_F(UsbTransportTest, FailedWriteIsLoggedAndPostsOneFailure) {
  makeOpen().write("hello", 5);
  takeEntries();
  fail(platform::kIOReturnNoDevice);
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{3, "Async write failed: I/O Kit error=0xe00002c0"}));
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 2"));
}

TEST_F(UsbTransportTest, ReadThatCannotGoOnPostsAFailure) {
  char buffer[65];
  makeOpen().read(buffer, sizeof buffer);
  takeEntries();
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNoDevice);
  send(std::string(64, 'a'));
  EXPECT_THAT(takeEntries(),
              ElementsAre(LogEntry{3, "Failed to clear pipe stall. [return value = 0xe00002c0]"}));
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 2"));
}

TEST_F(UsbTransportTest, TransferThatCannotBeStartedThrows) {
  char byte = 0;
  mUsb.script("open", platform::kIOReturnExclusiveAccess);
  EXPECT_THAT([&] { make().write(&byte, 1); },
              ThrowsMessage<IoKitException>("Unable to open interface. [return value = "
                                            "0xe00002c5]"));
  mUsb.script("readPipeAsyncTO", platform::kIOReturnNoMemory);
  EXPECT_THAT([&] { mTransport->read(&byte, 1, 1); },
              ThrowsMessage<IoKitException>("Async read request failed. [return value = "
                                            "0xe00002bd]"));
  EXPECT_THAT(mEvents.waiting(), IsEmpty());
}

TEST_F(UsbTransportTest, RefusesBadArgumentsAfterItsLogLine) {
  char byte = 0;
  IoTransport& transport = makeOpen();
  const auto refuses = [](auto action, const char* text) {
    EXPECT_THAT(action, ThrowsMessage<std::runtime_error>(text));
  };
  refuses([&] { transport.write(&byte, 0); }, "Cannot read or write no data.");
  refuses([&] { transport.write(nullptr, 5); }, "Null buffer is invalid.");
  refuses([&] { transport.read(nullptr, 0); }, "Cannot read or write no data.");
  refuses([&] { transport.read(nullptr, 5); }, "Null buffer is invalid.");
  refuses([&] { transport.read(nullptr, 5, 1); }, "Null buffer is invalid.");
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async write request for 0 bytes."},
                                         LogEntry{5, "Async write request for 5 bytes."},
                                         LogEntry{5, "Async read request for 0 bytes."},
                                         LogEntry{5, "Async read request for 5 bytes."},
                                         LogEntry{5, "Async read request for 5 bytes."}));
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbTransportTest, LogsLengthsInDecimalWhateverTheLogWasLeftIn) {
  char buffer[16];
  IoTransport& transport = makeOpen();
  Log<5>() << std::hex;
  transport.write(buffer, 16);
  takeWrite();
  Log<5>() << std::hex;
  transport.read(buffer, 16);
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Async write request for 16 bytes."},
                                         LogEntry{5, "Async read request for 16 bytes."}));
}

TEST_F(UsbTransportTest, KeepsTheDeviceForItsLifeAndLogsItsEnd) {
  makeOpen();
  EXPECT_EQ(mUsb.references(mService), 1);
  mTransport.reset();
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Cleaning up USB transport."}));
  EXPECT_EQ(mUsb.references(mService), 0);
}

// Counts the references to an object whenever an entry is written.
class CountingLog : public platform::SystemLog {
 public:
  CountingLog(const FakeUsbRegistry& usb, platform::io_object_t object)
      : mUsb(usb), mObject(object) {}
  void open(const char*, int, int) override {}
  void write(int, const char* text) override {
    mCounts.emplace_back(text, mUsb.references(mObject));
  }
  void close() override {}

  const std::vector<std::pair<std::string, int>>& counts() const { return mCounts; }

 private:
  const FakeUsbRegistry& mUsb;
  platform::io_object_t mObject;
  std::vector<std::pair<std::string, int>> mCounts;
};

TEST_F(UsbTransportTest, LogsItsEndBeforeItDropsTheDevice) {
  makeOpen();
  CountingLog log(mUsb, mService);
  platform::Platform platform = platform::current();
  platform.systemLog = &log;
  const platform::PlatformScope scope(platform);
  mTransport.reset();
  EXPECT_THAT(log.counts(), ElementsAre(testing::Pair("Cleaning up USB transport.", 1)));
  EXPECT_EQ(mUsb.references(mService), 0);
}

TEST_F(UsbTransportTest, EndDoesNotCloseADeviceThatAnotherHandleKeeps) {
  const QuillUsbDevice device = plugIn(fakePrinter());
  mTransport.emplace(device, mDownloader);
  mTransport->write("x", 1);
  takeWrite();
  mTransport.reset();
  EXPECT_TRUE(isAclOpen());
  EXPECT_EQ(device.getSerialNum(), "VX0042");
}

TEST_F(UsbTransportTest, NothingIsPostedForATransferThatItsEndCutsOff) {
  char byte = 0;
  makeOpen().read(&byte, 1);
  mUsb.completeRead("a");
  mTransport.reset();
  mLoop.runAllLater();
  EXPECT_THAT(mEvents.waiting(), IsEmpty());
}

// A whole download, with a handler for the controller's events like the application's.
class UsbDownloadTest : public UsbFixture {
 protected:
  UsbDownloadTest() {
    handleDownloadEvents(mEvents);
    installFirmware(kFirmware200);
  }

  void start(const FakeUsbDevice& description = fakePrinter()) {
    downloadFirmwareThroughUsb(plugIn(description), mDownloader);
    mEvents.deliverAll();
  }

  void printerTakesWrite() {
    takeWrite();
    mEvents.deliverAll();
  }

  void printerSends(const std::string& bytes) {
    send(bytes);
    mEvents.deliverAll();
  }

  FirmwareDownloader mDownloader;
};

TEST_F(UsbDownloadTest, StartConnectsAndWaitsForItsEvent) {
  downloadFirmwareThroughUsb(plugIn(fakePrinter()), mDownloader);
  EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
  EXPECT_FALSE(isAclOpen());
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Connecting to I/O transport..."}));
}

TEST_F(UsbDownloadTest, BurnsAnImageHoweverTheRepliesAreCut) {
  start();
  printerTakesWrite();
  printerTakesWrite();
  printerSends("");
  printerSends(kDeviceIdResponse.substr(0, 5));
  printerSends(kDeviceIdResponse.substr(5) + kDeviceId100);  // merged: the rest waits
  printerTakesWrite();
  printerTakesWrite();
  printerTakesWrite();
  printerSends(kBurnResponse);

  EXPECT_THAT(mTaken, ElementsAre(kUstatusOffText, kDeviceIdRequest, kBurnHeader200, kFirmware200,
                                  kUelText));
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlOk"));
  EXPECT_FALSE(isAclOpen());
  EXPECT_EQ(takeEntries().back(), (LogEntry{5, "Cleaning up USB transport."}));
}

TEST_F(UsbDownloadTest, FailedTransferEndsAsFailedAndDropsTheDevice) {
  start();
  fail(platform::kIOReturnIOError);
  takeEntries();
  mEvents.deliverAll();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(takeEntries(), ElementsAre(LogEntry{5, "Cleaning up USB transport."}));
  EXPECT_EQ(mUsb.references(mService), 0);
}

TEST_F(UsbDownloadTest, PrinterUnpluggedDuringATransferEndsAsFailed) {
  start();
  mUsb.detach(mService);
  mLoop.runAllLater();
  takeEntries();
  mEvents.deliverAll();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_EQ(mUsb.references(mService), 0);
}

TEST_F(UsbDownloadTest, PrinterUnpluggedBetweenTransfersEndsAsFailed) {
  start();
  mUsb.completeWrite(34);
  mUsb.detach(mService);
  mLoop.runAllLater();
  takeEntries();
  mEvents.deliverAll();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(takeEntries(),
              Contains(LogEntry{3,
                                "I/O Kit error occurred during async task: Failed to clear pipe "
                                "stall. [return value = 0xe00002c0]"}));
}

TEST_F(UsbDownloadTest, PrinterThatCannotBeOpenedEndsAsFailed) {
  mUsb.script("open", platform::kIOReturnNotPrivileged);
  start();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(takeEntries(),
              Contains(LogEntry{3,
                                "I/O Kit error occurred during async task: Unable to open "
                                "interface. [return value = 0xe00002c1]"}));
}

TEST_F(UsbDownloadTest, DeviceWithoutAnAclChannelEndsAsFailed) {
  FakeUsbDevice description = fakePrinter();
  description.interfaces.erase(description.interfaces.begin());
  start(description);
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(takeEntries(),
              Contains(LogEntry{3,
                                "I/O Kit error occurred during async task: The device has no ACL "
                                "channel. [return value = 0xe00002f0]"}));
}

TEST_F(UsbDownloadTest, PrinterThatCannotBeReadEndsAsFailed) {
  FakeUsbDevice description = fakePrinter();
  description.interfaces[0].pipes = {outPipe(), inPipe(0)};
  start(description);
  printerTakesWrite();
  printerTakesWrite();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(takeEntries(),
              Contains(LogEntry{3,
                                "I/O Kit error occurred during async task: The interface cannot be "
                                "read. [return value = 0xe00002f0]"}));
}

TEST_F(UsbDownloadTest, ControllerThatGoesDuringATransferLeavesNothingBehind) {
  {
    FirmwareDownloader shortLived;
    downloadFirmwareThroughUsb(plugIn(fakePrinter()), shortLived);
    mEvents.deliverAll();
    EXPECT_EQ(mUsb.transfers().size(), 1u);
  }
  EXPECT_TRUE(mUsb.transfers().empty());
}

}  // namespace
