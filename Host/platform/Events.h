// The application's events and commands. Events reach the handlers that are installed on a target,
// the one installed last first, until one answers anything but eventNotHandledErr.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <variant>

#include "platform/FourCharCode.h"
#include "platform/Handles.h"
#include "platform/Status.h"

namespace platform {

struct HICommand {
  std::uint32_t attributes = 0;
  FourCharCode commandId = 0;
  std::uintptr_t menu = 0;
  std::uint16_t menuItemIndex = 0;
};

struct FloatRect {
  float x = 0;
  float y = 0;
  float width = 0;
  float height = 0;
};

struct EventSpec {
  FourCharCode eventClass;
  std::uint32_t kind;
};

class Event {
 public:
  using Parameter = std::variant<void*, HICommand, ControlRef, FloatRect>;

  Event(FourCharCode eventClass, std::uint32_t kind) : mSpec{eventClass, kind} {}

  FourCharCode eventClass() const { return mSpec.eventClass; }
  std::uint32_t kind() const { return mSpec.kind; }

  void setParameter(FourCharCode name, Parameter value) { mParameters[name] = value; }

  // eventParameterNotFoundErr when there is no such parameter, or it is of another type.
  template <typename T>
  OSStatus getParameter(FourCharCode name, T& value) const {
    const auto found = mParameters.find(name);
    if (found == mParameters.end()) return eventParameterNotFoundErr;
    const T* held = std::get_if<T>(&found->second);
    if (held == nullptr) return eventParameterNotFoundErr;
    value = *held;
    return noErr;
  }

 private:
  EventSpec mSpec;
  std::map<FourCharCode, Parameter> mParameters;
};

// Where handlers are installed: the application, one window or one control.
using EventTarget = std::variant<std::monostate, WindowRef, ControlRef>;
inline constexpr std::monostate kApplicationTarget{};

// Identifies an installed handler; 0 is none.
using EventHandlerRef = std::uint64_t;

// What a handler gets beside the event: the chain of handlers after it, which this program never
// calls itself.
struct EventHandlerCall;
using EventHandlerCallRef = EventHandlerCall*;

using EventHandler = OSStatus (*)(EventHandlerCallRef call, const Event& event, void* userData);
using AppleEventHandler = OSStatus (*)(const Event& event, Event& reply, void* refCon);

class Events {
 public:
  virtual ~Events() = default;

  // `event` is null on failure.
  virtual OSStatus createEvent(FourCharCode eventClass, std::uint32_t kind,
                               std::unique_ptr<Event>& event) = 0;
  virtual OSStatus setParameter(Event& event, FourCharCode name, Event::Parameter value) = 0;

  // Queues the event for the application target: delivered later, in posting order.
  virtual OSStatus postToMainQueue(std::unique_ptr<Event> event) = 0;

  virtual OSStatus installHandler(const EventTarget& target, std::span<const EventSpec> specs,
                                  EventHandler handler, void* userData,
                                  EventHandlerRef& installed) = 0;
  virtual void removeHandler(EventHandlerRef installed) = 0;

  // For the events that the session sends to a program: ('aevt', 'oapp') when the loop starts.
  virtual OSStatus installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                            AppleEventHandler handler, void* refCon) = 0;

  // Dispatches ('cmds', 1) with the command as its direct object to the application target, and
  // returns the handlers' answer. A 'quit' that no handler takes sends ('appl', 3) and ends the
  // loop.
  virtual OSStatus processCommand(const HICommand& command) = 0;

  virtual void runApplicationEventLoop() = 0;
  virtual void quitApplicationEventLoop() = 0;
};

}  // namespace platform
