#include "platform/dbus/SleepLock.h"

#include <array>
#include <chrono>
#include <utility>

namespace platform {
namespace {

// From all to the least that is of use. A user may be allowed some of it only.
constexpr std::array kChoices{"sleep:shutdown:handle-lid-switch", "sleep:shutdown", "sleep"};

// A delay would be over before the printer has written its memory.
constexpr const char* kMode = "block";

constexpr std::chrono::seconds kPatience{5};

const std::string kNothing = "Unable to keep the computer awake during downloads: ";
const std::string kLess = "Unable to block more than ";

BusMessage newInhibit(const char* what, const PowerLockTexts& texts) {
  BusMessage message = newStartingCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager", "Inhibit");
  const char* const who = texts.who.c_str();
  const char* const why = texts.why.c_str();
  if (message != nullptr) {
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &what, DBUS_TYPE_STRING, &who,
                             DBUS_TYPE_STRING, &why, DBUS_TYPE_STRING, &kMode, DBUS_TYPE_INVALID);
  }
  return message;
}

}  // namespace

SleepLock::SleepLock(RunLoop& runLoop, PowerLockTexts texts, Report report)
    : mRunLoop(runLoop),
      mTexts(std::move(texts)),
      mReport(std::move(report)),
      mBus(runLoop, Bus::System, *this),
      mDeferred(runLoop) {
  mDeferred.post([this] { connect(); });
}

void SleepLock::connect() {
  if (!mBus.open()) return reportOnce(kNothing + "no system bus");
  mPatience = mRunLoop.startTimer(kPatience, false, [this] { reportOnce(kNothing + "no answer"); });
  askFor(0);
}

void SleepLock::askFor(std::size_t choice) {
  mBus.call(newInhibit(kChoices[choice], mTexts),
            [this, choice](DBusMessage* reply) { answered(choice, reply); });
}

void SleepLock::answered(std::size_t choice, DBusMessage* reply) {
  if (isReturn(reply) && dbus_message_has_signature(reply, DBUS_TYPE_UNIX_FD_AS_STRING)) {
    mPatience.reset();
    mLock.reset(dbus_message_ref(reply));
    if (choice > 0) reportOnce(kLess + kChoices[choice] + " during downloads: " + mRefusal);
    return;
  }
  const char* const error = dbus_message_get_error_name(reply);
  if (choice == 0) mRefusal = error == nullptr ? "not understood" : error;
  if (choice + 1 < kChoices.size()) return askFor(choice + 1);
  reportOnce(kNothing + mRefusal);
}

void SleepLock::reportOnce(const std::string& entry) {
  mPatience.reset();
  if (const Report report = std::exchange(mReport, nullptr)) report(entry);
}

void SleepLock::closed() {
  if (mLock == nullptr) reportOnce(kNothing + "the system bus has gone");
}

}  // namespace platform
