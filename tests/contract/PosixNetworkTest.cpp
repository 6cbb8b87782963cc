// What sockets of the host can do to a connection, and how the network passes it on.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <numeric>
#include <optional>
#include <thread>

#include "FakeRunLoop.h"
#include "NetworkWorld.h"
#include "NoDescriptors.h"
#include "PosixPrinter.h"
#include "platform/LogHistory.h"
#include "platform/Platform.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/posix/PosixStatusTable.h"

namespace {

using platform::Data;
using platform::makeData;
using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;

constexpr unsigned long kConnectAndWrite = 12;

// More than a connection holds while the printer does not read.
const Bytes& tooMuch() {
  static const Bytes bytes(16u << 20, 0x5A);
  return bytes;
}

Bytes numbered(std::size_t size) {
  Bytes bytes(size);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

class PosixNetworkTest : public testing::Test, public NetworkWorld {
 protected:
  platform::Network& network() override { return *mNetwork; }
  Data printerAddress(bool) override { return mPrinter.address(); }
  void printerSends(const Bytes& bytes) override { mPrinter.sends(bytes); }
  void printerCloses() override { mPrinter.closes(); }
  Bytes printerReceives(std::size_t size) override { return mPrinter.receives(size); }
  void breakConnection() override { mPrinter.resets(); }

  bool settle() override {
    for (int turn = 0; turn < 1000; ++turn) {
      if (!mLoop.pollDescriptors(kQuietTime)) return true;
    }
    return false;
  }

  // Until the printer has taken the connection and everything about it has been told.
  void connect(SocketRecorder& recorder) {
    EXPECT_EQ(recorder.connect(mPrinter.address()), 0);
    EXPECT_TRUE(settle());
    mPrinter.accept();
    recorder.takeTold();
  }

  // The program's descriptor of the connection to the printer.
  int connectedDescriptor() const {
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
      sockaddr_in peer{};
      socklen_t size = sizeof peer;
      if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
          ntohs(peer.sin_port) == mPrinter.port()) {
        return descriptor;
      }
    }
    return -1;
  }

  FakeRunLoop mLoop;
  std::unique_ptr<platform::Network> mNetwork = platform::makePosixNetwork(mLoop);
  PosixPrinter mPrinter;
};

TEST_F(PosixNetworkTest, ConnectionNeitherBlocksNorDelaysShortMessages) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  const int descriptor = connectedDescriptor();
  ASSERT_GE(descriptor, 0);
  int noDelay = 0;
  socklen_t size = sizeof noDelay;
  ::getsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &noDelay, &size);
  EXPECT_NE(noDelay, 0);
  EXPECT_NE(::fcntl(descriptor, F_GETFL) & O_NONBLOCK, 0);
  EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(PosixNetworkTest, CallbacksCarryTheAddress) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  EXPECT_EQ(*recorder.toldAddress, *mPrinter.address());
}

TEST_F(PosixNetworkTest, AddressThatIsNoneCannotBeConnectedTo) {
  SocketRecorder recorder(*this, kAll);
  EXPECT_EQ(recorder.connect(nullptr), EINVAL);
  EXPECT_EQ(recorder.connect(makeData({})), EINVAL);
  EXPECT_EQ(recorder.connect(makeData({16})), EINVAL);
  EXPECT_EQ(recorder.connect(makeData({16, 2})), EINVAL);
  EXPECT_EQ(recorder.connect(makeData({16, 2, 0, 80, 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0})), EINVAL);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_F(PosixNetworkTest, AddressOfAnotherFamilyCannotBeConnectedTo) {
  SocketRecorder recorder(*this, kAll);
  Bytes ipv6(28, 0);
  ipv6[0] = 28;
  ipv6[1] = 30;
  EXPECT_EQ(recorder.connect(makeData(ipv6)), EAFNOSUPPORT);
  EXPECT_EQ(recorder.connect(makeData(Bytes(16, 0))), EAFNOSUPPORT);
  EXPECT_EQ(recorder.connect(makeData({16, 30})), EAFNOSUPPORT);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_F(PosixNetworkTest, AddressThatTheHostRefusesFailsAtOnce) {
  SocketRecorder recorder(*this, kAll);
  EXPECT_NE(recorder.connect(makeData({16, 2, 0, 80, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0})),
            0);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_EQ(recorder.send({1}), ENOTCONN);
}

TEST_F(PosixNetworkTest, SocketConnectsOnce) {
  SocketRecorder recorder(*this, kAll);
  EXPECT_EQ(recorder.connect(mPrinter.address()), 0);
  EXPECT_EQ(recorder.connect(mPrinter.address()), EALREADY);
  EXPECT_TRUE(settle());
  EXPECT_EQ(recorder.connect(mPrinter.address()), EISCONN);
  EXPECT_THAT(recorder.told, ElementsAre("connected", "writable"));
}

TEST_F(PosixNetworkTest, SocketThatCouldNotBeMadeFailsInEachCall) {
  std::optional<NoDescriptors> none(std::in_place);
  SocketRecorder recorder(*this, kAll);
  none.reset();

  recorder.socket->enableCallbacks(11);
  EXPECT_EQ(recorder.connect(mPrinter.address()), EMFILE);
  EXPECT_EQ(recorder.send({1}), EMFILE);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_F(PosixNetworkTest, SendNeedsAConnection) {
  SocketRecorder recorder(*this, kAll);
  EXPECT_EQ(recorder.send({1}), ENOTCONN);
  recorder.connect(mPrinter.address());
  EXPECT_EQ(recorder.send({1}), ENOTCONN);
}

TEST_F(PosixNetworkTest, SendAfterAFailedConnectionFails) {
  mPrinter = PosixPrinter(false);
  SocketRecorder recorder(*this, kAll);
  recorder.connect(mPrinter.address());
  EXPECT_TRUE(settle());
  recorder.socket->enableCallbacks(11);
  EXPECT_EQ(recorder.send({1}), ENOTCONN);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("failed ECONNREFUSED"));
}

class Nowhere final : public platform::SystemLog {
 public:
  void open(const char*, int, int) override {}
  void write(int, const char*) override {}
  void close() override {}
};

// Keeps what sockets note while it lives.
class Notes {
 public:
  std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const auto& entry : mHistory.entries()) texts.push_back(entry.text);
    return texts;
  }

 private:
  Nowhere mNowhere;
  platform::LogHistory mHistory{mNowhere};
  std::unique_ptr<platform::StatusTable> mStatuses = platform::makePosixStatusTable();
  platform::PlatformScope mScope{{.statuses = mStatuses.get(), .logHistory = &mHistory}};
};

