#include <cstddef>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "BusTest.h"
#include "TemporaryDirectory.h"
#include "WatchedMemory.h"
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

  static BusMessage question() {
    return platform::newMethodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId");
  }

  bool isAnswered(BusConnection& connection) {
    bool isAnswered = false;
    connection.call(question(), [&](DBusMessage*) { isAnswered = true; });
    return runLoop.runUntil([&] { return isAnswered; });
  }

  // Opens it while that allocation of the program's own fails; none where that happened, and said
  // so.
  std::optional<bool> opensWithout(std::size_t allocation, BusConnection& connection) {
    const FailingAllocation failing(allocation);
    try {
      const bool isOpen = connection.open();
      mHasFailed = failing.hasFailed();
      return isOpen;
    } catch (const std::bad_alloc&) {
      return std::nullopt;
    }
  }

  bool mHasFailed = true;
  std::vector<std::string> mSignals;
  bool mIsMemoryForSignals = true;

 private:
  void signalled(DBusMessage* signal) override {
    mSignals.emplace_back(dbus_message_get_member(signal));
    if (!std::exchange(mIsMemoryForSignals, true)) throw std::bad_alloc();
  }
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
  ASSERT_TRUE(isAnswered(connection));
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

// One that looks open, and on which nobody hears anything, would keep whoever asks waiting.
TEST_F(BusConnectionTest, WithoutMemoryItIsOpenOrSaysThatItIsNot) {
  std::size_t refused = 0;
  for (std::size_t allocation = 0; mHasFailed; ++allocation) {
    SCOPED_TRACE("allocation " + std::to_string(allocation));
    BusConnection connection(runLoop, Bus::System, *this);
    const auto isOpen = opensWithout(allocation, connection);
    if (isOpen == true) {
      ASSERT_TRUE(isAnswered(connection));
    } else if (isOpen == false) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0u);
}

TEST_F(BusConnectionTest, ReplyThatThereIsNoMemoryForIsLostAlone) {
  BusConnection connection(runLoop, Bus::System, *this);
  ASSERT_TRUE(connection.open());
  connection.call(question(), [](DBusMessage*) { throw std::bad_alloc(); });
  EXPECT_TRUE(isAnswered(connection));
}

TEST_F(BusConnectionTest, SignalThatThereIsNoMemoryForComesAgain) {
  mIsMemoryForSignals = false;
  BusConnection connection(runLoop, Bus::System, *this);
  ASSERT_TRUE(connection.open());
  ASSERT_TRUE(isAnswered(connection));
  EXPECT_THAT(mSignals, testing::ElementsAre("NameAcquired", "NameAcquired"));
}

}  // namespace
