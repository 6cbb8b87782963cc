#include "platform/dbus/SilentBuses.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/dbus/BusAddress.h"
#include "platform/dbus/BusMessage.h"

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The library's calls that wait for a reply have no limit before the bus has said who we are.
class PatientBus {
 public:
  PatientBus(const std::string& address, milliseconds patience) : mPatience(patience) {
    if (!isOfThisMachine(address)) return;
    mConnection.reset(dbus_connection_open_private(address.c_str(), nullptr));
    ask(newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
  }

  // Whether the last question is still without an answer, though the bus is there.
  bool isSilent() const { return mIsSilent; }

  // Null when no answer has come in time.
  BusMessage ask(const BusMessage& question) {
    dbus_uint32_t serial = 0;
    if (mConnection == nullptr || question == nullptr ||
        !dbus_connection_send(mConnection.get(), question.get(), &serial)) {
      return nullptr;
    }
    mIsSilent = true;
    const auto deadline = Clock::now() + mPatience;
    for (auto rest = mPatience; mIsSilent && rest.count() > 0;
         rest = std::chrono::ceil<milliseconds>(deadline - Clock::now())) {
      mIsSilent =
          dbus_connection_read_write(mConnection.get(), static_cast<int>(rest.count())) != 0;
      while (BusMessage message{dbus_connection_pop_message(mConnection.get())}) {
        if (dbus_message_get_reply_serial(message.get()) != serial) continue;
        mIsSilent = false;
        return message;
      }
    }
    return nullptr;
  }

 private:
  struct Close {
    void operator()(DBusConnection* connection) const {
      dbus_connection_close(connection);
      dbus_connection_unref(connection);
    }
  };

  milliseconds mPatience;
  std::unique_ptr<DBusConnection, Close> mConnection;
  bool mIsSilent = false;
};

// Empty where nobody serves assistive technology.
std::string addressOfAccessibilityBus(PatientBus& session) {
  const BusMessage answer =
      session.ask(newMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
  const char* const address = answer == nullptr ? nullptr : textOf(answer.get());
  return address == nullptr ? "" : address;
}

std::string nameOfSilentBus(milliseconds patience) {
  PatientBus session(addressOf(Bus::Session), patience);
  if (session.isSilent()) return "session bus";
  const PatientBus accessibility(addressOfAccessibilityBus(session), patience);
  return accessibility.isSilent() ? "accessibility bus" : "";
}

}  // namespace

std::string leaveSilentBuses(milliseconds patience) {
  std::string name = nameOfSilentBus(patience);
  if (!name.empty()) setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  return name;
}

}  // namespace platform
