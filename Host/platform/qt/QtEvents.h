// Events and commands on Qt's event loop. Posted events wait there and are dropped with the
// object. A signal to end the program (SIGTERM, SIGINT, SIGHUP) is issued as the command 'quit',
// whatever a sheet blocks, and ends the loop in every state; so does a request of the session,
// unless the user is to be asked first.
#pragma once

#include <functional>
#include <memory>

#include "platform/QueuedEvents.h"

namespace platform {

class QtEventLoop;

class QtEvents : public QueuedEvents {
 public:
  // `mayQuit` answers whether a request of the session is granted at once; without it, it is.
  virtual void whenAskedToQuit(std::function<bool()> mayQuit) = 0;
};

// Needs the QCoreApplication. `loop` must outlive the events.
std::unique_ptr<QtEvents> makeQtEvents(QtEventLoop& loop);

}  // namespace platform