TEST_F(PosixNetworkTest, RefusedConnectionIsNoted) {
  const Notes notes;
  mPrinter = PosixPrinter(false);
  SocketRecorder recorder(*this, kAll);
  recorder.connect(mPrinter.address());
  EXPECT_TRUE(settle());
  recorder.socket->enableCallbacks(11);
  recorder.send({1});
  EXPECT_THAT(notes.texts(),
              ElementsAre("Connecting failed: ECONNREFUSED (Connection refused)",
                          "Sending failed: ENOTCONN (Transport endpoint is not connected)"));
}

TEST_F(PosixNetworkTest, AddressOfAnotherFamilyIsNoted) {
  const Notes notes;
  SocketRecorder(*this, kAll).connect(makeData({16, 30}));
  EXPECT_THAT(notes.texts(),
              ElementsAre("Connecting failed: EAFNOSUPPORT (Address family not supported by "
                          "protocol)"));
}

TEST_F(PosixNetworkTest, SuccessIsNotNoted) {
  const Notes notes;
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  EXPECT_EQ(recorder.send({1}), 0);
  EXPECT_THAT(notes.texts(), IsEmpty());
}

TEST_F(PosixNetworkTest, NothingIsWatchedAfterAFailedConnection) {
  mPrinter = PosixPrinter(false);
  SocketRecorder recorder(*this, kAll);
  recorder.connect(mPrinter.address());
  EXPECT_TRUE(settle());
  EXPECT_EQ(mLoop.enabledWatches(), 0u);
}

TEST_F(PosixNetworkTest, IdleConnectionWatchesForDataOnly) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  EXPECT_EQ(mLoop.enabledWatches(), 1u);
}

TEST_F(PosixNetworkTest, EndOfStreamEndsTheWatch) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  mPrinter.sends({1, 2, 3, 4, 5});
  mPrinter.closes();
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("data 5", "data 0"));
  EXPECT_EQ(mLoop.enabledWatches(), 0u);
  recorder.takeTold();
  recorder.socket->enableCallbacks(3);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_F(PosixNetworkTest, ResetIsOneEndOfStream) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  mPrinter.resets();
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("data 0"));
  recorder.takeTold();
  recorder.socket->enableCallbacks(11);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("writable"));
  EXPECT_EQ(mLoop.enabledWatches(), 0u);
}

TEST_F(PosixNetworkTest, PrinterThatClosedItsEndStillReceives) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  mPrinter.closesItsEnd();
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("data 0"));
  EXPECT_EQ(recorder.send({1, 2}), 0);
  EXPECT_EQ(mPrinter.receives(2), (Bytes{1, 2}));
}

TEST_F(PosixNetworkTest, BytesWaitUntilDataAreEnabled) {
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  mPrinter.sends({1, 2});
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
  recorder.socket->enableCallbacks(11);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, testing::UnorderedElementsAre("data 2", "writable"));
}

TEST_F(PosixNetworkTest, EnablingBeforeTheConnectionHoldsAfterIt) {
  SocketRecorder recorder(*this, kConnectOnly);
  recorder.socket->enableCallbacks(11);
  recorder.connect(mPrinter.address());
  recorder.socket->enableCallbacks(11);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("connected", "writable"));
}

TEST_F(PosixNetworkTest, ManyBytesArriveInPiecesOfBoundedSize) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  const Bytes bytes = numbered(200000);
  mPrinter.sends(bytes);
  EXPECT_TRUE(settle());
  EXPECT_EQ(recorder.arrived, bytes);
  EXPECT_THAT(recorder.told, testing::Not(testing::Contains("data 200000")));
  EXPECT_GE(recorder.told.size(), 4u);
}

