#include "platform/systemd/SystemdRunLoop.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <systemd/sd-event.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <deque>
#include <memory>
#include <utility>

#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/checkSystemd.h"

namespace platform {
namespace {

using Callback = std::function<void()>;
using std::chrono::microseconds;

// A source of the loop, and what it calls. Ends with its holder, who may be dropped from inside the
// callback: what that has captured stays alive until it returns.
class Source {
 public:
  Source(SystemdEventLoop& loop, Callback callback)
      : mLoop(loop), mCallback(std::make_shared<const Callback>(std::move(callback))) {}
  ~Source() { sd_event_source_unref(mSource); }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  sd_event_source*& get() { return mSource; }

  void call() const {
    const auto callback = mCallback;
    SystemdEventLoop& loop = mLoop;
    loop.guard(*callback);
  }

 private:
  SystemdEventLoop& mLoop;
  std::shared_ptr<const Callback> mCallback;
  sd_event_source* mSource = nullptr;
};

// The host's event queue takes a descriptor once, whatever it is watched for: each watch has one of
// its own for the same file.
class Duplicate {
 public:
  explicit Duplicate(int descriptor) : mDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 0)) {
    if (mDescriptor < 0) checkSystemd(-errno, "Unable to watch a file descriptor");
  }
  ~Duplicate() { close(mDescriptor); }
  Duplicate(const Duplicate&) = delete;
  Duplicate& operator=(const Duplicate&) = delete;

  int get() const { return mDescriptor; }

 private:
  int mDescriptor;
};

class SystemdWatch final : public RunLoop::Watch {
 public:
  SystemdWatch(SystemdEventLoop& loop, int descriptor, std::uint32_t events, Callback ready)
      : mDescriptor(descriptor), mSource(loop, std::move(ready)) {
    checkSystemd(
        sd_event_add_io(loop.get(), &mSource.get(), mDescriptor.get(), events, &called, &mSource),
        "Unable to watch a file descriptor");
  }

  void setEnabled(bool enabled) override {
    sd_event_source_set_enabled(mSource.get(), enabled ? SD_EVENT_ON : SD_EVENT_OFF);
  }

 private:
  static int called(sd_event_source*, int, std::uint32_t, void* source) {
    static_cast<const Source*>(source)->call();
    return 0;
  }

  Duplicate mDescriptor;
  Source mSource;
};

class SystemdTimer final : public RunLoop::Timer {
 public:
  SystemdTimer(SystemdEventLoop& loop, std::chrono::milliseconds delay, bool repeating,
               Callback fired)
      : mDelay(std::max(delay, std::chrono::milliseconds(0))),
        mRepeating(repeating),
        mSource(loop, std::move(fired)) {
    constexpr std::uint64_t kAtOnce = 1;  // microseconds by which it may be late
    checkSystemd(
        sd_event_add_time_relative(loop.get(), &mSource.get(), CLOCK_MONOTONIC,
                                   static_cast<std::uint64_t>(microseconds(mDelay).count()),
                                   kAtOnce, &SystemdTimer::fired, this),
        "Unable to start a timer");
  }

 private:
  static int fired(sd_event_source* source, std::uint64_t, void* timer) {
    auto& fired = *static_cast<SystemdTimer*>(timer);
    if (fired.mRepeating) {
      sd_event_source_set_time_relative(
          source, static_cast<std::uint64_t>(microseconds(fired.mDelay).count()));
      sd_event_source_set_enabled(source, SD_EVENT_ONESHOT);
    }
    fired.mSource.call();
    return 0;
  }

  std::chrono::milliseconds mDelay;
  bool mRepeating;
  Source mSource;
};

class SystemdRunLoop final : public RunLoop {
 public:
  explicit SystemdRunLoop(SystemdEventLoop& loop)
      : mLoop(loop), mPutOff(loop, [this] { callNext(); }) {
    checkSystemd(sd_event_add_defer(loop.get(), &mPutOff.get(), &deferred, &mPutOff),
                 "Unable to put calls off");
    sd_event_source_set_enabled(mPutOff.get(), SD_EVENT_OFF);
  }

  std::unique_ptr<Watch> watch(int descriptor, Interest interest, Callback ready) override {
    const std::uint32_t events = interest == Interest::Readable ? EPOLLIN : EPOLLOUT;
    return std::make_unique<SystemdWatch>(mLoop, descriptor, events, std::move(ready));
  }

  std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                    Callback fired) override {
    return std::make_unique<SystemdTimer>(mLoop, delay, repeating, std::move(fired));
  }

  void callLater(Callback callback) override {
    mCallbacks.push_back(std::move(callback));
    sd_event_source_set_enabled(mPutOff.get(), SD_EVENT_ONESHOT);
  }

  bool waitUntilReady(int descriptor, Interest interest,
                      std::chrono::steady_clock::time_point deadline) override {
    pollfd waiting{descriptor,
                   static_cast<short>(interest == Interest::Readable ? POLLIN : POLLOUT), 0};
    for (;;) {
      const auto left =
          std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) return false;
      if (poll(&waiting, 1, static_cast<int>(left.count())) > 0) return true;
    }
  }

 private:
  static int deferred(sd_event_source*, void* source) {
    static_cast<const Source*>(source)->call();
    return 0;
  }

  void callNext() {
    const Callback next = std::move(mCallbacks.front());
    mCallbacks.pop_front();
    if (!mCallbacks.empty()) sd_event_source_set_enabled(mPutOff.get(), SD_EVENT_ONESHOT);
    next();
  }

  SystemdEventLoop& mLoop;
  std::deque<Callback> mCallbacks;
  Source mPutOff;
};

}  // namespace

std::unique_ptr<RunLoop> makeSystemdRunLoop(SystemdEventLoop& loop) {
  return std::make_unique<SystemdRunLoop>(loop);
}

}  // namespace platform
