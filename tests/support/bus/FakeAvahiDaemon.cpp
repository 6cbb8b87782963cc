#include "FakeAvahiDaemon.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace {

std::string textOf(DBusMessageIter& argument) {
  switch (dbus_message_iter_get_arg_type(&argument)) {
    case DBUS_TYPE_STRING: {
      const char* text = nullptr;
      dbus_message_iter_get_basic(&argument, &text);
      return std::string("'") + text + "'";
    }
    case DBUS_TYPE_INT32: {
      std::int32_t number = 0;
      dbus_message_iter_get_basic(&argument, &number);
      return std::to_string(number);
    }
    case DBUS_TYPE_UINT32: {
      std::uint32_t number = 0;
      dbus_message_iter_get_basic(&argument, &number);
      return std::to_string(number);
    }
    default:
      return "?";
  }
}

std::string lineOf(DBusMessage* call) {
  std::string line =
      std::string(dbus_message_get_path(call)) + ' ' + dbus_message_get_member(call) + ':';
  DBusMessageIter argument;
  if (!dbus_message_iter_init(call, &argument)) return line;
  do {
    line += ' ' + textOf(argument);
  } while (dbus_message_iter_next(&argument));
  return line;
}

// The library remembers the first address of its own buses: here each test has another one.
DBusConnection* connect() {
  DBusConnection* const connection =
      dbus_connection_open_private(std::getenv("DBUS_SYSTEM_BUS_ADDRESS"), nullptr);
  if (connection == nullptr || !dbus_bus_register(connection, nullptr)) {
    throw std::runtime_error("no system bus");
  }
  dbus_connection_set_exit_on_disconnect(connection, false);
  return connection;
}

void disconnect(DBusConnection* connection) {
  dbus_connection_close(connection);
  dbus_connection_unref(connection);
}

}  // namespace

FakeAvahiDaemon::FakeAvahiDaemon() : mConnection(connect()) {
  dbus_connection_add_filter(mConnection, received, this, nullptr);
  if (dbus_bus_request_name(mConnection, "org.freedesktop.Avahi", 0, nullptr) !=
      DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER) {
    throw std::runtime_error("no name on the bus");
  }
}

FakeAvahiDaemon::~FakeAvahiDaemon() { disconnect(mConnection); }

void FakeAvahiDaemon::turn() {
  dbus_connection_read_write(mConnection, 0);
  while (dbus_connection_dispatch(mConnection) == DBUS_DISPATCH_DATA_REMAINS) {
  }
}

void FakeAvahiDaemon::leaveTheBus() {
  dbus_bus_release_name(mConnection, "org.freedesktop.Avahi", nullptr);
}

void FakeAvahiDaemon::signal(const std::string& path, const std::string& interface,
                             const std::string& member,
                             const std::function<void(DBusMessage*)>& fill) {
  sendSignal(mConnection, path, interface, member, fill);
  dbus_connection_flush(mConnection);
}

// Returns when the bus has passed it on: what the daemon says afterwards comes after it.
void FakeAvahiDaemon::forge(const std::string& path, const std::string& interface,
                            const std::string& member,
                            const std::function<void(DBusMessage*)>& fill) {
  DBusConnection* const stranger = connect();
  sendSignal(stranger, path, interface, member, fill);
  dbus_bus_name_has_owner(stranger, mClient.c_str(), nullptr);
  disconnect(stranger);
}

void FakeAvahiDaemon::sendSignal(DBusConnection* sender, const std::string& path,
                                 const std::string& interface, const std::string& member,
                                 const std::function<void(DBusMessage*)>& fill) const {
  DBusMessage* const message =
      dbus_message_new_signal(path.c_str(), interface.c_str(), member.c_str());
  dbus_message_set_destination(message, mClient.c_str());
  fill(message);
  dbus_connection_send(sender, message, nullptr);
  dbus_message_unref(message);
}

DBusHandlerResult FakeAvahiDaemon::received(DBusConnection*, DBusMessage* message, void* self) {
  if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL) {
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
  }
  static_cast<FakeAvahiDaemon*>(self)->reply(message);
  return DBUS_HANDLER_RESULT_HANDLED;
}

void FakeAvahiDaemon::reply(DBusMessage* call) {
  mCalls.push_back(lineOf(call));
  mClient = dbus_message_get_sender(call);
  if (dbus_message_get_no_reply(call)) return;
  const std::string member = dbus_message_get_member(call);
  DBusMessage* answer = nullptr;
  if (member == mRefused) {
    answer = dbus_message_new_error(call, "org.freedesktop.Avahi.TooManyObjectsError", "no");
  } else {
    answer = dbus_message_new_method_return(call);
    const std::string text = "/" + member;
    const char* const path = text.c_str();
    const char* const domain = "local";
    if (member == "GetDomainName") {
      dbus_message_append_args(answer, DBUS_TYPE_STRING, &domain, DBUS_TYPE_INVALID);
    } else if (member.ends_with("New")) {
      dbus_message_append_args(answer, DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID);
    }
  }
  dbus_connection_send(mConnection, answer, nullptr);
  dbus_message_unref(answer);
  dbus_connection_flush(mConnection);
}
