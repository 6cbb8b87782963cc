// What the program relies on in every network, the double included.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWorld.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;

constexpr unsigned long kDataAndWrite = 11;

class NetworkContract : public testing::TestWithParam<NetworkImplementation> {
 protected:
  // Until everything about the connection has been told.
  void connect(SocketRecorder& recorder) {
    EXPECT_EQ(recorder.connect(mWorld->printerAddress(true)), 0);
    EXPECT_TRUE(mWorld->settle());
    recorder.takeTold();
  }

  std::unique_ptr<NetworkWorld> mWorld = GetParam().make();
};

TEST_P(NetworkContract, ConnectionIsToldOnceAndNeverFromInsideTheCall) {
  SocketRecorder recorder(*mWorld, kConnectOnly);
  EXPECT_EQ(recorder.connect(mWorld->printerAddress(true)), 0);
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("connected"));
}

TEST_P(NetworkContract, FailedConnectionIsToldOnceWithItsError) {
  SocketRecorder recorder(*mWorld, kAll);
  EXPECT_EQ(recorder.connect(mWorld->printerAddress(false)), 0);
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("failed ECONNREFUSED"));
}

TEST_P(NetworkContract, WriteReadyFollowsTheConnectionOnce) {
  SocketRecorder recorder(*mWorld, kAll);
  recorder.connect(mWorld->printerAddress(true));
  EXPECT_TRUE(mWorld->settle());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("connected", "writable"));
}

TEST_P(NetworkContract, EachEnablingGivesOneWriteReady) {
  SocketRecorder recorder(*mWorld, kAll);
  connect(recorder);
  recorder.socket->enableCallbacks(kDataAndWrite);
  recorder.socket->enableCallbacks(kDataAndWrite);
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("writable"));
}

TEST_P(NetworkContract, SentBytesReachThePrinterInOrder) {
  SocketRecorder recorder(*mWorld, kConnectOnly);
  connect(recorder);
  EXPECT_EQ(recorder.send({1, 2, 3}), 0);
  EXPECT_EQ(recorder.send({4}), 0);
  EXPECT_EQ(mWorld->printerReceives(4), (Bytes{1, 2, 3, 4}));
}

TEST_P(NetworkContract, BytesThatTheHostHasTakenAreToldFromInsideTheSend) {
  SocketRecorder recorder(*mWorld, kConnectOnly);
  connect(recorder);
  EXPECT_EQ(recorder.send({1, 2, 3}), 0);
  EXPECT_THAT(recorder.taken, testing::WhenSorted(testing::ElementsAreArray(recorder.taken)));
  ASSERT_THAT(recorder.taken, testing::Not(IsEmpty()));
  EXPECT_EQ(recorder.taken.back(), 3u);
  recorder.taken.clear();
  EXPECT_EQ(recorder.send({4}), 0);
  EXPECT_THAT(recorder.taken, ElementsAre(1));
  recorder.taken.clear();
  EXPECT_EQ(recorder.send({}), 0);
  EXPECT_THAT(recorder.taken, IsEmpty());
}

TEST_P(NetworkContract, SendNeedsNobodyWhoWatchesIt) {
  SocketRecorder recorder(*mWorld, kConnectOnly);
  connect(recorder);
  const Bytes bytes{1, 2, 3};
  EXPECT_EQ(recorder.socket->send(bytes, 5.0, {}), 0);
  EXPECT_EQ(mWorld->printerReceives(3), (Bytes{1, 2, 3}));
}

TEST_P(NetworkContract, ArrivingBytesAreTold) {
  SocketRecorder recorder(*mWorld, kAll);
  connect(recorder);
  mWorld->printerSends({0xAC, 0, 6});
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.takeTold(), ElementsAre("data 3"));
  mWorld->printerSends({7});
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.takeTold(), ElementsAre("data 1"));
  EXPECT_EQ(recorder.arrived, (Bytes{0xAC, 0, 6, 7}));
}

