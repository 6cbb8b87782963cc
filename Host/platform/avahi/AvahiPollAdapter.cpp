#include "platform/avahi/AvahiPollAdapter.h"

#include <avahi-common/timeval.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

// Avahi declares both types and leaves them to the loop.
struct AvahiWatch {
  AvahiWatch(platform::RunLoop& runLoop, int descriptor, AvahiWatchCallback callback,
             void* userData)
      : mRunLoop(runLoop), mDescriptor(descriptor), mCallback(callback), mUserData(userData) {}

  void update(AvahiWatchEvent events) {
    watchFor((events & AVAHI_WATCH_IN) != 0, platform::RunLoop::Interest::Readable, POLLIN,
             mReadable);
    watchFor((events & AVAHI_WATCH_OUT) != 0, platform::RunLoop::Interest::Writable, POLLOUT,
             mWritable);
  }

  AvahiWatchEvent happened() const { return mHappened; }

 private:
  void watchFor(bool wanted, platform::RunLoop::Interest interest, short events,
                std::unique_ptr<platform::RunLoop::Watch>& watch) {
    if (watch != nullptr) {
      watch->setEnabled(wanted);
    } else if (wanted) {
      watch = mRunLoop.watch(mDescriptor, interest, [this, events] { ready(events); });
    }
  }

  // The loop reports a hang-up or an error as readiness; Avahi wants to know which it is. The
  // callback may free this watch.
  void ready(short events) {
    pollfd state{mDescriptor, events, 0};
    if (::poll(&state, 1, 0) <= 0) return;
    mHappened = static_cast<AvahiWatchEvent>(state.revents);
    mCallback(this, mDescriptor, mHappened, mUserData);
  }

  platform::RunLoop& mRunLoop;
  int mDescriptor;
  AvahiWatchCallback mCallback;
  void* mUserData;
  AvahiWatchEvent mHappened{};
  std::unique_ptr<platform::RunLoop::Watch> mReadable;
  std::unique_ptr<platform::RunLoop::Watch> mWritable;
};

struct AvahiTimeout {
  AvahiTimeout(platform::RunLoop& runLoop, AvahiTimeoutCallback callback, void* userData)
      : mRunLoop(runLoop), mCallback(callback), mUserData(userData) {}

  // The time is one of the wall clock; null disables the timeout.
  void update(const timeval* time) {
    mTimer.reset();
    if (time == nullptr) return;
    const AvahiUsec left = std::max<AvahiUsec>(0, -avahi_age(time));
    const auto delay =
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::microseconds(left));
    mTimer = mRunLoop.startTimer(delay, false, [this] { mCallback(this, mUserData); });
  }

 private:
  platform::RunLoop& mRunLoop;
  AvahiTimeoutCallback mCallback;
  void* mUserData;
  std::unique_ptr<platform::RunLoop::Timer> mTimer;
};

namespace platform {
namespace {

RunLoop& runLoopOf(const AvahiPoll* api) { return *static_cast<RunLoop*>(api->userdata); }

AvahiWatch* watchNew(const AvahiPoll* api, int descriptor, AvahiWatchEvent events,
                     AvahiWatchCallback callback, void* userData) {
  auto watch = std::make_unique<AvahiWatch>(runLoopOf(api), descriptor, callback, userData);
  watch->update(events);
  return watch.release();
}

AvahiTimeout* timeoutNew(const AvahiPoll* api, const timeval* time, AvahiTimeoutCallback callback,
                         void* userData) {
  auto timeout = std::make_unique<AvahiTimeout>(runLoopOf(api), callback, userData);
  timeout->update(time);
  return timeout.release();
}

}  // namespace

AvahiPollAdapter::AvahiPollAdapter(RunLoop& runLoop)
    : mApi{.userdata = &runLoop,
           .watch_new = watchNew,
           .watch_update = [](AvahiWatch* watch, AvahiWatchEvent events) { watch->update(events); },
           .watch_get_events = [](AvahiWatch* watch) { return watch->happened(); },
           .watch_free = [](AvahiWatch* watch) { delete watch; },
           .timeout_new = timeoutNew,
           .timeout_update = [](AvahiTimeout* timeout,
                                const timeval* time) { timeout->update(time); },
           .timeout_free = [](AvahiTimeout* timeout) { delete timeout; }} {}

}  // namespace platform
