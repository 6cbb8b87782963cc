// Stands for avahi-daemon on a private system bus: gives an object to each question, writes down
// what it is asked, and sends the signals that a test wants. It is turned by whoever waits for
// something.
#pragma once

#include <dbus/dbus.h>

#include <functional>
#include <string>
#include <vector>

class FakeAvahiDaemon {
 public:
  FakeAvahiDaemon();
  ~FakeAvahiDaemon();
  FakeAvahiDaemon(const FakeAvahiDaemon&) = delete;
  FakeAvahiDaemon& operator=(const FakeAvahiDaemon&) = delete;

  // Reads what has come, and replies.
  void turn();

  // The calls so far, each as "PATH MEMBER: ARGUMENT ARGUMENT".
  const std::vector<std::string>& calls() const { return mCalls; }

  // Calls of that member are refused from now on.
  void refuse(const std::string& member) { mRefused = member; }

  // To the program that has asked last. `fill` appends the arguments.
  void signal(
      const std::string& path, const std::string& interface, const std::string& member,
      const std::function<void(DBusMessage*)>& fill = [](DBusMessage*) {});

  // The same, but of somebody else on the bus, who is not the daemon.
  void forge(const std::string& path, const std::string& interface, const std::string& member,
             const std::function<void(DBusMessage*)>& fill);

  void leaveTheBus();

 private:
  void sendSignal(DBusConnection* sender, const std::string& path, const std::string& interface,
                  const std::string& member, const std::function<void(DBusMessage*)>& fill) const;
  static DBusHandlerResult received(DBusConnection* connection, DBusMessage* message, void* self);
  void reply(DBusMessage* call);

  DBusConnection* mConnection;
  std::vector<std::string> mCalls;
  std::string mRefused;
  std::string mClient;
};
