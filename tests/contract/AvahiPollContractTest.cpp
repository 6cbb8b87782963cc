// What Avahi relies on in the loop that it is given: the program's own run loop behind the adapter,
// and for comparison Avahi's own loop.
#include <avahi-common/simple-watch.h>
#include <avahi-common/timeval.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "RunLoopWorld.h"
#include "platform/avahi/AvahiPollAdapter.h"

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class AvahiPollWorld {
 public:
  virtual ~AvahiPollWorld() = default;
  virtual const AvahiPoll* api() = 0;
  virtual void turn(milliseconds atMost) = 0;
};

class AdapterWorld : public AvahiPollWorld {
 public:
  explicit AdapterWorld(std::unique_ptr<RunLoopWorld> world)
      : mWorld(std::move(world)), mAdapter(mWorld->runLoop()) {}

  const AvahiPoll* api() override { return mAdapter.api(); }
  void turn(milliseconds atMost) override { mWorld->runFor(atMost); }

 private:
  std::unique_ptr<RunLoopWorld> mWorld;
  platform::AvahiPollAdapter mAdapter;
};

class SimplePollWorld : public AvahiPollWorld {
 public:
  SimplePollWorld() : mPoll(avahi_simple_poll_new()) {}
  ~SimplePollWorld() override { avahi_simple_poll_free(mPoll); }
  SimplePollWorld(const SimplePollWorld&) = delete;
  SimplePollWorld& operator=(const SimplePollWorld&) = delete;

  const AvahiPoll* api() override { return avahi_simple_poll_get(mPoll); }
  void turn(milliseconds atMost) override {
    avahi_simple_poll_iterate(mPoll, static_cast<int>(atMost.count()));
  }

 private:
  AvahiSimplePoll* mPoll;
};

struct Implementation {
  std::string name;
  std::function<std::unique_ptr<AvahiPollWorld>()> make;
};

void PrintTo(const Implementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

// On the loops that have real descriptors and a real clock.
std::vector<Implementation> implementations() {
  std::vector<Implementation> all{
      {"SimplePoll", [] { return std::make_unique<SimplePollWorld>(); }}};
  for (const RunLoopImplementation& loop : runLoopImplementations()) {
    if (std::string(loop.name) == "Fake") continue;
    all.push_back({std::string(loop.name) + "RunLoop",
                   [make = loop.make] { return std::make_unique<AdapterWorld>(make()); }});
  }
  return all;
}

// A watch that keeps what it is told, as poll(2) events, each once in a row.
class WatchRecorder {
 public:
  WatchRecorder(const AvahiPoll* api, int descriptor, int wanted)
      : mApi(api), mDescriptor(descriptor) {
    watch = api->watch_new(api, descriptor, static_cast<AvahiWatchEvent>(wanted), told, this);
  }
  ~WatchRecorder() { free(); }
  WatchRecorder(const WatchRecorder&) = delete;
  WatchRecorder& operator=(const WatchRecorder&) = delete;

  void update(int wanted) { mApi->watch_update(watch, static_cast<AvahiWatchEvent>(wanted)); }

  void free() {
    if (watch != nullptr) mApi->watch_free(std::exchange(watch, nullptr));
  }

  AvahiWatch* watch;
  std::vector<int> events;
  std::function<void()> action;

 private:
  static void told(AvahiWatch* toldWatch, int descriptor, AvahiWatchEvent event, void* userData) {
    auto& self = *static_cast<WatchRecorder*>(userData);
    EXPECT_EQ(toldWatch, self.watch);
    EXPECT_EQ(descriptor, self.mDescriptor);
    EXPECT_EQ(event, self.mApi->watch_get_events(toldWatch));
    if (self.events.empty() || self.events.back() != event) self.events.push_back(event);
    if (self.action) self.action();
  }

  const AvahiPoll* mApi;
  int mDescriptor;
};

class AvahiPollContract : public testing::TestWithParam<Implementation> {
 protected:
  AvahiPollContract() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, mEnds.data()), 0); }
  ~AvahiPollContract() override {
    close(mEnds[0]);
    if (mEnds[1] >= 0) close(mEnds[1]);
  }

  void otherEndSends() { EXPECT_EQ(write(mEnds[1], "x", 1), 1); }
  void otherEndCloses() { close(std::exchange(mEnds[1], -1)); }

  // Nothing more can be written.
  void fill() {
    const std::vector<char> bytes(4096);
    while (send(mEnds[0], bytes.data(), bytes.size(), MSG_DONTWAIT) > 0) {
    }
  }

  void run(milliseconds time = milliseconds(30)) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) mWorld->turn(milliseconds(5));
  }

  int descriptor() const { return mEnds[0]; }
  const AvahiPoll* api() { return mWorld->api(); }

  std::array<int, 2> mEnds{};
  std::unique_ptr<AvahiPollWorld> mWorld = GetParam().make();
};

