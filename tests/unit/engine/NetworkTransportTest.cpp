#include <chrono>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "EngineFixture.h"
#include "FakeDeviceLocks.h"
#include "FakeRunLoop.h"
#include "FirmwareDownloader.h"
#include "Log.h"
#include "NetworkTransport.h"

namespace {

using namespace std::chrono_literals;
using platform::StreamSocket;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

const platform::Data kAddress =
    platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0});

std::vector<std::uint8_t> octets(const std::string& text) { return {text.begin(), text.end()}; }

std::string textOf(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

// A transport by itself. Its controller runs no download, so a direct resume would be fatal; posted
// ones are not delivered.
class NetworkTransportTest : public EngineFixture {
 protected:
  NetworkTransportTest() { mNetwork.takeCalls(); }

  // Whether one waits; it is dropped, since there is nothing to resume.
  bool resumeIsPosted() {
    if (mEvents.queued() == 0) return false;
    EXPECT_THAT(mEvents.waiting(), ElementsAre("FwDl 1"));
    mEvents.deliverAll();
    return true;
  }

  FirmwareDownloader mDownloader;
  NetworkTransport mTransport{kAddress, mDownloader};
  IoTransport& mIo = mTransport;
};

TEST_F(NetworkTransportTest, MakesATcpSocketForAllCallbacks) {
  const NetworkTransport transport(kAddress, mDownloader);
  EXPECT_THAT(mNetwork.calls(), ElementsAre("create 15"));
}

TEST_F(NetworkTransportTest, ConnectsInTheBackgroundToItsAddress) {
  mIo.connect();
  EXPECT_TRUE(mNetwork.isConnecting());
  EXPECT_EQ(*mNetwork.connectedTo(), *kAddress);
  EXPECT_FALSE(resumeIsPosted());
}

TEST_F(NetworkTransportTest, ConnectThatCannotBeStartedThrows) {
  mNetwork.setConnectResult(1);
  EXPECT_THAT([&] { mIo.connect(); },
              ThrowsMessage<std::runtime_error>("Unable to connect to socket"));
}

TEST_F(NetworkTransportTest, NullAddressIsTheSocketsToRefuse) {
  NetworkTransport transport(platform::Data(), mDownloader);
  mNetwork.setConnectResult(1);
  EXPECT_THROW(transport.connect(), std::runtime_error);
  EXPECT_EQ(mNetwork.connectedTo(), nullptr);
}

TEST_F(NetworkTransportTest, WriteEnablesCallbacksAndSendsWithoutACopy) {
  const char bytes[] = {'a', 'b', 'c'};
  mIo.write(bytes, sizeof bytes);
  EXPECT_THAT(mNetwork.calls(), ElementsAre("enable 11", "send 3 within 5"));
  EXPECT_EQ(textOf(mNetwork.sent().at(0)), "abc");
  EXPECT_EQ(mNetwork.lastSendBuffer(), bytes);
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async write request for 3 bytes."}));
}

TEST_F(NetworkTransportTest, WriteTellsWhatTheHostHasTaken) {
  mNetwork.takeAtOnce(2);
  std::vector<std::size_t> taken;
  mIo.write("abcde", 5, [&taken](std::size_t count) { taken.push_back(count); });
  EXPECT_THAT(taken, ElementsAre(2u, 4u, 5u));
  EXPECT_THAT(mNetwork.calls(), ElementsAre("enable 11", "send 5 within 5"));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async write request for 5 bytes."}));
}

TEST_F(NetworkTransportTest, WriteThatFailsThrows) {
  mNetwork.setSendResult(-2);
  EXPECT_THAT([&] { mIo.write("abc", 3); },
              ThrowsMessage<std::runtime_error>("Unable to write data"));
}

TEST_F(NetworkTransportTest, RefusesBadArgumentsAfterItsLogLine) {
  char byte = 0;
  EXPECT_THAT([&] { mIo.write(&byte, 0); },
              ThrowsMessage<std::runtime_error>("Cannot read or write no data."));
  EXPECT_THAT([&] { mIo.write(nullptr, 5); },
              ThrowsMessage<std::runtime_error>("Null buffer is invalid."));
  EXPECT_THAT([&] { mIo.read(&byte, 0); },
              ThrowsMessage<std::runtime_error>("Cannot read or write no data."));
  EXPECT_THAT([&] { mIo.read(nullptr, 5); },
              ThrowsMessage<std::runtime_error>("Null buffer is invalid."));
  EXPECT_THAT([&] { mIo.read(nullptr, 5, 1); },
              ThrowsMessage<std::runtime_error>("Null buffer is invalid."));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async write request for 0 bytes."},
                                          LogEntry{5, "Async write request for 5 bytes."},
                                          LogEntry{5, "Async read request for 0 bytes."},
                                          LogEntry{5, "Async read request for 5 bytes."},
                                          LogEntry{5, "Async read request for 5 bytes."}));
  EXPECT_THAT(mNetwork.calls(), IsEmpty());
}

