#include "platform/avahi/DaemonObjects.h"

#include <utility>

namespace platform {

DaemonObjects::DaemonObjects(BusConnection& bus, std::string daemon)
    : mBus(bus), mDaemon(std::move(daemon)) {}

BusMessage DaemonObjects::newCall(const char* method) const {
  return newMethodCall(mDaemon, "/", "org.freedesktop.Avahi.Server", method);
}

std::unique_ptr<DaemonObjects::Object> DaemonObjects::create(const BusMessage& call,
                                                             std::string interface,
                                                             Client& client) {
  auto entry = std::make_shared<Entry>(Entry{std::move(interface), &client, {}});
  const auto reply = [this, entry](DBusMessage* message) { replied(entry, message); };
  if (!mBus.call(call, reply)) return nullptr;
  return std::make_unique<Object>(*this, std::move(entry));
}

// The daemon is one process: its reply comes before the first signal of the object.
void DaemonObjects::replied(const std::shared_ptr<Entry>& entry, DBusMessage* reply) {
  const char* path = nullptr;
  if (!isReturn(reply) ||
      !dbus_message_get_args(reply, nullptr, DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID)) {
    if (entry->client != nullptr) entry->client->refused();
    return;
  }
  entry->path = path;
  if (entry->client == nullptr) return free(*entry);
  mEntries[entry->path] = entry;
  entry->client->accepted();
}

void DaemonObjects::free(const Entry& entry) {
  mBus.send(newMethodCall(mDaemon, entry.path, entry.interface.c_str(), "Free"));
}

void DaemonObjects::signalled(DBusMessage* signal) const {
  if (!dbus_message_has_sender(signal, mDaemon.c_str())) return;
  const char* const path = dbus_message_get_path(signal);
  const auto found = path == nullptr ? mEntries.end() : mEntries.find(path);
  if (found == mEntries.end()) return;
  const std::shared_ptr<Entry> entry = found->second;
  if (dbus_message_has_interface(signal, entry->interface.c_str())) {
    entry->client->signalled(signal);
  }
}

DaemonObjects::Object::Object(DaemonObjects& objects, std::shared_ptr<Entry> entry)
    : mObjects(objects), mEntry(std::move(entry)) {}

DaemonObjects::Object::~Object() {
  mEntry->client = nullptr;
  if (mEntry->path.empty()) return;
  mObjects.mEntries.erase(mEntry->path);
  mObjects.free(*mEntry);
}

}  // namespace platform
