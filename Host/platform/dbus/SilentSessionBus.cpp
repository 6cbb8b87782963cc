#include "platform/dbus/SilentSessionBus.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/dbus/BusAddress.h"
#include "platform/dbus/BusMessage.h"

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

struct CloseConnection {
  void operator()(DBusConnection* connection) const {
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
  }
};
using Connection = std::unique_ptr<DBusConnection, CloseConnection>;

// The library's calls that wait for a reply have no limit before the bus has said who we are.
bool isSilent(DBusConnection* bus, std::chrono::milliseconds patience) {
  const BusMessage greeting =
      newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello");
  if (greeting == nullptr || !dbus_connection_send(bus, greeting.get(), nullptr)) return false;
  const auto deadline = Clock::now() + patience;
  for (auto rest = patience; rest.count() > 0;
       rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now())) {
    const bool isConnected = dbus_connection_read_write(bus, static_cast<int>(rest.count())) != 0;
    const BusMessage answer(dbus_connection_pop_message(bus));
    if (!isConnected || answer != nullptr) return false;
  }
  return true;
}

}  // namespace

bool leaveSilentSessionBus(std::chrono::milliseconds patience) {
  const std::string address = addressOf(Bus::Session);
  if (!isOfThisMachine(address)) return false;
  const Connection bus(dbus_connection_open_private(address.c_str(), nullptr));
  if (bus == nullptr || !isSilent(bus.get(), patience)) return false;
  setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  return true;
}

}  // namespace platform