TEST_F(NetworkTransportTest, LogsLengthsInDecimalWhateverTheLogWasLeftIn) {
  char buffer[16];
  Log<5>() << std::hex;
  mIo.write(buffer, 16);
  Log<5>() << std::hex;
  mIo.read(buffer, 16);
  Log<5>() << std::hex;
  mNetwork.arrives(std::vector<std::uint8_t>(10));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async write request for 16 bytes."},
                                          LogEntry{5, "Async read request for 16 bytes."},
                                          LogEntry{5, "Network data arriving [10 bytes]."}));
}

TEST_F(NetworkTransportTest, WriteReadyWithoutAWriteOnlyLogs) {
  EXPECT_TRUE(mNetwork.becomesWritable());
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Network ready for write."}));
  EXPECT_FALSE(resumeIsPosted());
}

TEST_F(NetworkTransportTest, ReadOfBufferedBytesPostsAResumeAndKeepsTheRest) {
  mNetwork.arrives(octets("0123456789abcdefghij"));
  EXPECT_FALSE(resumeIsPosted());
  std::string buffer(16, '?');
  mIo.read(buffer.data(), buffer.size());
  EXPECT_TRUE(resumeIsPosted());
  EXPECT_EQ(buffer, "0123456789abcdef");

  std::string rest(4, '?');
  mIo.read(rest.data(), rest.size());
  EXPECT_TRUE(resumeIsPosted());
  EXPECT_EQ(rest, "ghij");
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Network data arriving [20 bytes]."},
                                          LogEntry{5, "Async read request for 16 bytes."},
                                          LogEntry{5, "Async read request for 4 bytes."}));
}

TEST_F(NetworkTransportTest, ReadIsCompleteOnlyWithItsLastPiece) {
  std::string buffer(16, '?');
  mIo.read(buffer.data(), buffer.size());
  mNetwork.arrives(octets("0123456789"));
  EXPECT_FALSE(resumeIsPosted());
  EXPECT_EQ(buffer, std::string(16, '?'));
  mNetwork.arrives(octets("abcdef"));
  EXPECT_TRUE(resumeIsPosted());
  EXPECT_EQ(buffer, "0123456789abcdef");
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async read request for 16 bytes."},
                                          LogEntry{5, "Network data arriving [10 bytes]."},
                                          LogEntry{5, "Network data arriving [6 bytes]."}));
}

TEST_F(NetworkTransportTest, ReadIsCompletedOnce) {
  std::string buffer(4, '?');
  mIo.read(buffer.data(), buffer.size());
  mNetwork.arrives(octets("abcd"));
  EXPECT_TRUE(resumeIsPosted());
  mNetwork.arrives(octets("efgh"));
  EXPECT_FALSE(resumeIsPosted());
  EXPECT_EQ(buffer, "abcd");
}

TEST_F(NetworkTransportTest, LaterReadReplacesAPendingOne) {
  std::string first(4, '?');
  std::string second(2, '?');
  mIo.read(first.data(), first.size());
  mIo.read(second.data(), second.size());
  mNetwork.arrives(octets("abcd"));
  EXPECT_TRUE(resumeIsPosted());
  EXPECT_EQ(first, "????");
  EXPECT_EQ(second, "ab");
}

TEST_F(NetworkTransportTest, ReadWithATimeoutIsARead) {
  std::string buffer(4, '?');
  mIo.read(buffer.data(), buffer.size(), 1);
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Async read request for 4 bytes."}));
  mNetwork.arrives(octets("abcd"));
  EXPECT_TRUE(resumeIsPosted());
  EXPECT_EQ(buffer, "abcd");
}

TEST_F(NetworkTransportTest, ReadWithATimeoutIsTheTransportsOwnRead) {
  class Overriding : public NetworkTransport {
   public:
    using NetworkTransport::NetworkTransport;
    using NetworkTransport::read;
    void read(void*, std::size_t length) override { mLength = length; }
    std::size_t mLength = 0;
  } transport(kAddress, mDownloader);
  IoTransport& io = transport;
  char buffer[7];
  io.read(buffer, sizeof buffer, 1);
  EXPECT_EQ(transport.mLength, 7u);
}

