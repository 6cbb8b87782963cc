#include <gmock/gmock.h>
#include <unistd.h>

#include <QTimer>
#include <array>
#include <csignal>
#include <functional>
#include <stdexcept>

#include "CoreApplication.h"
#include "platform/RunLoop.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtEvents.h"
#include "platform/qt/QtRunLoop.h"

using namespace platform::literals;
using namespace std::chrono_literals;
using platform::Event;
using platform::EventSpec;
using platform::kApplicationTarget;
using platform::OSStatus;
using testing::ElementsAre;

namespace {

class QtEventsTest : public testing::Test {
 protected:
  QtEventsTest() {
    const EventSpec specs[] = {{"cmds"_4cc, 1}, {"appl"_4cc, 3}, {"FwDl"_4cc, 1}};
    platform::EventHandlerRef installed = 0;
    mEvents->installHandler(kApplicationTarget, specs, keep, this, installed);
    mEvents->installAppleEventHandler("aevt"_4cc, "oapp"_4cc, keepOpening, this);
  }

  void post() {
    std::unique_ptr<Event> event;
    mEvents->createEvent("FwDl"_4cc, 1, event);
    mEvents->postToMainQueue(std::move(event));
  }

  static OSStatus keep(platform::EventHandlerCallRef, const Event& event, void* userData) {
    auto& test = *static_cast<QtEventsTest*>(userData);
    test.mCalled.push_back(event.eventClass() == "cmds"_4cc   ? "command"
                           : event.eventClass() == "appl"_4cc ? "quit"
                                                              : "posted");
    if (event.eventClass() == "FwDl"_4cc && test.mOnPosted) test.mOnPosted();
    if (test.mThrows) throw std::runtime_error("from a handler");
    return test.mAnswer;
  }

  static OSStatus keepOpening(const Event&, Event&, void* refCon) {
    static_cast<QtEventsTest*>(refCon)->mCalled.emplace_back("open");
    return platform::noErr;
  }

  // Waits from inside the loop, as the program does, and has something happen meanwhile. The
  // descriptor becomes ready after it.
  void whileWaiting(const std::function<void()>& happens) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    QTimer::singleShot(0, [&] {
      happens();
      QTimer::singleShot(20, [&] { EXPECT_EQ(write(ends[1], "x", 1), 1); });
    });
    EXPECT_TRUE(mRunLoop->waitUntilReady(ends[0], platform::RunLoop::Interest::Readable,
                                         std::chrono::steady_clock::now() + 20s));
    mCalled.emplace_back("waited");
    for (const int end : ends) close(end);
  }

  CoreApplication mApplication;
  platform::QtEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeQtRunLoop(mLoop);
  std::unique_ptr<platform::QtEvents> mEvents = platform::makeQtEvents(mLoop);
  std::vector<std::string> mCalled;
  OSStatus mAnswer = platform::eventNotHandledErr;
  bool mThrows = false;
  std::function<void()> mOnPosted;
};

TEST_F(QtEventsTest, QuitBeforeTheLoopStartsEndsItAtOnce) {
  post();
  mEvents->quitApplicationEventLoop();
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre());
}

TEST_F(QtEventsTest, SignalsEndTheLoopByTheQuitCommand) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    mCalled.clear();
    const auto sent = mRunLoop->startTimer(5ms, false, [number] { std::raise(number); });
    mEvents->runApplicationEventLoop();
    EXPECT_THAT(mCalled, ElementsAre("open", "command", "quit")) << number;
  }
}

TEST_F(QtEventsTest, SignalEndsTheLoopEvenIfTheCommandIsTaken) {
  mAnswer = platform::noErr;
  const auto sent = mRunLoop->startTimer(5ms, false, [] { std::raise(SIGTERM); });
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "command"));
}

TEST_F(QtEventsTest, SignalBeforeTheLoopIsHeardInIt) {
  std::raise(SIGTERM);
  EXPECT_THAT(mCalled, ElementsAre());
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, testing::Contains("quit"));
}

