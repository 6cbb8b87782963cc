#include "ScriptedBus.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "platform/Text.h"

namespace {

// One for all inputs: it stays as long as the process.
class Server {
 public:
  static Server& instance() {
    static Server server;
    return server;
  }

  // The connection that has come, to be owned; null when none has.
  DBusConnection* accept() {
    dbus_watch_handle(mWatch, DBUS_WATCH_READABLE);
    return std::exchange(mArrived, nullptr);
  }

 private:
  Server() {
    const std::string address = "unix:abstract=fwupdate-fuzzer-" + std::to_string(::getpid());
    mServer = dbus_server_listen(address.c_str(), nullptr);
    if (mServer == nullptr) std::abort();
    dbus_server_set_new_connection_function(
        mServer,
        [](DBusServer*, DBusConnection* connection, void* self) {
          static_cast<Server*>(self)->mArrived = dbus_connection_ref(connection);
        },
        this, nullptr);
    dbus_server_set_watch_functions(
        mServer,
        [](DBusWatch* watch, void* self) -> dbus_bool_t {
          static_cast<Server*>(self)->mWatch = watch;
          return TRUE;
        },
        [](DBusWatch*, void*) {}, [](DBusWatch*, void*) {}, this, nullptr);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
  }

  DBusServer* mServer = nullptr;
  DBusWatch* mWatch = nullptr;
  DBusConnection* mArrived = nullptr;
};

// An answer may need one turn to be read, one to be thought about, and one to be written.
constexpr int kQuietTurns = 3;

constexpr std::array<const char*, 12> kBusTexts{
    "",           "local",     "org.freedesktop.Avahi", ":1.7",
    "Office",     "a.b.c",     "body-markup",           "_x._tcp",
    "Zo\xC3\xAB", "192.0.2.7", "2001:db8::1\\032",      "\\"};
constexpr std::array<const char*, 4> kBusPaths{"/", "/a", "/Client1/ServiceResolver1", "/b_2/c"};
constexpr std::array<std::int32_t, 6> kBusNumbers{0, 1, -1, 2, INT32_MAX, INT32_MIN};

void appendText(DBusMessageIter& out, int type, const std::string& text) {
  const char* const bytes = text.c_str();
  dbus_message_iter_append_basic(&out, type, &bytes);
}

void append(DBusMessageIter& out, DBusSignatureIter& type, Script& script);

void appendArray(DBusMessageIter& out, DBusSignatureIter& type, Script& script) {
  DBusSignatureIter element;
  dbus_signature_iter_recurse(&type, &element);
  char* const signature = dbus_signature_iter_get_signature(&element);
  DBusMessageIter array;
  dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, signature, &array);
  dbus_free(signature);
  const bool isBytes = dbus_signature_iter_get_current_type(&element) == DBUS_TYPE_BYTE;
  const int count = isBytes ? script.take() * 2 : script.take() % 4;
  for (int i = 0; i < count; ++i) append(array, element, script);
  dbus_message_iter_close_container(&out, &array);
}

void append(DBusMessageIter& out, DBusSignatureIter& type, Script& script) {
  const int kind = dbus_signature_iter_get_current_type(&type);
  switch (kind) {
    case DBUS_TYPE_STRING:
      return appendText(out, kind, busText(script));
    case DBUS_TYPE_OBJECT_PATH:
      return appendText(out, kind, script.choose(kBusPaths));
    case DBUS_TYPE_ARRAY:
      return appendArray(out, type, script);
    case DBUS_TYPE_UNIX_FD: {
      static const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
      dbus_message_iter_append_basic(&out, kind, &nothing);
      return;
    }
    case DBUS_TYPE_BYTE: {
      const std::uint8_t byte = script.take();
      dbus_message_iter_append_basic(&out, kind, &byte);
      return;
    }
    case DBUS_TYPE_UINT16: {
      const auto number = static_cast<std::uint16_t>(script.choose(kBusNumbers));
      dbus_message_iter_append_basic(&out, kind, &number);
      return;
    }
    default: {  // 32 bits, signed or not
      const std::int32_t number = script.choose(kBusNumbers);
      dbus_message_iter_append_basic(&out, kind, &number);
    }
  }
}

}  // namespace

ScriptedBus::ScriptedBus(FakeRunLoop& runLoop) : mRunLoop(runLoop) { Server::instance(); }

ScriptedBus::~ScriptedBus() {
  for (std::size_t peer = 0; peer < mPeers.size(); ++peer) drop(peer);
}

void ScriptedBus::settle() {
  for (int quiet = 0; quiet < kQuietTurns; ++quiet) {
    mHasMoved = mRunLoop.runLater();
    mHasMoved = mRunLoop.pollDescriptors() || mHasMoved;
    if (DBusConnection* const arrived = Server::instance().accept()) {
      mPeers.push_back(arrived);
      mHasMoved = true;
    }
    for (std::size_t peer = 0; peer < mPeers.size(); ++peer) receive(peer);
    if (mHasMoved) quiet = 0;
  }
}

void ScriptedBus::receive(std::size_t peer) {
  if (mPeers[peer] == nullptr) return;
  dbus_connection_read_write(mPeers[peer], 0);
  while (platform::BusMessage message{dbus_connection_pop_message(mPeers[peer])}) {
    mHasMoved = true;
    if (dbus_message_is_signal(message.get(), DBUS_INTERFACE_LOCAL, "Disconnected")) {
      return drop(peer);
    }
    if (dbus_message_is_method_call(message.get(), DBUS_INTERFACE_DBUS, "Hello")) {
      const platform::BusMessage reply = newReply(message);
      const char* const name = ":1.1";
      dbus_message_append_args(reply.get(), DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
      send(peer, reply);
    } else {
      mReceived.push_back({peer, std::move(message)});
    }
  }
}

std::vector<ScriptedBus::Received> ScriptedBus::takeReceived() {
  return std::exchange(mReceived, {});
}

void ScriptedBus::send(std::size_t peer, const platform::BusMessage& message) {
  if (mPeers[peer] != nullptr) dbus_connection_send(mPeers[peer], message.get(), nullptr);
}

void ScriptedBus::drop(std::size_t peer) {
  DBusConnection* const connection = std::exchange(mPeers[peer], nullptr);
  if (connection == nullptr) return;
  dbus_connection_close(connection);
  dbus_connection_unref(connection);
}

platform::BusMessage newReply(const platform::BusMessage& call) {
  return platform::BusMessage(dbus_message_new_method_return(call.get()));
}

platform::BusMessage newError(const platform::BusMessage& call, const std::string& name) {
  return platform::BusMessage(dbus_message_new_error(call.get(), name.c_str(), nullptr));
}

bool isReturn(DBusMessage* message) {
  return dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_RETURN;
}

bool startsWith(DBusMessage* message, std::string_view signature) {
  return std::string_view(dbus_message_get_signature(message)).starts_with(signature);
}

void appendValues(const platform::BusMessage& message, const char* signature, Script& script) {
  DBusMessageIter out;
  dbus_message_iter_init_append(message.get(), &out);
  if (*signature == '\0') return;
  DBusSignatureIter type;
  dbus_signature_iter_init(&type, signature);
  do {
    append(out, type, script);
  } while (dbus_signature_iter_next(&type));
}

std::string busText(Script& script) {
  const std::uint8_t choice = script.take();
  if (choice < 128) return kBusTexts[choice % kBusTexts.size()];
  const std::string bytes = script.take(choice % 32);
  const std::string text = bytes.substr(0, bytes.find('\0'));
  return platform::Text::fromUtf8(text).isNull() ? "" : text;
}
