// One message of a bus, owned; and what is often done with one.
#pragma once

#include <dbus/dbus.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

namespace platform {

struct BusMessageRelease {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, BusMessageRelease>;

// Whether it is an answer: an error has its own name and no values that anybody asks for.
inline bool isReturn(DBusMessage* reply) {
  return dbus_message_get_type(reply) == DBUS_MESSAGE_TYPE_METHOD_RETURN;
}

// A call that the bus starts its destination for, where it knows how. Null when there is no memory,
// or `destination` or `path` is none: the library takes that for a mistake, and ends the program.
inline BusMessage newStartingCall(const std::string& destination, const std::string& path,
                                  const char* interface, const char* method) {
  if (!dbus_validate_bus_name(destination.c_str(), nullptr) ||
      !dbus_validate_path(path.c_str(), nullptr)) {
    return nullptr;
  }
  return BusMessage(
      dbus_message_new_method_call(destination.c_str(), path.c_str(), interface, method));
}

// The same, but nobody is started by it.
inline BusMessage newMethodCall(const std::string& destination, const std::string& path,
                                const char* interface, const char* method) {
  BusMessage message = newStartingCall(destination, path, interface, method);
  if (message != nullptr) dbus_message_set_auto_start(message.get(), FALSE);
  return message;
}

// Appends a table of options, all of them texts (UTF-8).
inline void appendOptions(
    DBusMessage* message,
    std::initializer_list<std::pair<const char*, const std::string&>> options) {
  DBusMessageIter end;
  DBusMessageIter table;
  DBusMessageIter entry;
  DBusMessageIter value;
  dbus_message_iter_init_append(message, &end);
  dbus_message_iter_open_container(&end, DBUS_TYPE_ARRAY, "{sv}", &table);
  for (const auto& [name, text] : options) {
    const char* const bytes = text.c_str();
    dbus_message_iter_open_container(&table, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
    dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, &name);
    dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, "s", &value);
    dbus_message_iter_append_basic(&value, DBUS_TYPE_STRING, &bytes);
    dbus_message_iter_close_container(&entry, &value);
    dbus_message_iter_close_container(&table, &entry);
  }
  dbus_message_iter_close_container(&end, &table);
}

// Null when it is an error, or has none.
inline const char* textOf(DBusMessage* reply) {
  const char* text = nullptr;
  if (isReturn(reply)) {
    dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  }
  return text;
}

}  // namespace platform