TEST_F(QtEventsTest, SignalsHaveTheirOldMeaningAfterwards) {
  mEvents.reset();
  EXPECT_EXIT(std::raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
}

TEST(QtEventsSignals, IgnoredSignalStaysIgnored) {
  const CoreApplication application;
  std::signal(SIGHUP, SIG_IGN);
  {
    platform::QtEventLoop loop;
    const auto events = platform::makeQtEvents(loop);
    const auto runLoop = platform::makeQtRunLoop(loop);
    std::raise(SIGHUP);
    bool stillRuns = false;
    const auto later = runLoop->startTimer(30ms, false, [&] {
      stillRuns = true;
      events->quitApplicationEventLoop();
    });
    events->runApplicationEventLoop();
    EXPECT_TRUE(stillRuns);
  }
  std::signal(SIGHUP, SIG_DFL);
}

TEST_F(QtEventsTest, EndOfTheSessionEndsTheLoop) {
  const auto asked = mRunLoop->startTimer(5ms, false, [] { QCoreApplication::quit(); });
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "command", "quit"));
}

TEST_F(QtEventsTest, ExceptionFromAHandlerLeavesTheLoop) {
  mThrows = true;
  post();
  post();
  EXPECT_THROW(mEvents->runApplicationEventLoop(), std::runtime_error);
  EXPECT_THAT(mCalled, ElementsAre("open", "posted"));
}

TEST_F(QtEventsTest, ExceptionFromARunLoopCallbackLeavesTheLoop) {
  mRunLoop->callLater([] { throw std::out_of_range("late"); });
  EXPECT_THROW(mEvents->runApplicationEventLoop(), std::out_of_range);
}

TEST_F(QtEventsTest, EventsThatWaitWhenTheLoopEndsComeInTheNext) {
  post();
  post();
  mOnPosted = [&] { mEvents->quitApplicationEventLoop(); };
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "posted"));
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "posted", "open", "posted"));
}

TEST_F(QtEventsTest, RunLoopIsSilentOnceTheLoopIsToEnd) {
  mRunLoop->callLater([&] { mEvents->quitApplicationEventLoop(); });
  mRunLoop->callLater([&] { mCalled.emplace_back("late"); });
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, testing::Not(testing::Contains("late")));
}

TEST_F(QtEventsTest, SignalDuringAWaitEndsTheLoopAfterwards) {
  mOnPosted = [&] { whileWaiting([] { std::raise(SIGTERM); }); };
  post();
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "posted", "waited", "command", "quit"));
}

TEST_F(QtEventsTest, EndOfTheSessionDuringAWaitEndsTheLoopAfterwards) {
  mOnPosted = [&] { whileWaiting([] { QCoreApplication::quit(); }); };
  post();
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "posted", "waited", "command", "quit"));
}

TEST_F(QtEventsTest, WaitHoldsAfterQuitWasDecided) {
  mOnPosted = [&] {
    mEvents->quitApplicationEventLoop();
    whileWaiting([&] { mRunLoop->callLater([&] { mCalled.emplace_back("late"); }); });
  };
  post();
  post();
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled, ElementsAre("open", "posted", "waited"));
}

TEST_F(QtEventsTest, ExceptionFromWhatWasPutOffLeavesTheLoop) {
  mOnPosted = [&] {
    mOnPosted = {};
    whileWaiting([&] { mRunLoop->callLater([] { throw std::out_of_range("late"); }); });
  };
  post();
  EXPECT_THROW(mEvents->runApplicationEventLoop(), std::out_of_range);
  EXPECT_THAT(mCalled, ElementsAre("open", "posted", "waited"));
}

TEST_F(QtEventsTest, ProgramThatWaitsAgainHearsOfItInOrder) {
  int waits = 0;
  mOnPosted = [&] {
    if (++waits > 2) return;
    whileWaiting([&] {
      mRunLoop->callLater([&, wait = waits] { mCalled.push_back(std::to_string(wait)); });
      post();
    });
  };
  post();
  const auto end = mRunLoop->startTimer(200ms, false, [&] { mEvents->quitApplicationEventLoop(); });
  mEvents->runApplicationEventLoop();
  EXPECT_THAT(mCalled,
              ElementsAre("open", "posted", "waited", "1", "posted", "waited", "2", "posted"));
}

TEST_F(QtEventsTest, ProgramWaitsOnceAtATime) {
  EXPECT_DEATH(whileWaiting([&] { whileWaiting([] {}); }),
               "^Assertion failed: \\(!mWaiting\\), function waitUntilReady, ");
}

TEST_F(QtEventsTest, ExceptionFromACommandGoesToItsIssuer) {
  mThrows = true;
  EXPECT_THROW(mEvents->processCommand({}), std::runtime_error);
}

TEST_F(QtEventsTest, EventsThatWaitAreDroppedAtTheEnd) {
  post();
  mEvents.reset();
  QCoreApplication::processEvents();
  EXPECT_THAT(mCalled, ElementsAre());
}

}  // namespace