// Watches.

TEST_P(AvahiPollContract, ReadableDescriptorIsToldAsReadable) {
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN);
  run();
  EXPECT_THAT(recorder.events, IsEmpty());
  otherEndSends();
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_IN));
}

TEST_P(AvahiPollContract, WritableDescriptorIsToldAsWritable) {
  fill();
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_OUT);
  run();
  EXPECT_THAT(recorder.events, IsEmpty());
  std::vector<char> taken(1 << 20);
  while (recv(mEnds[1], taken.data(), taken.size(), MSG_DONTWAIT) > 0) {
  }
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_OUT));
}

TEST_P(AvahiPollContract, BothDirectionsAreTold) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN | AVAHI_WATCH_OUT);
  run();
  int all = 0;
  for (const int event : recorder.events) all |= event;
  EXPECT_EQ(all, AVAHI_WATCH_IN | AVAHI_WATCH_OUT);
}

TEST_P(AvahiPollContract, WatchIsToldAsLongAsItIsReady) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN);
  int times = 0;
  recorder.action = [&] { ++times; };
  run();
  EXPECT_GT(times, 1);
}

TEST_P(AvahiPollContract, WatchForNothingIsToldNothing) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), 0);
  run();
  EXPECT_THAT(recorder.events, IsEmpty());
}

TEST_P(AvahiPollContract, DirectionCanBeChanged) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN);
  recorder.update(AVAHI_WATCH_OUT);
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_OUT));
  recorder.events.clear();
  recorder.update(AVAHI_WATCH_IN);
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_IN));
  recorder.events.clear();
  recorder.update(0);
  run();
  EXPECT_THAT(recorder.events, IsEmpty());
}

TEST_P(AvahiPollContract, DirectionCanBeChangedInTheCallback) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN);
  recorder.action = [&] { recorder.update(AVAHI_WATCH_OUT); };
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_IN, AVAHI_WATCH_OUT));
}

TEST_P(AvahiPollContract, HangUpIsToldToReader) {
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN);
  otherEndCloses();
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_IN | AVAHI_WATCH_HUP));
}

TEST_P(AvahiPollContract, HangUpIsToldToWriter) {
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_OUT);
  otherEndCloses();
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_OUT | AVAHI_WATCH_HUP));
}

TEST_P(AvahiPollContract, PipeWithoutWriterIsHangUpAlone) {
  std::array<int, 2> pipeEnds{};
  ASSERT_EQ(pipe(pipeEnds.data()), 0);
  WatchRecorder recorder(api(), pipeEnds[0], AVAHI_WATCH_IN);
  close(pipeEnds[1]);
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_HUP));
  recorder.free();
  close(pipeEnds[0]);
}

TEST_P(AvahiPollContract, PipeWithoutReaderIsAnError) {
  std::array<int, 2> pipeEnds{};
  ASSERT_EQ(pipe(pipeEnds.data()), 0);
  WatchRecorder recorder(api(), pipeEnds[1], AVAHI_WATCH_OUT);
  close(pipeEnds[0]);
  run();
  EXPECT_THAT(recorder.events, ElementsAre(AVAHI_WATCH_OUT | AVAHI_WATCH_ERR));
  recorder.free();
  close(pipeEnds[1]);
}

TEST_P(AvahiPollContract, WatchCanBeFreedInItsCallback) {
  otherEndSends();
  WatchRecorder recorder(api(), descriptor(), AVAHI_WATCH_IN | AVAHI_WATCH_OUT);
  recorder.action = [&] { recorder.free(); };
  run();
  EXPECT_EQ(recorder.events.size(), 1u);
}

