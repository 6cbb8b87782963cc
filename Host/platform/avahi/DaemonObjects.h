// What the daemon does for this program: an object of the daemon's for each question, which reports
// by signals and works until it is freed. A question that is dropped before the daemon has given it
// its object is freed when it has. The daemon allows a client only so many objects at a time.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/dbus/BusConnection.h"

namespace platform {

class DaemonObjects {
 public:
  // Its callbacks may ask for more, and must not drop what is reported.
  class Client {
   public:
    virtual ~Client() = default;
    virtual void accepted() = 0;
    virtual void refused() = 0;  // there will be no object
    virtual void signalled(DBusMessage* signal) = 0;
  };

  class Object;

  // The connection must live longer, and `daemon` is its unique name on the bus.
  DaemonObjects(BusConnection& bus, std::string daemon);

  // An object of the type `interface`; the call for it is one of newCall(). Destroying it frees it.
  // Null when it is refused at once. The client must live longer.
  std::unique_ptr<Object> create(const BusMessage& call, std::string interface, Client& client);

  BusMessage newCall(const char* method) const;

  // A signal of the bus, which is passed on if it comes from an object of ours.
  void signalled(DBusMessage* signal) const;

 private:
  struct Entry {
    std::string interface;
    Client* client;    // null when it has been dropped
    std::string path;  // empty before the daemon has replied
  };

  void replied(const std::shared_ptr<Entry>& entry, DBusMessage* reply);
  void free(const Entry& entry);

  BusConnection& mBus;
  const std::string mDaemon;
  std::map<std::string, std::shared_ptr<Entry>> mEntries;  // by path
};

class DaemonObjects::Object {
 public:
  Object(DaemonObjects& objects, std::shared_ptr<Entry> entry);
  ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

 private:
  DaemonObjects& mObjects;
  const std::shared_ptr<Entry> mEntry;
};

}  // namespace platform
