#include "platform/avahi/DaemonVersion.h"

#include <dbus/dbus.h>

#include <utility>

#include "platform/dbus/BusConnection.h"
#include "platform/dbus/BusMessage.h"

namespace platform {
namespace {

class Call final : public Diagnostics::Question, private BusConnection::Listener {
 public:
  Call(RunLoop& runLoop, Diagnostics::Answer answer)
      : mAnswer(std::move(answer)), mBus(runLoop, Bus::System, *this) {}

  bool start() {
    return mBus.open() &&
           mBus.call(newMethodCall("org.freedesktop.Avahi", "/", "org.freedesktop.Avahi.Server",
                                   "GetVersionString"),
                     [this](DBusMessage* reply) {
                       const char* const version = textOf(reply);
                       mAnswer(version == nullptr ? "not running" : version);
                     });
  }

 private:
  void signalled(DBusMessage*) override {}
  void closed() override { mAnswer("the system bus has closed the connection"); }

  const Diagnostics::Answer mAnswer;
  BusConnection mBus;
};

}  // namespace

std::string avahiVersion() { return AVAHI_VERSION; }

std::string busLibraryVersion() {
  int major = 0;
  int minor = 0;
  int micro = 0;
  dbus_get_version(&major, &minor, &micro);
  return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(micro);
}

std::unique_ptr<Diagnostics::Question> askDaemonVersion(RunLoop& runLoop,
                                                        Diagnostics::Answer answer) {
  auto call = std::make_unique<Call>(runLoop, std::move(answer));
  return call->start() ? std::move(call) : nullptr;
}

}  // namespace platform
