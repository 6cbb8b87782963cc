#include "NetworkWorld.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <optional>

#include "FakeNetwork.h"
#include "FakeRunLoop.h"
#include "PosixPrinter.h"
#include "platform/posix/PosixNetwork.h"

namespace {

using platform::Data;
using Bytes = std::vector<std::uint8_t>;

// Enough turns for anything that comes to rest at all.
constexpr int kManyTurns = 1000;

class PosixNetworkWorld : public NetworkWorld {
 public:
  platform::Network& network() override { return *mNetwork; }

  Data printerAddress(bool listening) override {
    mPrinter.emplace(listening);
    return mPrinter->address();
  }

  bool settle() override {
    for (int turn = 0; turn < kManyTurns; ++turn) {
      if (!mLoop.pollDescriptors(kQuietTime)) return true;
    }
    return false;
  }

  void printerSends(const Bytes& bytes) override { connected().sends(bytes); }
  void printerCloses() override { connected().closes(); }
  Bytes printerReceives(std::size_t size) override { return connected().receives(size); }
  void breakConnection() override {
    connected().resets();
    EXPECT_TRUE(settle());
  }

 private:
  PosixPrinter& connected() {
    if (!mAccepted) mPrinter->accept();
    mAccepted = true;
    return *mPrinter;
  }

  FakeRunLoop mLoop;
  std::unique_ptr<platform::Network> mNetwork = platform::makePosixNetwork(mLoop);
  std::optional<PosixPrinter> mPrinter;
  bool mAccepted = false;
};

class FakeNetworkWorld : public NetworkWorld {
 public:
  FakeNetworkWorld() { mNetwork.takeAtOnce(2); }

  platform::Network& network() override { return mNetwork; }

  Data printerAddress(bool listening) override {
    mListening = listening;
    return platform::makeData({16, 2, 0x23, 0x8C, 192, 168, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0});
  }

  bool settle() override {
    const bool isConnecting = mNetwork.connectedTo() != nullptr && !mConnectionEnded;
    if (isConnecting) {
      mConnectionEnded = true;
      const int refused = ECONNREFUSED;
      mNetwork.connectionEnds(mListening ? nullptr : &refused);
    }
    if (mConnectionEnded && mListening) mNetwork.becomesWritable();
    return true;
  }

  void printerSends(const Bytes& bytes) override { mNetwork.arrives(bytes); }
  void printerCloses() override { mNetwork.arrives({}); }
  void breakConnection() override { mNetwork.setSendResult(EPIPE); }

  Bytes printerReceives(std::size_t size) override {
    Bytes received;
    for (const Bytes& sent : mNetwork.sent())
      received.insert(received.end(), sent.begin(), sent.end());
    EXPECT_EQ(received.size(), size);
    return received;
  }

 private:
  FakeNetwork mNetwork;
  bool mListening = false;
  bool mConnectionEnded = false;
};

}  // namespace

std::unique_ptr<NetworkWorld> makePosixNetworkWorld() {
  return std::make_unique<PosixNetworkWorld>();
}

std::unique_ptr<NetworkWorld> makeFakeNetworkWorld() {
  return std::make_unique<FakeNetworkWorld>();
}
