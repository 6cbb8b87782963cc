// Events that also keep the handlers installed on them, in order, so that a test can call a handler
// as no installed platform does: with no user data, or with an event that it did not ask for.
#pragma once

#include <vector>

#include "FakeEvents.h"

class CatchingEvents : public FakeEvents {
 public:
  struct Caught {
    platform::EventHandler handler;
    void* userData;

    platform::OSStatus operator()(const platform::Event& event) const {
      return handler(nullptr, event, userData);
    }
    platform::OSStatus withoutUserData(const platform::Event& event) const {
      return handler(nullptr, event, nullptr);
    }
  };

  platform::OSStatus installHandler(const platform::EventTarget& target,
                                    std::span<const platform::EventSpec> specs,
                                    platform::EventHandler handler, void* userData,
                                    platform::EventHandlerRef& installed) override {
    handlers.push_back({handler, userData});
    return FakeEvents::installHandler(target, specs, handler, userData, installed);
  }

  platform::OSStatus installAppleEventHandler(platform::FourCharCode eventClass,
                                              platform::FourCharCode eventId,
                                              platform::AppleEventHandler handler,
                                              void* refCon) override {
    openHandler = handler;
    return FakeEvents::installAppleEventHandler(eventClass, eventId, handler, refCon);
  }

  std::vector<Caught> handlers;
  platform::AppleEventHandler openHandler = nullptr;
};
