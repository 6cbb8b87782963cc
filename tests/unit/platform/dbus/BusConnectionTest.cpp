#include <filesystem>

#include "BusTest.h"
#include "TemporaryDirectory.h"
#include "platform/dbus/BusConnection.h"

namespace {

using platform::Bus;
using platform::BusConnection;
using platform::BusMessage;

class BusConnectionTest : public BusTest, protected BusConnection::Listener {
 protected:
  bool opens(Bus bus) { return BusConnection(runLoop, bus, *this).open(); }

  // The name that the bus has given us; empty when it says nothing.
  std::string nameOn(Bus bus) {
    BusConnection connection(runLoop, bus, *this);
    if (!connection.open()) return "closed";
    std::string owner;
    BusMessage call = platform::newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                              DBUS_INTERFACE_DBUS, "GetNameOwner");
    const char* const name = DBUS_SERVICE_DBUS;
    dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
    connection.call(call, [&](DBusMessage* reply) { owner = platform::textOf(reply); });
    runLoop.runUntil([&] { return !owner.empty(); });
    return owner;
  }

 private:
  void signalled(DBusMessage*) override {}
  void closed() override {}
};

TEST_F(BusConnectionTest, ReachesTheBusesThatTheEnvironmentNames) {
  EXPECT_EQ(nameOn(Bus::System), "org.freedesktop.DBus");
  EXPECT_EQ(nameOn(Bus::Session), "org.freedesktop.DBus");
  systemBus.stop();
  EXPECT_FALSE(opens(Bus::System));
  EXPECT_TRUE(opens(Bus::Session));
  sessionBus.stop();
  EXPECT_FALSE(opens(Bus::Session));
}

TEST_F(BusConnectionTest, WithoutAnAddressTheSessionIsTheOneOfTheRuntimeDirectory) {
  const std::string address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  const TemporaryDirectory runtime;
  const auto directory = runtime.path() / "with,comma";
  std::filesystem::create_directory(directory);
  std::filesystem::create_symlink(address.substr(address.find('=') + 1), directory / "bus");
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
  EXPECT_EQ(nameOn(Bus::Session), "org.freedesktop.DBus");
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_FALSE(opens(Bus::Session));
}

// The bus can be written to at any time: a loop that looked for that would never rest.
TEST_F(BusConnectionTest, ConnectionWithNothingToSendWaitsForMessagesAlone) {
  BusConnection connection(runLoop, Bus::System, *this);
  ASSERT_TRUE(connection.open());
  bool isGreeted = false;
  connection.call(
      platform::newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId"),
      [&](DBusMessage*) { isGreeted = true; });
  ASSERT_TRUE(runLoop.runUntil([&] { return isGreeted; }));
  EXPECT_EQ(runLoop.enabledWatches(), 1U);
}

TEST_F(BusConnectionTest, StartsNoProcessAndAsksNoNetworkForABus) {
  const TemporaryDirectory directory;
  const auto started = directory.path() / "started";
  for (const std::string& address :
       {"unixexec:path=/usr/bin/touch,argv1=" + started.string(), std::string("autolaunch:"),
        std::string("tcp:host=127.0.0.1,port=1"), std::string("nonsense")}) {
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    EXPECT_FALSE(opens(Bus::Session)) << address;
  }
  EXPECT_FALSE(std::filesystem::exists(started));
}

}  // namespace