TEST_F(NetworkTransportTest, EndOfTheStreamIsOnlyLogged) {
  char buffer[4];
  mIo.read(buffer, sizeof buffer);
  mNetwork.arrives({});
  EXPECT_FALSE(resumeIsPosted());
  EXPECT_EQ(mLog.entries().back(), (LogEntry{5, "Network data arriving [0 bytes]."}));
}

TEST_F(NetworkTransportTest, DataCallbackWithoutDataDoesNothing) {
  const platform::Data null;
  mNetwork.callBack(StreamSocket::kDataCallback, nullptr);
  mNetwork.callBack(StreamSocket::kDataCallback, &null);
  EXPECT_THAT(mLog.entries(), IsEmpty());
}

TEST_F(NetworkTransportTest, OtherCallbacksDoNothing) {
  for (const unsigned long type : {0ul, 1ul, 2ul, 5ul, 7ul, 11ul, 15ul}) {
    mNetwork.callBack(type, nullptr);
  }
  EXPECT_THAT(mLog.entries(), IsEmpty());
}

TEST_F(NetworkTransportTest, CallbackWithoutATransportDoesNothing) {
  for (const unsigned long type : {3ul, 4ul, 8ul}) mNetwork.callBackWithoutInfo(type);
  EXPECT_THAT(mLog.entries(), IsEmpty());
}

TEST_F(NetworkTransportTest, DestructionLogsAndThenClosesTheSocket) {
  class LogBeforeClose : public FakeSystemLog {
   public:
    explicit LogBeforeClose(FakeNetwork& network) : mNetwork(network) {}
    void write(int priority, const char* text) override {
      EXPECT_TRUE(mNetwork.isOpen());
      FakeSystemLog::write(priority, text);
    }
    FakeNetwork& mNetwork;
  } log(mNetwork);
  auto transport = std::make_unique<NetworkTransport>(kAddress, mDownloader);
  char buffer[4];
  transport->read(buffer, sizeof buffer);
  platform::Platform logging = surfaces();
  logging.systemLog = &log;
  const platform::PlatformScope scope(logging);
  transport.reset();
  EXPECT_THAT(log.entries(), ElementsAre(LogEntry{5, "Cleaning up network transport."}));
  EXPECT_FALSE(mNetwork.isOpen());
  EXPECT_FALSE(mNetwork.arrives(octets("abcd")));
}

// A transport whose printer may be another program's.
class LockedNetworkTransportTest : public EngineFixture {
 protected:
  LockedNetworkTransportTest() {
    platform::Platform locking = surfaces();
    locking.systemLog = platform::current().systemLog;
    locking.deviceLocks = &mLocks;
    locking.runLoop = &mLoop;
    mScope.emplace(locking);
  }

  FakeRunLoop mLoop;
  FakeDeviceLocks mLocks;
  std::optional<platform::PlatformScope> mScope;
  FirmwareDownloader mDownloader;
};

TEST_F(LockedNetworkTransportTest, LockIsHeldFromTheConnectionToItsEnd) {
  auto transport = std::make_unique<NetworkTransport>(kAddress, mDownloader);
  EXPECT_EQ(mLocks.granted(), 0u);
  transport->connect();
  EXPECT_EQ(mLocks.granted(), 1u);
  EXPECT_TRUE(mNetwork.isConnecting());
  transport.reset();
  EXPECT_EQ(mLocks.granted(), 0u);
}

TEST_F(LockedNetworkTransportTest, PrinterThatIsInUseEndsTheDownloadBeforeAnythingIsSent) {
  mLocks.setUpdating("fwupdatectl (process 812)");
  downloadFirmwareThroughNetwork(kAddress, mDownloader);
  EXPECT_FALSE(mNetwork.isConnecting());
  EXPECT_THAT(mNetwork.calls(), ElementsAre("create 15", "close"));
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Connecting to I/O transport..."},
                          LogEntry{3,
                                   "General runtime error occurred during async task: The printer "
                                   "is in use by fwupdatectl (process 812)."},
                          LogEntry{5, "Cleaning up network transport."}));
}

