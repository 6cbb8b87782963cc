#include "platform/dbus/BusConnection.h"

#include <new>
#include <string>
#include <utility>

namespace platform {
namespace {

// So many messages at a time, that the window has its turn between them.
constexpr int kMessagesAtOnce = 16;

}  // namespace

// The library has two watches of one descriptor: one to read, one to write.
class BusConnection::Watch {
 public:
  Watch(RunLoop& runLoop, DBusWatch* watch) {
    const bool reads = (dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE) != 0;
    const unsigned happened = reads ? DBUS_WATCH_READABLE : DBUS_WATCH_WRITABLE;
    mWatch = runLoop.watch(dbus_watch_get_unix_fd(watch),
                           reads ? RunLoop::Interest::Readable : RunLoop::Interest::Writable,
                           [watch, happened] { dbus_watch_handle(watch, happened); });
    update(watch);
  }

  void update(DBusWatch* watch) { mWatch->setEnabled(dbus_watch_get_enabled(watch) != FALSE); }

 private:
  std::unique_ptr<RunLoop::Watch> mWatch;
};

BusConnection::BusConnection(RunLoop& runLoop, Bus bus, Listener& listener)
    : mRunLoop(runLoop), mBus(bus), mListener(listener), mDeferred(runLoop) {}

BusConnection::~BusConnection() {
  if (mConnection == nullptr) return;
  dbus_connection_set_dispatch_status_function(mConnection, nullptr, nullptr, nullptr);
  dbus_connection_close(mConnection);
  dbus_connection_unref(mConnection);
}

// What the library calls throws nothing through it: it has words of its own for want of memory.
bool BusConnection::open() {
  const std::string address = addressOf(mBus);
  if (!isOfThisMachine(address)) return false;
  mConnection = dbus_connection_open_private(address.c_str(), nullptr);
  if (mConnection == nullptr) return false;
  const bool isWatched = dbus_connection_set_watch_functions(
      mConnection,
      [](DBusWatch* watch, void* self) -> dbus_bool_t {
        try {
          RunLoop& runLoop = static_cast<BusConnection*>(self)->mRunLoop;
          dbus_watch_set_data(watch, new Watch(runLoop, watch),
                              [](void* data) { delete static_cast<Watch*>(data); });
          return TRUE;
        } catch (const std::bad_alloc&) {
          return FALSE;
        }
      },
      [](DBusWatch* watch, void*) { dbus_watch_set_data(watch, nullptr, nullptr); },
      [](DBusWatch* watch, void*) {
        static_cast<Watch*>(dbus_watch_get_data(watch))->update(watch);
      },
      this, nullptr);
  if (!isWatched) return false;
  dbus_connection_set_dispatch_status_function(
      mConnection,
      [](DBusConnection*, DBusDispatchStatus status, void* data) {
        auto& self = *static_cast<BusConnection*>(data);
        if (status != DBUS_DISPATCH_DATA_REMAINS || std::exchange(self.mDispatching, true)) return;
        try {
          self.mDeferred.post([&self] { self.dispatch(); });
        } catch (const std::bad_alloc&) {
          self.mDispatching = false;
        }
      },
      this, nullptr);
  dbus_connection_add_filter(
      mConnection,
      [](DBusConnection*, DBusMessage* message, void* self) {
        try {
          return static_cast<BusConnection*>(self)->received(message);
        } catch (const std::bad_alloc&) {
          return DBUS_HANDLER_RESULT_NEED_MEMORY;
        }
      },
      this, nullptr);
  greet();
  return true;
}

// The bus serves nobody before. What is called meanwhile follows in its order.
void BusConnection::greet() {
  call(newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"),
       [this](DBusMessage* reply) {
         const char* const name = textOf(reply);
         if (name != nullptr) dbus_bus_set_unique_name(mConnection, name);
       });
}

bool BusConnection::call(const BusMessage& message, Reply reply) {
  dbus_uint32_t serial = 0;
  if (message == nullptr || !dbus_connection_get_is_connected(mConnection) ||
      !dbus_connection_send(mConnection, message.get(), &serial)) {
    return false;
  }
  mReplies.emplace(serial, std::move(reply));
  return true;
}

void BusConnection::send(const BusMessage& message) {
  if (message == nullptr) return;
  dbus_message_set_no_reply(message.get(), TRUE);
  dbus_connection_send(mConnection, message.get(), nullptr);
}

void BusConnection::dispatch() {
  for (int i = 0; i < kMessagesAtOnce; ++i) {
    if (dbus_connection_dispatch(mConnection) == DBUS_DISPATCH_COMPLETE) {
      mDispatching = false;
      return;
    }
  }
  mDeferred.post([this] { dispatch(); });
}

DBusHandlerResult BusConnection::received(DBusMessage* message) {
  if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected")) {
    mListener.closed();
  } else if (dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_SIGNAL) {
    mListener.signalled(message);
  } else if (auto found = mReplies.extract(dbus_message_get_reply_serial(message))) {
    found.mapped()(message);
  } else {
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
  }
  return DBUS_HANDLER_RESULT_HANDLED;
}

}  // namespace platform
