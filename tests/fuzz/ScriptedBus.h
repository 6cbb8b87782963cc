// A message bus inside of a fuzzer, which the environment names as this process's system and
// session bus. At it is nobody but the fuzzer, which takes each call and says what comes back, and
// when. Messages go through a real socket, and what is received is what the bus library makes of
// it.
#pragma once

#include <dbus/dbus.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "FakeRunLoop.h"
#include "Script.h"
#include "platform/dbus/BusMessage.h"

class ScriptedBus {
 public:
  // A call, or a message that wants no answer, of one of those who have connected, by number.
  struct Received {
    std::size_t peer;
    platform::BusMessage message;
  };

  explicit ScriptedBus(FakeRunLoop& runLoop);
  ~ScriptedBus();
  ScriptedBus(const ScriptedBus&) = delete;
  ScriptedBus& operator=(const ScriptedBus&) = delete;

  // Lets both sides read and write until nothing moves any more. Says hello to who connects.
  void settle();

  // What has come and was not taken yet, in its order.
  std::vector<Received> takeReceived();

  void send(std::size_t peer, const platform::BusMessage& message);
  void drop(std::size_t peer);
  std::size_t peers() const { return mPeers.size(); }  // those that were dropped included

 private:
  void receive(std::size_t peer);

  FakeRunLoop& mRunLoop;
  std::vector<DBusConnection*> mPeers;  // null when it was dropped
  std::vector<Received> mReceived;
  bool mHasMoved = false;
};

// A message that says nothing yet, in answer to another.
platform::BusMessage newReply(const platform::BusMessage& call);
platform::BusMessage newError(const platform::BusMessage& call, const std::string& name);

bool isReturn(DBusMessage* message);
// Whether it has values of these types, and maybe more after them.
bool startsWith(DBusMessage* message, std::string_view signature);

// Appends a value of each type of the signature, made from the script. Of the numbers it knows
// bytes and those of 16 and 32 bits.
void appendValues(const platform::BusMessage& message, const char* signature, Script& script);

// A text as a bus carries it: valid UTF-8 without a zero.
std::string busText(Script& script);