TEST_F(PosixNetworkTest, LargeImageIsSentWhole) {
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  const Bytes image = numbered(16u << 20);
  Bytes received;
  std::thread reader([&] { received = mPrinter.receives(image.size()); });
  EXPECT_EQ(recorder.send(image, 30.0), 0);
  reader.join();
  EXPECT_EQ(received, image);
}

TEST_F(PosixNetworkTest, LargeImageIsTakenPieceByPiece) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  std::thread reader([&] { mPrinter.receives(tooMuch().size()); });
  EXPECT_EQ(recorder.send(tooMuch(), 30.0), 0);
  reader.join();
  EXPECT_GE(recorder.taken.size(), 3u);
  EXPECT_TRUE(std::ranges::is_sorted(recorder.taken));
  EXPECT_EQ(recorder.taken.back(), 16777216u);
}

TEST_F(PosixNetworkTest, SendThatRunsOutOfTimeTellsWhatWasTaken) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  EXPECT_EQ(recorder.send(tooMuch(), 0.05), ETIMEDOUT);
  EXPECT_THAT(recorder.taken, testing::Not(IsEmpty()));
  EXPECT_LT(recorder.taken.back(), 16777216u);
}

TEST_F(PosixNetworkTest, SendToAPrinterThatDoesNotReadEndsWithinItsBound) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kConnectAndWrite);
  connect(recorder);
  tooMuch();
  const auto begin = Clock::now();
  EXPECT_EQ(recorder.send(tooMuch(), 0.2), ETIMEDOUT);
  const auto taken = Clock::now() - begin;
  EXPECT_GE(taken, std::chrono::milliseconds(200));
  EXPECT_LT(taken, std::chrono::seconds(5));
}

TEST_F(PosixNetworkTest, SendThatRanOutOfTimeLeavesNothingBehind) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  mPrinter.sends({1, 2, 3});
  EXPECT_EQ(recorder.send(tooMuch(), 0.05), ETIMEDOUT);
  EXPECT_EQ(mLoop.enabledWatches(), 0u);
  recorder.socket->enableCallbacks(11);
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_EQ(recorder.send({1}), ENOTCONN);
}

TEST_F(PosixNetworkTest, SendThatRanOutOfTimeIsNotFinishedLater) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  EXPECT_EQ(recorder.send(tooMuch(), 0.05), ETIMEDOUT);
  ssize_t count = 0;
  while ((count = mPrinter.readsOnce(65536)) > 0) {
  }
  EXPECT_EQ(count, -1);
  EXPECT_EQ(errno, ECONNRESET);
}

TEST_F(PosixNetworkTest, BoundIsForTheWholeSendAndNotForItsPieces) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  std::thread slowReader([&] {
    while (mPrinter.readsOnce(4096) > 0) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  });
  tooMuch();
  const auto begin = Clock::now();
  EXPECT_EQ(recorder.send(tooMuch(), 0.3), ETIMEDOUT);
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
  slowReader.join();
}

TEST_F(PosixNetworkTest, SignalsNeitherEndNorProlongASend) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  struct sigaction action {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGALRM, &action, nullptr);
  const itimerval often{{0, 5000}, {0, 5000}};
  ::setitimer(ITIMER_REAL, &often, nullptr);
  tooMuch();
  const auto begin = Clock::now();
  EXPECT_EQ(recorder.send(tooMuch(), 0.2), ETIMEDOUT);
  const auto taken = Clock::now() - begin;
  const itimerval never{};
  ::setitimer(ITIMER_REAL, &never, nullptr);
  EXPECT_GE(taken, std::chrono::milliseconds(200));
  EXPECT_LT(taken, std::chrono::seconds(5));
}

TEST_F(PosixNetworkTest, SendToAPrinterThatIsGoneDoesNotKillTheProgram) {
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  mPrinter.closes();
  recorder.send({1});
  EXPECT_EQ(recorder.send({1}), EPIPE);
  EXPECT_EQ(recorder.send({1}), EPIPE);
}

TEST_F(PosixNetworkTest, ResetDuringASendFailsIt) {
  mPrinter.useSmallBuffers();
  SocketRecorder recorder(*this, kAll);
  connect(recorder);
  std::thread resetter([&] {
    mPrinter.receives(100000);
    mPrinter.resets();
  });
  const int error = recorder.send(tooMuch(), 30.0);
  resetter.join();
  EXPECT_TRUE(error == ECONNRESET || error == EPIPE) << error;
  EXPECT_TRUE(settle());
  EXPECT_THAT(recorder.told, ElementsAre("data 0"));
}

TEST_F(PosixNetworkTest, NothingToSendNeedsNoRoom) {
  SocketRecorder recorder(*this, kConnectOnly);
  connect(recorder);
  EXPECT_EQ(recorder.send({}, 0.0), 0);
}

}  // namespace
