#include <chrono>

#include "CoreApplication.h"
#include "EventsWorld.h"
#include "FakeEvents.h"
#include "platform/RunLoop.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtEvents.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/SystemdEvents.h"
#include "platform/systemd/SystemdRunLoop.h"

namespace {

class QtWorld final : public EventsWorld {
 public:
  platform::Events& events() override { return *mEvents; }

  platform::OSStatus send(const platform::EventTarget& target,
                          const platform::Event& event) override {
    return mEvents->sendToTarget(target, event);
  }

  void runLoop(std::function<void()> step) override {
    const auto idle = mRunLoop->startTimer(std::chrono::milliseconds(5), true, std::move(step));
    mEvents->runApplicationEventLoop();
  }

 private:
  CoreApplication mApplication;
  platform::QtEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeQtRunLoop(mLoop);
  std::unique_ptr<platform::QtEvents> mEvents = platform::makeQtEvents(mLoop);
};

class SystemdWorld final : public EventsWorld {
 public:
  platform::Events& events() override { return mEvents; }

  platform::OSStatus send(const platform::EventTarget& target,
                          const platform::Event& event) override {
    return mEvents.sendToTarget(target, event);
  }

  void runLoop(std::function<void()> step) override {
    const auto idle = mRunLoop->startTimer(std::chrono::milliseconds(5), true, std::move(step));
    mEvents.runApplicationEventLoop();
  }

 private:
  platform::SystemdEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeSystemdRunLoop(mLoop);
  platform::SystemdEvents mEvents{mLoop, *mRunLoop};
};

class FakeWorld final : public EventsWorld {
 public:
  platform::Events& events() override { return mEvents; }

  platform::OSStatus send(const platform::EventTarget& target,
                          const platform::Event& event) override {
    return mEvents.send(target, event);
  }

  void runLoop(std::function<void()> step) override {
    mEvents.whenIdle([step] {
      step();
      return true;
    });
    mEvents.runApplicationEventLoop();
  }

 private:
  FakeEvents mEvents;
};

template <typename World>
std::unique_ptr<EventsWorld> make() {
  return std::make_unique<World>();
}

}  // namespace

std::vector<EventsImplementation> eventsImplementations() {
  return {{"Qt", make<QtWorld>}, {"Systemd", make<SystemdWorld>}, {"Fake", make<FakeWorld>}};
}