TEST_F(LockedNetworkTransportTest, PrinterThatIsAskedSomethingIsConnectedToAfterwards) {
  mLocks.setAsking("fwupdatectl (process 812)");
  downloadFirmwareThroughNetwork(kAddress, mDownloader);
  mLoop.advance(14900ms);
  EXPECT_FALSE(mNetwork.isConnecting());
  mLocks.setAsking("");
  mLoop.advance(100ms);
  EXPECT_TRUE(mNetwork.isConnecting());
  EXPECT_EQ(mNetwork.connectedTo(), kAddress);
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Connecting to I/O transport..."},
                          LogEntry{5,
                                   "Waiting for fwupdatectl (process 812), which asks the printer "
                                   "something."}));
  mLoop.advance(1000ms);
  EXPECT_THAT(mNetwork.calls(), ElementsAre("create 15", "connect"));
  EXPECT_THAT(mEvents.commands(), IsEmpty());
}

TEST_F(LockedNetworkTransportTest, UpdateWaitsNoLongerThanAQuestionMayTake) {
  mLocks.setAsking("fwupdatectl (process 812)");
  downloadFirmwareThroughNetwork(kAddress, mDownloader);
  mNetwork.setSendResult(57);  // as without a connection
  mLoop.advance(14900ms);
  EXPECT_THAT(mEvents.commands(), IsEmpty());
  mLoop.advance(100ms);
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(mNetwork.isConnecting());
  EXPECT_THAT(mLog.entries(),
              Contains(LogEntry{3, "The printer is in use by fwupdatectl (process 812)."}));
}

TEST_F(LockedNetworkTransportTest, QuestionWaitsLessForAnother) {
  mLocks.setAsking("fwupdatectl (process 812)");
  mDownloader.query(
      std::make_unique<NetworkTransport>(kAddress, mDownloader, platform::DeviceUse::Question),
      [](const std::wstring&) {});
  mNetwork.setSendResult(57);
  mLoop.advance(4900ms);
  EXPECT_THAT(mEvents.commands(), IsEmpty());
  mLoop.advance(100ms);
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_FALSE(mNetwork.isConnecting());
}

TEST_F(LockedNetworkTransportTest, QuestionKeepsAnUpdateWaiting) {
  NetworkTransport asking(kAddress, mDownloader, platform::DeviceUse::Question);
  asking.connect();
  EXPECT_TRUE(mNetwork.isConnecting());
  std::string holder;
  const auto update = mLocks.lock(kAddress, platform::DeviceUse::Update, holder);
  ASSERT_NE(update, nullptr);
  EXPECT_FALSE(update->isGranted(holder));
}

TEST_F(LockedNetworkTransportTest, NothingIsConnectedToOnceTheTransportIsGone) {
  mLocks.setAsking("fwupdatectl (process 812)");
  auto transport = std::make_unique<NetworkTransport>(kAddress, mDownloader);
  transport->connect();
  transport.reset();
  mLocks.setAsking("");
  mLoop.advance(20000ms);
  EXPECT_FALSE(mNetwork.isConnecting());
  EXPECT_EQ(mLocks.granted(), 0u);
}

TEST_F(LockedNetworkTransportTest, ConnectThatCannotBeStartedLaterFailsInTheNextWrite) {
  mLocks.setAsking("fwupdatectl (process 812)");
  downloadFirmwareThroughNetwork(kAddress, mDownloader);
  mNetwork.setConnectResult(1);
  mNetwork.setSendResult(57);
  mLocks.setAsking("");
  mLoop.advance(100ms);
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(mLog.entries(), Contains(LogEntry{3,
                                                "General runtime error occurred during async task: "
                                                "Unable to write data"}));
}

TEST_F(LockedNetworkTransportTest, LockIsGivenBackByADownloadThatFails) {
  downloadFirmwareThroughNetwork(kAddress, mDownloader);
  EXPECT_EQ(mLocks.granted(), 1u);
  mNetwork.setSendResult(-1);
  EXPECT_TRUE(mNetwork.connectionEnds());
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_EQ(mLocks.granted(), 0u);
}

TEST_F(LockedNetworkTransportTest, PrinterThatCannotBeLockedIsConnectedTo) {
  const platform::Data ipv6 = platform::makeData(std::vector<std::uint8_t>(28, 30));
  NetworkTransport transport(ipv6, mDownloader);
  transport.connect();
  EXPECT_TRUE(mNetwork.isConnecting());
}

// A whole download over the transport.
class NetworkDownloadTest : public EngineFixture {
 protected:
  void start() { downloadFirmwareThroughNetwork(kAddress, mDownloader); }