TEST_P(NetworkContract, EndOfStreamIsOneEmptyDataNotice) {
  SocketRecorder recorder(*mWorld, kAll);
  connect(recorder);
  mWorld->printerCloses();
  EXPECT_TRUE(mWorld->settle());
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("data 0"));
}

TEST_P(NetworkContract, OnlyEnabledTypesAreTold) {
  SocketRecorder recorder(*mWorld, kConnectOnly);
  recorder.connect(mWorld->printerAddress(true));
  EXPECT_TRUE(mWorld->settle());
  mWorld->printerSends({1});
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, ElementsAre("connected"));
}

TEST_P(NetworkContract, SendOnABrokenConnectionFails) {
  SocketRecorder recorder(*mWorld, kAll);
  recorder.connect(mWorld->printerAddress(true));
  EXPECT_TRUE(mWorld->settle());
  mWorld->breakConnection();
  EXPECT_NE(recorder.send({1}), 0);
  EXPECT_NE(recorder.send({1}), 0);
  EXPECT_THAT(recorder.taken, IsEmpty());
}

TEST_P(NetworkContract, NothingIsToldAfterTheSocketIsGone) {
  SocketRecorder recorder(*mWorld, kAll);
  recorder.connect(mWorld->printerAddress(true));
  recorder.socket.reset();
  EXPECT_TRUE(mWorld->settle());
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_P(NetworkContract, SocketMayGoInEachOfItsCallbacks) {
  for (const char* last : {"connected", "writable", "data 3"}) {
    mWorld.reset();  // there may be one application at a time
    mWorld = GetParam().make();
    SocketRecorder recorder(*mWorld, kAll);
    recorder.destroyWhenTold = last;
    recorder.connect(mWorld->printerAddress(true));
    EXPECT_TRUE(mWorld->settle());
    mWorld->printerSends({1, 2, 3});
    EXPECT_TRUE(mWorld->settle());
    EXPECT_EQ(recorder.told.back(), last);
    EXPECT_EQ(recorder.socket, nullptr);
  }
}

TEST_P(NetworkContract, SocketMayGoWhenItsConnectionFails) {
  SocketRecorder recorder(*mWorld, kAll);
  recorder.destroyWhenTold = "failed ECONNREFUSED";
  recorder.connect(mWorld->printerAddress(false));
  EXPECT_TRUE(mWorld->settle());
  EXPECT_EQ(recorder.socket, nullptr);
}

TEST_P(NetworkContract, AddressesAreShownInTheirNumericForm) {
  platform::Network& network = mWorld->network();
  const Bytes ipv4{192, 168, 0, 9};
  const Bytes ipv6{0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x2A};
  EXPECT_EQ(network.numericAddress(2, ipv4).utf8(), "192.168.0.9");
  EXPECT_EQ(network.numericAddress(30, ipv6).utf8(), "fe80::2a");
  EXPECT_EQ(network.numericAddress(2, ipv6).utf8(), "254.128.0.0");
}

TEST_P(NetworkContract, OtherFamiliesAndShortAddressesHaveNoNumericForm) {
  platform::Network& network = mWorld->network();
  const Bytes address(16, 1);
  const std::span<const std::uint8_t> bytes(address);
  EXPECT_TRUE(network.numericAddress(2, bytes.first(3)).isNull());
  EXPECT_TRUE(network.numericAddress(2, {}).isNull());
  EXPECT_TRUE(network.numericAddress(30, bytes.first(15)).isNull());
  EXPECT_TRUE(network.numericAddress(10, bytes).isNull());
  EXPECT_TRUE(network.numericAddress(0, bytes).isNull());
  EXPECT_TRUE(network.numericAddress(-1, bytes).isNull());
}

INSTANTIATE_TEST_SUITE_P(Network, NetworkContract, testing::ValuesIn(networkImplementations()),
                         [](const auto& each) { return each.param.name; });

}  // namespace
