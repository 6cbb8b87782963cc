#include "NetworkWorld.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include "FakeNetwork.h"
#include "FakeRunLoop.h"
#include "PosixNetworkWorld.h"

namespace {

using platform::Data;
using Bytes = std::vector<std::uint8_t>;

// Enough turns for anything that comes to rest at all.
constexpr int kManyTurns = 1000;

struct HandTurned {
  FakeRunLoop mLoop;
};

class PosixOnFakeLoop : private HandTurned, public PosixNetworkWorld {
 public:
  PosixOnFakeLoop() : PosixNetworkWorld(mLoop) {}

  bool settle() override {
    for (int turn = 0; turn < kManyTurns; ++turn) {
      if (!mLoop.pollDescriptors(kQuietTime)) return true;
    }
    return false;
  }
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

std::vector<NetworkImplementation> networkImplementations() {
  return {{"posix", [] { return std::make_unique<PosixOnFakeLoop>(); }},
          {"fake", [] { return std::make_unique<FakeNetworkWorld>(); }}};
}
