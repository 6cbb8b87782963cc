#include <gmock/gmock.h>

#include "EventsWorld.h"

using namespace platform::literals;
using platform::Event;
using platform::EventHandlerRef;
using platform::eventNotHandledErr;
using platform::EventSpec;
using platform::HICommand;
using platform::kApplicationTarget;
using platform::noErr;
using platform::OSStatus;
using testing::ElementsAre;

namespace {

class EventsContract;

// A handler with a name, and what it does when it is called.
struct Handler {
  EventsContract* test;
  std::string name;
  OSStatus answer = noErr;
  std::function<void()> acts;
  EventHandlerRef installed = 0;
};

class EventsContract : public testing::TestWithParam<EventsImplementation> {
 protected:
  platform::Events& events() { return mWorld->events(); }

  void install(Handler& handler, const platform::EventTarget& target,
               std::initializer_list<EventSpec> specs) {
    EXPECT_EQ(events().installHandler(target, std::span(specs.begin(), specs.size()), call,
                                      &handler, handler.installed),
              noErr);
    EXPECT_NE(handler.installed, 0u);
  }

  void post(platform::FourCharCode eventClass, std::uint32_t kind) {
    std::unique_ptr<Event> event;
    ASSERT_EQ(events().createEvent(eventClass, kind, event), noErr);
    ASSERT_EQ(events().setParameter(*event, "----"_4cc, static_cast<void*>(this)), noErr);
    ASSERT_EQ(events().postToMainQueue(std::move(event)), noErr);
  }

  OSStatus command(platform::FourCharCode id) {
    HICommand issued;
    issued.commandId = id;
    return events().processCommand(issued);
  }

  // Runs the loop until nothing waits.
  void settle() {
    mWorld->runLoop([this] { events().quitApplicationEventLoop(); });
  }

  static OSStatus call(platform::EventHandlerCallRef, const Event& event, void* userData) {
    auto& handler = *static_cast<Handler*>(userData);
    handler.test->mCalled.push_back(handler.name + " " + std::to_string(event.kind()));
    if (handler.acts) handler.acts();
    return handler.answer;
  }

  static OSStatus openApplication(const Event& event, Event&, void* refCon) {
    EXPECT_EQ(event.eventClass(), "aevt"_4cc);
    EXPECT_EQ(event.kind(), "oapp"_4cc);
    static_cast<EventsContract*>(refCon)->mCalled.emplace_back("open");
    return noErr;
  }

  std::unique_ptr<EventsWorld> mWorld = GetParam().make();
  std::vector<std::string> mCalled;
};

INSTANTIATE_TEST_SUITE_P(Every, EventsContract, testing::ValuesIn(eventsImplementations()),
                         [](const auto& each) { return each.param.name; });

TEST_P(EventsContract, PostedEventsAreDeliveredLaterInPostingOrder) {
  Handler handler{this, "handler", noErr, {}};
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}, {"FwDl"_4cc, 2}});
  post("FwDl"_4cc, 1);
  post("FwDl"_4cc, 2);
  post("FwDl"_4cc, 1);
  EXPECT_THAT(mCalled, ElementsAre());
  settle();
  EXPECT_THAT(mCalled, ElementsAre("handler 1", "handler 2", "handler 1"));
}

TEST_P(EventsContract, EventPostedByAHandlerComesAfterThoseThatWait) {
  Handler handler{this, "handler", noErr, {}};
  handler.acts = [&] {
    if (mCalled.size() == 1) post("FwDl"_4cc, 3);
  };
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}, {"FwDl"_4cc, 2}, {"FwDl"_4cc, 3}});
  post("FwDl"_4cc, 1);
  post("FwDl"_4cc, 2);
  settle();
  EXPECT_THAT(mCalled, ElementsAre("handler 1", "handler 2", "handler 3"));
}

TEST_P(EventsContract, PostedEventKeepsItsParameters) {
  static void* seen;
  seen = nullptr;
  EventHandlerRef installed = 0;
  const EventSpec spec{"FwDl"_4cc, 1};
  const auto look = [](platform::EventHandlerCallRef, const Event& event, void*) {
    return event.getParameter("----"_4cc, seen);
  };
  events().installHandler(kApplicationTarget, {&spec, 1}, look, nullptr, installed);
  post("FwDl"_4cc, 1);
  settle();
  EXPECT_EQ(seen, this);
}

TEST_P(EventsContract, HandlerGetsOnlyTheEventsThatItIsInstalledFor) {
  Handler handler{this, "handler", noErr, {}};
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 2)), eventNotHandledErr);
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("wind"_4cc, 1)), eventNotHandledErr);
  EXPECT_THAT(mCalled, ElementsAre());
}

TEST_P(EventsContract, TargetsAreTakenApart) {
  Handler window{this, "window", noErr, {}};
  Handler control{this, "control", noErr, {}};
  install(window, platform::WindowRef{5}, {{"wind"_4cc, 72}});
  install(control, platform::ControlRef{5}, {{"wind"_4cc, 72}});
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("wind"_4cc, 72)), eventNotHandledErr);
  EXPECT_EQ(mWorld->send(platform::WindowRef{6}, Event("wind"_4cc, 72)), eventNotHandledErr);
  EXPECT_EQ(mWorld->send(platform::WindowRef{5}, Event("wind"_4cc, 72)), noErr);
  EXPECT_THAT(mCalled, ElementsAre("window 72"));
}

TEST_P(EventsContract, LastInstalledHandlerIsAskedFirst) {
  Handler first{this, "first", noErr, {}};
  Handler second{this, "second", eventNotHandledErr, {}};
  Handler third{this, "third", eventNotHandledErr, {}};
  for (Handler* handler : {&first, &second, &third}) {
    install(*handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  }
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), noErr);
  EXPECT_THAT(mCalled, ElementsAre("third 1", "second 1", "first 1"));
}

