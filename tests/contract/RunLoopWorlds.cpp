#include <QEventLoop>
#include <QTimer>

#include "CoreApplication.h"
#include "FakeRunLoop.h"
#include "PollRunLoop.h"
#include "RunLoopWorld.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/SystemdRunLoop.h"

namespace {

class QtLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& runLoop() override { return *mRunLoop; }

  void runFor(std::chrono::milliseconds time) override {
    QEventLoop turn;
    QTimer::singleShot(time, Qt::PreciseTimer, &turn, &QEventLoop::quit);
    turn.exec();
  }

 private:
  CoreApplication mApplication;
  platform::QtEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeQtRunLoop(mLoop);
};

class SystemdLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& runLoop() override { return *mRunLoop; }

  void runFor(std::chrono::milliseconds time) override {
    const auto end = mRunLoop->startTimer(time, false, [this] { mLoop.quit(); });
    mLoop.run();
  }

 private:
  platform::SystemdEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeSystemdRunLoop(mLoop);
};

class PollLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& runLoop() override { return mRunLoop; }
  void runFor(std::chrono::milliseconds time) override { mRunLoop.runFor(time); }

 private:
  PollRunLoop mRunLoop;
};

class FakeLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& runLoop() override { return mRunLoop; }

  void runFor(std::chrono::milliseconds time) override {
    constexpr std::chrono::milliseconds kStep{1};
    for (std::chrono::milliseconds passed{0}; passed <= time; passed += kStep) {
      mRunLoop.runLater();
      mRunLoop.pollDescriptors();
      mRunLoop.advance(kStep);
    }
  }

 private:
  FakeRunLoop mRunLoop;
};

template <typename World>
std::unique_ptr<RunLoopWorld> make() {
  return std::make_unique<World>();
}

}  // namespace

bool RunLoopWorld::runUntil(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    runFor(std::chrono::milliseconds(5));
  }
  return true;
}

std::vector<RunLoopImplementation> productRunLoops() {
  return {{"Qt", make<QtLoopWorld>}, {"Systemd", make<SystemdLoopWorld>}};
}

std::vector<RunLoopImplementation> runLoopImplementations() {
  std::vector<RunLoopImplementation> all = productRunLoops();
  all.push_back({"Poll", make<PollLoopWorld>});
  all.push_back({"Fake", make<FakeLoopWorld>});
  return all;
}
