// What implementations of Events have in common, whatever loop they stand on: the handlers, and the
// events that wait. Who derives from it has the loop.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/Events.h"

namespace platform {

class QueuedEvents : public Events {
 public:
  OSStatus createEvent(FourCharCode eventClass, std::uint32_t kind,
                       std::unique_ptr<Event>& event) override;
  OSStatus setParameter(Event& event, FourCharCode name, Event::Parameter value) override;
  OSStatus postToMainQueue(std::unique_ptr<Event> event) override;
  OSStatus installHandler(const EventTarget& target, std::span<const EventSpec> specs,
                          EventHandler handler, void* userData,
                          EventHandlerRef& installed) override;
  void removeHandler(EventHandlerRef installed) override;
  OSStatus installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                    AppleEventHandler handler, void* refCon) override;
  OSStatus processCommand(const HICommand& command) override;

  // Takes an event to the handlers on its target and returns their answer: what the toolkit tells
  // of windows and controls.
  OSStatus sendToTarget(const EventTarget& target, const Event& event);

 protected:
  // To be called where the loop is entered: the application is opened first, and what an earlier
  // run left over comes next.
  void beginRun();

 private:
  // Of the loop. What was put off in one is not called in another.
  struct Run {};

  struct Installed {
    EventHandlerRef ref;
    EventTarget target;
    std::vector<EventSpec> specs;
    EventHandler handler;
    void* userData;
  };
  struct AppleHandler {
    AppleEventHandler handler;
    void* refCon;
  };

  // Calls from the loop, after the current event, in the order of these calls.
  virtual void callLater(std::function<void()> callback) = 0;

  void callInThisRun(void (QueuedEvents::*deliver)());
  void deliverNext();
  void openApplication();
  std::vector<EventHandlerRef> chain(const EventTarget& target, const Event& event) const;

  EventHandlerRef mLastRef = 0;
  std::vector<Installed> mHandlers;  // in the order of their installation
  std::map<std::pair<FourCharCode, FourCharCode>, AppleHandler> mAppleHandlers;
  std::deque<std::unique_ptr<Event>> mQueue;
  std::shared_ptr<Run> mRun = std::make_shared<Run>();
};

}  // namespace platform
