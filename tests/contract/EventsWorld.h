// Events and their loop, for tests that hold for every implementation: Qt's and the double.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Events.h"

class EventsWorld {
 public:
  virtual ~EventsWorld() = default;

  virtual platform::Events& events() = 0;

  // What the toolkit does.
  virtual platform::OSStatus send(const platform::EventTarget& target,
                                  const platform::Event& event) = 0;

  // Runs the application's loop; `step` is called again and again once nothing waits.
  virtual void runLoop(std::function<void()> step) = 0;
};

struct EventsImplementation {
  std::string name;
  std::unique_ptr<EventsWorld> (*make)();
};

inline void PrintTo(const EventsImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

std::vector<EventsImplementation> eventsImplementations();
