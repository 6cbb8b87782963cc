#include "platform/dbus/IdleInhibition.h"

#include <cstdint>
#include <utility>

namespace platform {
namespace {

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalRequest[] = "org.freedesktop.portal.Request";
constexpr char kScreenSaver[] = "org.freedesktop.ScreenSaver";
constexpr char kScreenSaverPath[] = "/org/freedesktop/ScreenSaver";

// The portal's flags: suspending, and being idle.
constexpr std::uint32_t kSuspendAndIdle = 4 | 8;

BusMessage newPortalInhibit(const PowerLockTexts& texts) {
  BusMessage message = newStartingCall(kPortal, "/org/freedesktop/portal/desktop",
                                       "org.freedesktop.portal.Inhibit", "Inhibit");
  if (message == nullptr) return message;
  const char* const noWindow = "";
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &noWindow, DBUS_TYPE_UINT32,
                           &kSuspendAndIdle, DBUS_TYPE_INVALID);
  appendOptions(message.get(), {{"reason", texts.why}});
  return message;
}

BusMessage newScreenSaverInhibit(const PowerLockTexts& texts) {
  BusMessage message = newMethodCall(kScreenSaver, kScreenSaverPath, kScreenSaver, "Inhibit");
  const char* const who = texts.who.c_str();
  const char* const why = texts.why.c_str();
  if (message != nullptr) {
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &who, DBUS_TYPE_STRING, &why,
                             DBUS_TYPE_INVALID);
  }
  return message;
}

BusMessage newUnInhibit(std::uint32_t cookie) {
  BusMessage message = newMethodCall(kScreenSaver, kScreenSaverPath, kScreenSaver, "UnInhibit");
  if (message != nullptr) {
    dbus_message_append_args(message.get(), DBUS_TYPE_UINT32, &cookie, DBUS_TYPE_INVALID);
  }
  return message;
}

}  // namespace

IdleInhibition::IdleInhibition(RunLoop& runLoop, PowerLockTexts texts)
    : mRunLoop(runLoop), mTexts(std::move(texts)), mDeferred(runLoop) {}

IdleInhibition::~IdleInhibition() { giveBack(); }

void IdleInhibition::begin() {
  mWanted = true;
  mDeferred.post([this] { connect(); });
}

void IdleInhibition::end() {
  mWanted = false;
  if (!mAsking) giveBack();
}

void IdleInhibition::connect() {
  if (!mWanted || mBus != nullptr) return;
  BusConnection::Listener& listener = *this;
  mBus = std::make_unique<BusConnection>(mRunLoop, Bus::Session, listener);
  if (!mBus->open()) return mBus.reset();
  askPortal();
}

void IdleInhibition::askPortal() {
  mAsking = mBus->call(newPortalInhibit(mTexts), [this](DBusMessage* reply) {
    const char* request = nullptr;
    if (isReturn(reply) &&
        dbus_message_get_args(reply, nullptr, DBUS_TYPE_OBJECT_PATH, &request, DBUS_TYPE_INVALID)) {
      return given(newMethodCall(kPortal, request, kPortalRequest, "Close"));
    }
    askScreenSaver();
  });
}

void IdleInhibition::askScreenSaver() {
  mAsking = mBus->call(newScreenSaverInhibit(mTexts), [this](DBusMessage* reply) {
    std::uint32_t cookie = 0;
    const bool isGiven = isReturn(reply) && dbus_message_get_args(reply, nullptr, DBUS_TYPE_UINT32,
                                                                  &cookie, DBUS_TYPE_INVALID);
    given(isGiven ? newUnInhibit(cookie) : nullptr);
  });
}

// Here the connection is calling, which must not go before it is back.
void IdleInhibition::given(BusMessage giveBackCall) {
  mAsking = false;
  mGiveBack = std::move(giveBackCall);
  mDeferred.post([this] {
    if (!mWanted && !mAsking) giveBack();
  });
}

// What is sent reaches the bus before the end of the connection does.
void IdleInhibition::giveBack() {
  if (mBus == nullptr) return;
  mBus->send(std::exchange(mGiveBack, nullptr));
  mBus.reset();
}

// The portal gives what it only then asks the desktop for.
void IdleInhibition::signalled(DBusMessage* signal) {
  std::uint32_t response = 0;
  if (mGiveBack == nullptr || !dbus_message_is_signal(signal, kPortalRequest, "Response") ||
      !dbus_message_has_path(signal, dbus_message_get_path(mGiveBack.get()))) {
    return;
  }
  if (dbus_message_get_args(signal, nullptr, DBUS_TYPE_UINT32, &response, DBUS_TYPE_INVALID) &&
      response == 0) {
    return;
  }
  mGiveBack.reset();
  askScreenSaver();
}

void IdleInhibition::closed() {
  mAsking = false;
  mGiveBack.reset();
  mClosed = std::move(mBus);
  mDeferred.post([this] { mClosed.reset(); });
}

}  // namespace platform