TEST_P(AvahiPollContract, WatchCanBeFreedInTheCallbackOfAnother) {
  otherEndSends();
  WatchRecorder first(api(), descriptor(), AVAHI_WATCH_IN);
  WatchRecorder second(api(), descriptor(), AVAHI_WATCH_IN);
  first.action = [&] { second.free(); };
  second.action = [&] { first.free(); };
  run();
  EXPECT_EQ(first.events.size() + second.events.size(), 1u);
}

// Timeouts.

class TimeoutRecorder {
 public:
  explicit TimeoutRecorder(const AvahiPoll* api) : mApi(api) {
    timeout = api->timeout_new(api, nullptr, fired, this);
  }
  ~TimeoutRecorder() { free(); }
  TimeoutRecorder(const TimeoutRecorder&) = delete;
  TimeoutRecorder& operator=(const TimeoutRecorder&) = delete;

  void fireAfter(unsigned time) {
    timeval due;
    mApi->timeout_update(timeout, avahi_elapse_time(&due, time, 0));
    started = std::chrono::steady_clock::now();
  }
  void disable() { mApi->timeout_update(timeout, nullptr); }
  void free() {
    if (timeout != nullptr) mApi->timeout_free(std::exchange(timeout, nullptr));
  }

  AvahiTimeout* timeout;
  std::chrono::steady_clock::time_point started;
  std::vector<milliseconds> firings;  // after the start
  std::function<void()> action;

 private:
  static void fired(AvahiTimeout* firedTimeout, void* userData) {
    auto& self = *static_cast<TimeoutRecorder*>(userData);
    EXPECT_EQ(firedTimeout, self.timeout);
    self.firings.push_back(
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - self.started));
    if (self.action) self.action();
  }

  const AvahiPoll* mApi;
};

TEST_P(AvahiPollContract, TimeoutFiresOnceAndNotBeforeItsTime) {
  TimeoutRecorder recorder(api());
  recorder.fireAfter(40);
  run(milliseconds(200));
  ASSERT_EQ(recorder.firings.size(), 1u);
  EXPECT_GE(recorder.firings[0], milliseconds(39));
}

TEST_P(AvahiPollContract, TimeoutOfThePastFiresOnce) {
  TimeoutRecorder recorder(api());
  timeval past{1, 0};
  api()->timeout_update(recorder.timeout, &past);
  EXPECT_THAT(recorder.firings, IsEmpty());
  run();
  EXPECT_EQ(recorder.firings.size(), 1u);
}

TEST_P(AvahiPollContract, TimeoutCanBeCreatedWithItsTime) {
  timeval past{1, 0};
  int firings = 0;
  AvahiTimeout* timeout = api()->timeout_new(
      api(), &past, [](AvahiTimeout*, void* count) { ++*static_cast<int*>(count); }, &firings);
  run();
  EXPECT_EQ(firings, 1);
  api()->timeout_free(timeout);
}

TEST_P(AvahiPollContract, TimeoutWithoutTimeDoesNotFire) {
  TimeoutRecorder recorder(api());
  run();
  recorder.fireAfter(5);
  recorder.disable();
  run();
  EXPECT_THAT(recorder.firings, IsEmpty());
}

TEST_P(AvahiPollContract, TimeoutCanBeSetAgain) {
  TimeoutRecorder recorder(api());
  recorder.fireAfter(1000000);
  recorder.fireAfter(1);
  run();
  EXPECT_EQ(recorder.firings.size(), 1u);
  recorder.fireAfter(1);
  run();
  EXPECT_EQ(recorder.firings.size(), 2u);
}

TEST_P(AvahiPollContract, TimeoutCanBeSetAgainInItsCallback) {
  TimeoutRecorder recorder(api());
  recorder.action = [&] {
    if (recorder.firings.size() < 3) recorder.fireAfter(1);
  };
  recorder.fireAfter(1);
  run(milliseconds(100));
  EXPECT_EQ(recorder.firings.size(), 3u);
}

TEST_P(AvahiPollContract, TimeoutCanBeFreedInItsCallback) {
  TimeoutRecorder recorder(api());
  recorder.action = [&] { recorder.free(); };
  recorder.fireAfter(1);
  run();
  EXPECT_EQ(recorder.firings.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Every, AvahiPollContract, testing::ValuesIn(implementations()),
                         [](const testing::TestParamInfo<Implementation>& implementation) {
                           return implementation.param.name;
                         });

}  // namespace
