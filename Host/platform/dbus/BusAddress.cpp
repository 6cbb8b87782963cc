#include "platform/dbus/BusAddress.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <memory>

namespace platform {
namespace {

std::string chosenBy(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

std::string addressOfSystemBus() {
  const std::string chosen = chosenBy("DBUS_SYSTEM_BUS_ADDRESS");
  return chosen.empty() ? SYSTEM_BUS_ADDRESS : chosen;
}

std::string addressOfSessionBus() {
  std::string chosen = chosenBy("DBUS_SESSION_BUS_ADDRESS");
  const std::string runtimeDirectory = chosenBy("XDG_RUNTIME_DIR");
  if (!chosen.empty() || runtimeDirectory.empty()) return chosen;
  const std::unique_ptr<char, decltype(&dbus_free)> path(
      dbus_address_escape_value((runtimeDirectory + "/bus").c_str()), dbus_free);
  return path == nullptr ? "" : std::string("unix:path=") + path.get();
}

}  // namespace

std::string addressOf(Bus bus) {
  return bus == Bus::System ? addressOfSystemBus() : addressOfSessionBus();
}

bool isOfThisMachine(const std::string& address) { return address.starts_with("unix:"); }

}  // namespace platform
