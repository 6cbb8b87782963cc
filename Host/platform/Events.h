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

// What the platform sends, and the parameters that it comes with. A command's direct object is its
// HICommand, a control event's the control (ControlRef).
inline constexpr EventSpec kOpenApplicationEvent{0x61657674, 0x6F617070};  // 'aevt', 'oapp'
inline constexpr EventSpec kCommandEvent{0x636D6473, 1};                   // 'cmds'
inline constexpr EventSpec kWindowCloseEvent{0x77696E64, 72};              // 'wind'
inline constexpr EventSpec kApplicationQuitEvent{0x6170706C, 3};           // 'appl'
inline constexpr EventSpec kControlBoundsChangedEvent{0x636E746C, 154};    // 'cntl'
inline constexpr EventSpec kControlDisposedEvent{0x636E746C, 1001};        // 'cntl'
inline constexpr FourCharCode kEventParamDirectObject = 0x2D2D2D2D;        // '----'
inline constexpr FourCharCode kEventParamOriginalBounds = 0x6F726374;      // 'orct', FloatRect
inline constexpr FourCharCode kEventParamCurrentBounds = 0x63726374;       // 'crct', FloatRect

// The command that the platform itself knows.
inline constexpr FourCharCode kQuitCommand = 0x71756974;  // 'quit'

class Event {
 public:
  using Parameter = std::variant<void*, HICommand, ControlRef, FloatRect>;

  explicit Event(const EventSpec& spec) : mSpec(spec) {}
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

  // For the events that the session sends to a program: kOpenApplicationEvent when the loop starts.
  virtual OSStatus installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                            AppleEventHandler handler, void* refCon) = 0;

  // Dispatches kCommandEvent to the application target, and returns the handlers' answer. A
  // kQuitCommand that no handler takes sends kApplicationQuitEvent and ends the loop.
  virtual OSStatus processCommand(const HICommand& command) = 0;

  virtual void runApplicationEventLoop() = 0;
  virtual void quitApplicationEventLoop() = 0;
};

}  // namespace platform