  FirmwareDownloader mDownloader;
};

TEST_F(NetworkDownloadTest, StartRunsTheFirstTask) {
  start();
  EXPECT_TRUE(mNetwork.isOpen());
  EXPECT_TRUE(mNetwork.isConnecting());
  EXPECT_EQ(mNetwork.connectedTo(), kAddress);
}

TEST_F(NetworkDownloadTest, ConnectThatCannotBeStartedEndsAsFailed) {
  mNetwork.setConnectResult(1);
  start();
  EXPECT_TRUE(mNetwork.isConnecting());
  EXPECT_FALSE(mNetwork.isOpen());
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Connecting to I/O transport..."},
                          LogEntry{3,
                                   "General runtime error occurred during async task: Unable to "
                                   "connect to socket"},
                          LogEntry{5, "Cleaning up network transport."}));
}

TEST_F(NetworkDownloadTest, ConnectionResumesDirectly) {
  start();
  EXPECT_TRUE(mNetwork.connectionEnds());
  EXPECT_EQ(textOf(mNetwork.sent().at(0)), kUstatusOffText);
  EXPECT_EQ(mEvents.queued(), 0u);
}

TEST_F(NetworkDownloadTest, RefusedConnectionShowsInTheFirstWrite) {
  start();
  mLog.takeEntries();
  const int refused = 111;
  mNetwork.setSendResult(-1);
  EXPECT_TRUE(mNetwork.connectionEnds(&refused));
  EXPECT_FALSE(mNetwork.isOpen());
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(
          LogEntry{5, "Network socket connected."},
          LogEntry{5, "Clearing unsolicited status updates..."},
          LogEntry{5, "Async write request for 34 bytes."},
          LogEntry{3, "General runtime error occurred during async task: Unable to write data"},
          LogEntry{5, "Cleaning up network transport."}));
}

TEST_F(NetworkDownloadTest, EveryWriteWaitsForItsOwnWriteReady) {
  start();
  EXPECT_TRUE(mNetwork.connectionEnds());
  EXPECT_TRUE(mNetwork.becomesWritable());
  EXPECT_EQ(textOf(mNetwork.sent().at(1)), kDeviceIdRequest);
  EXPECT_TRUE(mNetwork.becomesWritable());
  EXPECT_EQ(mNetwork.sent().size(), 2u);
  EXPECT_FALSE(mNetwork.becomesWritable());
  EXPECT_EQ(mLog.entries().back(), (LogEntry{5, "Async read request for 16 bytes."}));
}

TEST_F(NetworkDownloadTest, SpuriousWriteReadyDoesNotResume) {
  start();
  mNetwork.connectionEnds();
  mNetwork.becomesWritable();
  mNetwork.becomesWritable();
  mLog.takeEntries();
  mNetwork.callBack(StreamSocket::kWriteCallback, nullptr);
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Network ready for write."}));
}

TEST_F(NetworkDownloadTest, BurnsAnImage) {
  installFirmware(kFirmware200);
  start();
  mNetwork.connectionEnds();
  mNetwork.becomesWritable();
  mNetwork.becomesWritable();
  mNetwork.arrives(octets(kDeviceIdResponse + kDeviceId100));
  EXPECT_EQ(mEvents.queued(), 1u);
  mDownloader.resume();
  EXPECT_EQ(mEvents.queued(), 2u);
  mDownloader.resume();
  mNetwork.becomesWritable();
  mNetwork.becomesWritable();
  mNetwork.becomesWritable();
  mNetwork.arrives(octets(kBurnResponse));
  EXPECT_EQ(mEvents.queued(), 3u);
  mDownloader.resume();
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlOk"));
  EXPECT_FALSE(mNetwork.isOpen());

  std::vector<std::string> sent;
  for (const auto& bytes : mNetwork.sent()) sent.push_back(textOf(bytes));
  EXPECT_THAT(
      sent, ElementsAre(kUstatusOffText, kDeviceIdRequest, kBurnHeader200, kFirmware200, kUelText));
}

TEST_F(NetworkDownloadTest, TransportMayEndInsideItsOwnCallback) {
  start();
  mNetwork.connectionEnds();
  mNetwork.setSendResult(-1);
  EXPECT_TRUE(mNetwork.becomesWritable());
  EXPECT_FALSE(mNetwork.isOpen());
  EXPECT_THAT(mEvents.commands(), ElementsAre("DlNo"));
}

}  // namespace
