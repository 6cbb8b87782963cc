#include "AvahiArguments.h"

namespace {

void appendTxt(DBusMessage* message, const std::vector<std::string>& strings) {
  DBusMessageIter end;
  DBusMessageIter list;
  dbus_message_iter_init_append(message, &end);
  dbus_message_iter_open_container(&end, DBUS_TYPE_ARRAY, "ay", &list);
  for (const std::string& string : strings) {
    DBusMessageIter bytes;
    const char* const data = string.data();
    dbus_message_iter_open_container(&list, DBUS_TYPE_ARRAY, "y", &bytes);
    dbus_message_iter_append_fixed_array(&bytes, DBUS_TYPE_BYTE, &data,
                                         static_cast<int>(string.size()));
    dbus_message_iter_close_container(&list, &bytes);
  }
  dbus_message_iter_close_container(&end, &list);
}

void appendFlags(DBusMessage* message) {
  const std::uint32_t flags = 0;
  dbus_message_append_args(message, DBUS_TYPE_UINT32, &flags, DBUS_TYPE_INVALID);
}

}  // namespace

void append(DBusMessage* message, const char* text) {
  dbus_message_append_args(message, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
}

void append(DBusMessage* message, std::int32_t number) {
  dbus_message_append_args(message, DBUS_TYPE_INT32, &number, DBUS_TYPE_INVALID);
}

// Interface, protocol, name, type, domain, flags.
void appendItem(DBusMessage* message) {
  append(message, 2);
  append(message, 0);
  append(message, "Office");
  append(message, "_pdl-datastream._tcp");
  append(message, "local");
  appendFlags(message);
}

void appendAnswer(DBusMessage* message, const AvahiAnswer& answer) {
  append(message, 2);
  append(message, 0);
  for (const char* text : {"Office", "_pdl-datastream._tcp", "local", "office.local"}) {
    append(message, text);
  }
  append(message, 0);
  append(message, answer.address);
  dbus_message_append_args(message, DBUS_TYPE_UINT16, &answer.port, DBUS_TYPE_INVALID);
  appendTxt(message, answer.txt);
  appendFlags(message);
}
