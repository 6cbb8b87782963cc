#include "platform/dbus/DesktopNotifier.h"

#include <cstdint>
#include <utility>

namespace platform {
namespace {

constexpr char kDaemon[] = "org.freedesktop.Notifications";
constexpr char kPath[] = "/org/freedesktop/Notifications";
constexpr char kMarkup[] = "body-markup";

BusMessage newDaemonCall(const char* method) {
  return newStartingCall(kDaemon, kPath, kDaemon, method);
}

bool knowsMarkup(DBusMessage* capabilities) {
  char** names = nullptr;
  int count = 0;
  dbus_message_get_args(capabilities, nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING, &names, &count,
                        DBUS_TYPE_INVALID);
  bool knows = false;
  for (int i = 0; i < count; ++i) knows = knows || std::string(names[i]) == kMarkup;
  dbus_free_string_array(names);
  return knows;
}

std::string escaped(const std::string& text) {
  std::string markup;
  for (const char character : text) {
    switch (character) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      default:
        markup += character;
    }
  }
  return markup;
}

}  // namespace

DesktopNotifier::DesktopNotifier(RunLoop& runLoop, std::string application)
    : mRunLoop(runLoop), mApplication(std::move(application)), mDeferred(runLoop) {}

void DesktopNotifier::show(const std::string& title, const std::string& text) {
  mDeferred.post([this, title, text] {
    if (!ask(title, text) && connect()) ask(title, text);
  });
}

bool DesktopNotifier::connect() {
  BusConnection::Listener& listener = *this;
  mBus = std::make_unique<BusConnection>(mRunLoop, Bus::Session, listener);
  if (!mBus->open()) mBus.reset();
  return mBus != nullptr;
}

// A daemon that knows no markup would show its escapes.
bool DesktopNotifier::ask(const std::string& title, const std::string& text) {
  return mBus != nullptr &&
         mBus->call(newDaemonCall("GetCapabilities"), [this, title, text](DBusMessage* reply) {
           if (!isReturn(reply)) return;
           notify(title, knowsMarkup(reply) ? escaped(text) : text);
         });
}

void DesktopNotifier::notify(const std::string& title, const std::string& text) {
  const BusMessage message = newDaemonCall("Notify");
  if (message == nullptr) return;
  const char* const application = mApplication.c_str();
  constexpr std::uint32_t kReplacesNone = 0;
  const char* const titleText = title.c_str();
  const char* const bodyText = text.c_str();
  const char* const* const noActions = nullptr;
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &application, DBUS_TYPE_UINT32,
                           &kReplacesNone, DBUS_TYPE_STRING, &application, DBUS_TYPE_STRING,
                           &titleText, DBUS_TYPE_STRING, &bodyText, DBUS_TYPE_ARRAY,
                           DBUS_TYPE_STRING, &noActions, 0, DBUS_TYPE_INVALID);
  appendOptions(message.get(), {{"desktop-entry", mApplication}});
  constexpr std::int32_t kAsLongAsTheDaemonLikes = -1;
  dbus_message_append_args(message.get(), DBUS_TYPE_INT32, &kAsLongAsTheDaemonLikes,
                           DBUS_TYPE_INVALID);
  mBus->send(message);
}

}  // namespace platform
