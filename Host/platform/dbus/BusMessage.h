// One message of a bus, owned; and what is often done with one.
#pragma once

#include <dbus/dbus.h>

#include <memory>
#include <string>

namespace platform {

struct BusMessageRelease {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, BusMessageRelease>;

// Null when there is no memory, or a name is none. Nobody is started by it.
inline BusMessage newMethodCall(const std::string& destination, const std::string& path,
                                const char* interface, const char* method) {
  BusMessage message(
      dbus_message_new_method_call(destination.c_str(), path.c_str(), interface, method));
  if (message != nullptr) dbus_message_set_auto_start(message.get(), FALSE);
  return message;
}

// Null when it is an error, or has none.
inline const char* textOf(DBusMessage* reply) {
  const char* text = nullptr;
  if (dbus_message_get_type(reply) == DBUS_MESSAGE_TYPE_METHOD_RETURN) {
    dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  }
  return text;
}

}  // namespace platform
