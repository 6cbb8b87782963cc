// The host's network on the run loops of the two programs.
#include <functional>
#include <memory>
#include <utility>

#include "NetworkWorld.h"
#include "PosixNetworkWorld.h"
#include "RunLoopWorld.h"

namespace {

using platform::RunLoop;

// Counts what is ready, so that it can be seen to come to rest.
class CountingLoop final : public RunLoop {
 public:
  explicit CountingLoop(RunLoop& loop) : mLoop(loop) {}

  std::size_t calls() const { return mCalls; }

  std::unique_ptr<Watch> watch(int descriptor, Interest interest,
                               std::function<void()> ready) override {
    return mLoop.watch(descriptor, interest, [this, ready = std::move(ready)] {
      ++mCalls;
      ready();
    });
  }
  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    std::function<void()> fired) override {
    return mLoop.startTimer(delay, repeating, std::move(fired));
  }
  void callLater(std::function<void()> callback) override { mLoop.callLater(std::move(callback)); }
  bool waitUntilReady(int descriptor, Interest interest,
                      std::chrono::steady_clock::time_point deadline) override {
    return mLoop.waitUntilReady(descriptor, interest, deadline);
  }

 private:
  RunLoop& mLoop;
  std::size_t mCalls = 0;
};

struct ProductLoop {
  explicit ProductLoop(std::unique_ptr<RunLoopWorld> world) : mWorld(std::move(world)) {}

  std::unique_ptr<RunLoopWorld> mWorld;
  CountingLoop mLoop{mWorld->runLoop()};
};

class PosixOnProductLoop : private ProductLoop, public PosixNetworkWorld {
 public:
  explicit PosixOnProductLoop(std::unique_ptr<RunLoopWorld> world)
      : ProductLoop(std::move(world)), PosixNetworkWorld(mLoop) {}

  bool settle() override {
    constexpr int kManyTurns = 100;
    for (int turn = 0; turn < kManyTurns; ++turn) {
      const std::size_t before = mLoop.calls();
      mWorld->runFor(kQuietTime);
      if (mLoop.calls() == before) return true;
    }
    return false;
  }
};

}  // namespace

std::vector<NetworkImplementation> networkImplementations() {
  std::vector<NetworkImplementation> all;
  for (const RunLoopImplementation& loop : productRunLoops()) {
    all.push_back(
        {loop.name, [make = loop.make] { return std::make_unique<PosixOnProductLoop>(make()); }});
  }
  return all;
}
