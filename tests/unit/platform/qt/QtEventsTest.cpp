#include <gmock/gmock.h>

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
