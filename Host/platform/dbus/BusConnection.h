// A connection to the system's or the session's bus that nothing waits for: it is established, and
// everything is sent and received, as the run loop finds the bus ready. A bus that does not answer
// is one that says nothing. Destroying the connection drops it at once, with what has not been sent
// or answered; a message that carries a descriptor closes it.
//
// The library's own calls that wait for an answer are not used here, nor is its shared connection.
#pragma once

#include <dbus/dbus.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/dbus/BusAddress.h"
#include "platform/dbus/BusMessage.h"

namespace platform {

class BusConnection {
 public:
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void signalled(DBusMessage* signal) = 0;
    virtual void closed() = 0;  // by the bus; nothing comes afterwards
  };

  // The reply may be an error.
  using Reply = std::function<void(DBusMessage* reply)>;

  // The listener is told from the run loop. It may destroy the connection only outside of that.
  BusConnection(RunLoop& runLoop, Bus bus, Listener& listener);
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  // False when the bus has no address on this machine, or nobody listens there.
  bool open();

  // False when the message cannot be queued; null messages are not. The reply may never come.
  bool call(const BusMessage& message, Reply reply);
  void send(const BusMessage& message);

 private:
  class Watch;

  void greet();
  void dispatch();
  DBusHandlerResult received(DBusMessage* message);

  RunLoop& mRunLoop;
  const Bus mBus;
  Listener& mListener;
  DBusConnection* mConnection = nullptr;
  std::map<std::uint32_t, Reply> mReplies;  // by the serial number of the call
  bool mDispatching = false;                // put off, or in the middle of it
  DeferredCalls mDeferred;
};

}  // namespace platform
