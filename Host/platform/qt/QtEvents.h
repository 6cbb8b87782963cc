// Events and commands on Qt's event loop. Posted events wait in Qt's queue and are dropped with the
// object. A request of the session or of a signal (SIGTERM, SIGINT, SIGHUP) to end the program is
// issued as the command 'quit', whatever a sheet blocks, and ends the loop in every state.
#pragma once

#include <memory>

#include "platform/Events.h"

namespace platform {

class QtEventLoop;

class QtEvents : public Events {
 public:
  // Takes an event to the handlers on its target and returns their answer: what the toolkit tells
  // of windows and controls.
  virtual OSStatus sendToTarget(const EventTarget& target, const Event& event) = 0;
};

// Needs the QCoreApplication. `loop` must outlive the events.
std::unique_ptr<QtEvents> makeQtEvents(QtEventLoop& loop);

}  // namespace platform
