#include "EventLoop.h"

#include <avahi-common/simple-watch.h>
#include <avahi-common/timeval.h>
#include <poll.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace virtualprinter {
namespace {

AvahiWatchEvent toAvahi(short events) {
  int flags = 0;
  if ((events & POLLIN) != 0) flags |= AVAHI_WATCH_IN;
  if ((events & POLLOUT) != 0) flags |= AVAHI_WATCH_OUT;
  return static_cast<AvahiWatchEvent>(flags);
}

class PollWatch : public EventLoop::Watch {
 public:
  PollWatch(const AvahiPoll* poll, int descriptor, short events, std::function<void(short)> ready)
      : mPoll(poll), mReady(std::make_shared<std::function<void(short)>>(std::move(ready))) {
    mWatch = mPoll->watch_new(mPoll, descriptor, toAvahi(events), &PollWatch::fired, this);
    if (mWatch == nullptr) throw std::bad_alloc();
  }
  ~PollWatch() override { mPoll->watch_free(mWatch); }
  PollWatch(const PollWatch&) = delete;
  PollWatch& operator=(const PollWatch&) = delete;

  void setEvents(short events) override { mPoll->watch_update(mWatch, toAvahi(events)); }

 private:
  static void fired(AvahiWatch*, int, AvahiWatchEvent events, void* self) {
    // The callback may destroy the watch.
    const auto ready = static_cast<PollWatch*>(self)->mReady;
    short ready_events = 0;
    if ((events & AVAHI_WATCH_IN) != 0) ready_events |= POLLIN;
    if ((events & AVAHI_WATCH_OUT) != 0) ready_events |= POLLOUT;
    if ((events & AVAHI_WATCH_ERR) != 0) ready_events |= POLLERR;
    if ((events & AVAHI_WATCH_HUP) != 0) ready_events |= POLLHUP;
    (*ready)(ready_events);
  }

  const AvahiPoll* mPoll;
  AvahiWatch* mWatch = nullptr;
  std::shared_ptr<std::function<void(short)>> mReady;
};

class PollTimer : public Scheduler::Timer {
 public:
  PollTimer(const AvahiPoll* poll, std::chrono::microseconds delay, std::function<void()> callback)
      : mPoll(poll), mCallback(std::move(callback)) {
    timeval when{};
    gettimeofday(&when, nullptr);
    avahi_timeval_add(&when, delay.count());
    mTimeout = mPoll->timeout_new(mPoll, &when, &PollTimer::fired, this);
    if (mTimeout == nullptr) throw std::bad_alloc();
  }
  ~PollTimer() override { mPoll->timeout_free(mTimeout); }
  PollTimer(const PollTimer&) = delete;
  PollTimer& operator=(const PollTimer&) = delete;

 private:
  static void fired(AvahiTimeout* timeout, void* self) {
    auto* timer = static_cast<PollTimer*>(self);
    timer->mPoll->timeout_update(timeout, nullptr);
    // The callback may destroy the timer.
    const std::function<void()> callback = std::move(timer->mCallback);
    callback();
  }

  const AvahiPoll* mPoll;
  AvahiTimeout* mTimeout = nullptr;
  std::function<void()> mCallback;
};

}  // namespace

EventLoop::EventLoop() : mPoll(avahi_simple_poll_new()) {
  if (mPoll == nullptr) throw std::runtime_error("the event loop cannot be made");
}

EventLoop::~EventLoop() { avahi_simple_poll_free(mPoll); }

std::unique_ptr<EventLoop::Watch> EventLoop::watch(int descriptor, short events,
                                                   std::function<void(short)> ready) {
  return std::make_unique<PollWatch>(avahiPoll(), descriptor, events, std::move(ready));
}

std::unique_ptr<Scheduler::Timer> EventLoop::after(std::chrono::microseconds delay,
                                                   std::function<void()> fired) {
  return std::make_unique<PollTimer>(avahiPoll(), delay, std::move(fired));
}

void EventLoop::run() {
  while (!mQuit && avahi_simple_poll_iterate(mPoll, -1) == 0) {
  }
}

void EventLoop::quit() { mQuit = true; }

const AvahiPoll* EventLoop::avahiPoll() const { return avahi_simple_poll_get(mPoll); }

}  // namespace virtualprinter
