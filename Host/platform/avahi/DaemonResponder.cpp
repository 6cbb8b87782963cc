#include "platform/avahi/DaemonResponder.h"

#include <avahi-common/domain.h>

#include <string>
#include <utility>

#include "platform/avahi/DaemonObjects.h"
#include "platform/avahi/DaemonQueries.h"
#include "platform/dbus/BusConnection.h"

namespace platform {
namespace {

constexpr char kDaemonName[] = "org.freedesktop.Avahi";

BusMessage newBusCall(const char* method, const char* argument) {
  BusMessage message =
      newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, method);
  if (message != nullptr) {
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &argument, DBUS_TYPE_INVALID);
  }
  return message;
}

class BusResponder : public DaemonResponder, private BusConnection::Listener {
 public:
  BusResponder(RunLoop& runLoop, std::function<void(State)> stateChanged)
      : mStateChanged(std::move(stateChanged)), mBus(runLoop, Bus::System, *this) {}

  bool open() {
    if (!mBus.open()) return false;
    mBus.send(newBusCall("AddMatch",
                         "type='signal',sender='org.freedesktop.DBus',"
                         "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                         "arg0='org.freedesktop.Avahi'"));
    mBus.call(newBusCall("GetNameOwner", kDaemonName), [this](DBusMessage* reply) {
      const char* const owner = textOf(reply);
      daemonIs(owner == nullptr ? "" : owner);
    });
    return true;
  }

  State state() const override { return mState; }

  std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                BrowseListener& listener) override {
    return browseByDaemon(*mObjects, type, domain, listener);
  }

  std::unique_ptr<Query> browseDomains(DomainListener& listener) override {
    return browseDomainsByDaemon(*mObjects, listener);
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, const Question& question,
                                 ResolveCallback callback) override {
    return resolveByDaemon(*mObjects, service, question, std::move(callback));
  }

  std::string defaultDomain() const override { return mDomain; }

 private:
  void signalled(DBusMessage* signal) override {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (!dbus_message_has_sender(signal, DBUS_SERVICE_DBUS)) {
      if (mObjects != nullptr) mObjects->signalled(signal);
    } else if (dbus_message_is_signal(signal, DBUS_INTERFACE_DBUS, "NameOwnerChanged") &&
               dbus_message_get_args(signal, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING,
                                     &before, DBUS_TYPE_STRING, &after, DBUS_TYPE_INVALID) &&
               name == std::string(kDaemonName)) {
      daemonIs(after);
    }
  }

  void closed() override { become(State::Lost); }

  // `owner` is the daemon's unique name on the bus, no name at all when there is none. One that
  // does not answer, because it is stopped, is not ready.
  void daemonIs(const std::string& owner) {
    if (mState == State::Ready) return become(State::Lost);
    mOwner = owner;
    if (!dbus_validate_bus_name(owner.c_str(), nullptr)) return become(State::Absent);
    become(State::Unknown);
    mBus.call(newMethodCall(owner, "/", "org.freedesktop.Avahi.Server", "GetDomainName"),
              [this, owner](DBusMessage* reply) {
                if (owner == mOwner) daemonAnswered(reply);
              });
  }

  // One that talks to nobody like us is as good as none.
  void daemonAnswered(DBusMessage* reply) {
    // Asked twice when it takes its name while the bus is asked for it: there may be queries now.
    if (mObjects != nullptr) return;
    const char* const domain = textOf(reply);
    if (domain == nullptr || avahi_is_valid_domain_name(domain) == 0) return become(State::Absent);
    mDomain = domain;
    mObjects = std::make_unique<DaemonObjects>(mBus, mOwner);
    become(State::Ready);
  }

  void become(State state) {
    if (mState == State::Lost || std::exchange(mState, state) == state) return;
    mStateChanged(state);
  }

  State mState = State::Unknown;
  const std::function<void(State)> mStateChanged;
  std::string mOwner;
  std::string mDomain;
  BusConnection mBus;
  std::unique_ptr<DaemonObjects> mObjects;
};

}  // namespace

std::unique_ptr<DaemonResponder> connectToDaemon(
    RunLoop& runLoop, std::function<void(DaemonResponder::State)> stateChanged) {
  auto responder = std::make_unique<BusResponder>(runLoop, std::move(stateChanged));
  return responder->open() ? std::move(responder) : nullptr;
}

}  // namespace platform