TEST_P(EventsContract, AnyAnswerButNotHandledEndsTheAsking) {
  Handler first{this, "first", noErr, {}};
  Handler second{this, "second", -1708, {}};
  install(first, kApplicationTarget, {{"FwDl"_4cc, 1}});
  install(second, kApplicationTarget, {{"FwDl"_4cc, 1}});
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), -1708);
  EXPECT_THAT(mCalled, ElementsAre("second 1"));
}

TEST_P(EventsContract, RemovedHandlerIsNotCalled) {
  Handler handler{this, "handler", noErr, {}};
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  events().removeHandler(handler.installed);
  events().removeHandler(handler.installed);
  events().removeHandler(0);
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), eventNotHandledErr);
  EXPECT_THAT(mCalled, ElementsAre());
}

TEST_P(EventsContract, HandlersMayBeRemovedWhileAnEventIsDelivered) {
  Handler first{this, "first", noErr, {}};
  Handler second{this, "second", eventNotHandledErr, {}};
  Handler third{this, "third", eventNotHandledErr, {}};
  for (Handler* handler : {&first, &second, &third}) {
    install(*handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  }
  third.acts = [&] {
    events().removeHandler(third.installed);
    events().removeHandler(second.installed);
  };
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), noErr);
  EXPECT_THAT(mCalled, ElementsAre("third 1", "first 1"));
}

TEST_P(EventsContract, HandlerInstalledMeanwhileWaitsForTheNextEvent) {
  Handler first{this, "first", eventNotHandledErr, {}};
  Handler second{this, "second", noErr, {}};
  first.acts = [&] {
    if (second.installed == 0) install(second, kApplicationTarget, {{"FwDl"_4cc, 1}});
  };
  install(first, kApplicationTarget, {{"FwDl"_4cc, 1}});
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), eventNotHandledErr);
  EXPECT_EQ(mWorld->send(kApplicationTarget, Event("FwDl"_4cc, 1)), noErr);
  EXPECT_THAT(mCalled, ElementsAre("first 1", "second 1"));
}

TEST_P(EventsContract, CommandIsDispatchedAtOnceWithItsRecord) {
  static HICommand seen;
  EventHandlerRef installed = 0;
  const EventSpec spec{"cmds"_4cc, 1};
  const auto look = [](platform::EventHandlerCallRef, const Event& event, void*) {
    event.getParameter("----"_4cc, seen);
    return OSStatus{-4979};
  };
  events().installHandler(kApplicationTarget, {&spec, 1}, look, nullptr, installed);
  HICommand issued;
  issued.attributes = 1;
  issued.commandId = "DlOk"_4cc;
  issued.menu = 2;
  issued.menuItemIndex = 3;
  EXPECT_EQ(events().processCommand(issued), -4979);
  EXPECT_EQ(seen.attributes, 1u);
  EXPECT_EQ(seen.commandId, "DlOk"_4cc);
  EXPECT_EQ(seen.menu, 2u);
  EXPECT_EQ(seen.menuItemIndex, 3);
}

TEST_P(EventsContract, CommandWithoutHandlerIsNotHandled) {
  EXPECT_EQ(command("Down"_4cc), eventNotHandledErr);
}

TEST_P(EventsContract, QuitThatNoHandlerTakesIsToldAndEndsTheLoop) {
  Handler quit{this, "quit", eventNotHandledErr, {}};
  install(quit, kApplicationTarget, {{"appl"_4cc, 3}});
  int steps = 0;
  OSStatus answer = noErr;
  mWorld->runLoop([&] {
    if (++steps == 1) answer = command("quit"_4cc);
  });
  EXPECT_EQ(answer, eventNotHandledErr);
  EXPECT_THAT(mCalled, ElementsAre("quit 3"));
}

TEST_P(EventsContract, QuitThatAHandlerTakesEndsNothing) {
  Handler taker{this, "taker", noErr, {}};
  Handler quit{this, "quit", eventNotHandledErr, {}};
  install(taker, kApplicationTarget, {{"cmds"_4cc, 1}});
  install(quit, kApplicationTarget, {{"appl"_4cc, 3}});
  int steps = 0;
  mWorld->runLoop([&] {
    ++steps;
    if (steps == 1) {
      EXPECT_EQ(command("quit"_4cc), noErr);
    }
    if (steps == 3) events().quitApplicationEventLoop();
  });
  EXPECT_EQ(steps, 3);
  EXPECT_THAT(mCalled, ElementsAre("taker 1"));
}

TEST_P(EventsContract, OpenApplicationIsSentOnceWhenTheLoopStarts) {
  ASSERT_EQ(events().installAppleEventHandler("aevt"_4cc, "oapp"_4cc, openApplication, this),
            noErr);
  EXPECT_THAT(mCalled, ElementsAre());
  settle();
  EXPECT_THAT(mCalled, ElementsAre("open"));
}

TEST_P(EventsContract, LoopEndsFromAHandler) {
  Handler handler{this, "handler", noErr, {}};
  handler.acts = [&] { events().quitApplicationEventLoop(); };
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  post("FwDl"_4cc, 1);
  mWorld->runLoop([] {});
  EXPECT_THAT(mCalled, ElementsAre("handler 1"));
}

TEST_P(EventsContract, LoopRunsAgainAfterItHasEnded) {
  Handler handler{this, "handler", noErr, {}};
  install(handler, kApplicationTarget, {{"FwDl"_4cc, 1}});
  settle();
  post("FwDl"_4cc, 1);
  settle();
  EXPECT_THAT(mCalled, ElementsAre("handler 1"));
}

}  // namespace
