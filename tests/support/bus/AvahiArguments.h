// What an Avahi daemon puts into its signals, for FakeAvahiDaemon: it speaks of the service
// "Office" of the type "_pdl-datastream._tcp" in "local", on interface 2 over IPv4.
#pragma once

#include <dbus/dbus.h>

#include <cstdint>
#include <string>
#include <vector>

void append(DBusMessage* message, const char* text);
void append(DBusMessage* message, std::int32_t number);

// Of a service that has appeared or gone.
void appendItem(DBusMessage* message);

// The daemon's list of a record begins with its last string.
struct AvahiAnswer {
  const char* address = "192.0.2.7";
  std::uint16_t port = 9100;
  std::vector<std::string> txt{"b=2", "a=1"};
};
void appendAnswer(DBusMessage* message, const AvahiAnswer& answer);
