// Stands for the services of a system or a desktop on a private bus, and writes down what they are
// asked and what is given back to them.
//
//   desktop-services system|session SERVICE[=BEHAVIOUR]...
//
// Services: login1, portal, screensaver, notifications, accessibility. Behaviours:
//   refuses[:WORD]  answers calls whose first argument has WORD in it, or all, with an error: to
//                   locks without the lid, another one than to all else
//   fails           answers with an error that carries what it gives
//   waits           gives what it is asked for when a line comes on standard input
//   cancels         (portal) takes back at once what it gives
//   plain           (notifications) knows no markup
//   confused        answers with a number, (screensaver) with a text
//   stammers        (portal) tells what came of its request in a text
//   ADDRESS         (accessibility) tells that its bus is there
//
// One line on standard output for each event; "ready" when the names are taken. Goes on without its
// bus, to see what is given back then, and ends with its standard input.
#include <dbus/dbus.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr char kSignatureOfInhibitors[] = "(ssssuu)";

void say(const std::string& line) { std::cout << line << std::endl; }

// The texts among a message's arguments, those in tables included, each after its name there.
void collect(DBusMessageIter* arguments, std::vector<std::string>& texts) {
  for (; dbus_message_iter_get_arg_type(arguments) != DBUS_TYPE_INVALID;
       dbus_message_iter_next(arguments)) {
    DBusMessageIter inner;
    const int type = dbus_message_iter_get_arg_type(arguments);
    if (type == DBUS_TYPE_STRING || type == DBUS_TYPE_OBJECT_PATH) {
      const char* text = nullptr;
      dbus_message_iter_get_basic(arguments, &text);
      texts.emplace_back(text);
    } else if (type == DBUS_TYPE_UINT32 || type == DBUS_TYPE_INT32) {
      std::int32_t number = 0;
      dbus_message_iter_get_basic(arguments, &number);
      texts.push_back(std::to_string(number));
    } else {
      dbus_message_iter_recurse(arguments, &inner);
      collect(&inner, texts);
    }
  }
}

std::vector<std::string> argumentsOf(DBusMessage* message) {
  std::vector<std::string> texts;
  DBusMessageIter arguments;
  if (dbus_message_iter_init(message, &arguments)) collect(&arguments, texts);
  return texts;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) line += (line.empty() ? "" : " | ") + text;
  return line;
}

class Services {
 public:
  explicit Services(DBusConnection* bus) : mBus(bus) {
    dbus_bus_add_match(
        mBus, "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'", nullptr);
  }

  bool offer(const std::string& service) {
    static const std::map<std::string, const char*> kNames{
        {"login1", "org.freedesktop.login1"},
        {"portal", "org.freedesktop.portal.Desktop"},
        {"screensaver", "org.freedesktop.ScreenSaver"},
        {"notifications", "org.freedesktop.Notifications"},
        {"accessibility", "org.a11y.Bus"}};
    const std::string name = service.substr(0, service.find('='));
    const auto known = kNames.find(name);
    if (known == kNames.end()) return false;
    if (name.size() < service.size()) mBehaviours[known->second] = service.substr(name.size() + 1);
    return dbus_bus_request_name(mBus, known->second, DBUS_NAME_FLAG_DO_NOT_QUEUE, nullptr) ==
           DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER;
  }

  void run() {
    dbus_connection_flush(mBus);
    say("ready");
    while (turn()) {
    }
  }

 private:
  struct Lock {
    std::vector<std::string> arguments;
    int descriptor;
  };

  bool turn() {
    int busDescriptor = -1;
    dbus_connection_get_unix_fd(mBus, &busDescriptor);
    std::vector<pollfd> descriptors{{busDescriptor, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    for (const Lock& lock : mLocks) descriptors.push_back({lock.descriptor, POLLIN, 0});
    if (poll(descriptors.data(), descriptors.size(), -1) < 0) return false;
    noteReleased(descriptors);
    if (descriptors[1].revents != 0 && !readLine()) return false;
    dbus_connection_read_write(mBus, 0);
    while (DBusMessage* const message = dbus_connection_pop_message(mBus)) {
      received(message);
      dbus_message_unref(message);
    }
    dbus_connection_flush(mBus);
    return true;
  }

  void noteReleased(const std::vector<pollfd>& descriptors) {
    auto at = descriptors.begin() + 2;
    for (auto lock = mLocks.begin(); lock != mLocks.end(); ++at) {
      if (at->revents == 0) {
        ++lock;
        continue;
      }
      say("unlock " + lock->arguments[0]);
      close(lock->descriptor);
      lock = mLocks.erase(lock);
    }
  }

  // The calls that wait are answered.
  bool readLine() {
    std::string line;
    if (!std::getline(std::cin, line)) return false;
    for (const auto& answer : std::exchange(mWaiting, {})) answer();
    return true;
  }

  void received(DBusMessage* message) {
    if (dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, "NameOwnerChanged")) {
      const std::string who = argumentsOf(message).front();
      if (mHolders.erase(who) > 0) say("left without giving back");
      return;
    }
    if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL) return;
    const std::string behaviour = mBehaviours[dbus_message_get_destination(message)];
    const std::string member = dbus_message_get_member(message);
    if (behaviour == "waits" && member != "Close" && member != "UnInhibit") {
      say("waiting " + member);
      dbus_message_ref(message);
      mWaiting.push_back([this, message] {
        answer(message);
        dbus_message_unref(message);
      });
    } else if (isRefused(message, behaviour)) {
      say("refused " + joined(argumentsOf(message)));
      send(dbus_message_new_error(message, refusalOf(message), "Permission denied"));
    } else {
      answer(message);
    }
  }

  static bool isRefused(DBusMessage* message, const std::string& behaviour) {
    if (!behaviour.starts_with("refuses")) return false;
    const auto colon = behaviour.find(':');
    const std::vector<std::string> arguments = argumentsOf(message);
    return colon == std::string::npos ||
           (!arguments.empty() &&
            arguments[0].find(behaviour.substr(colon + 1)) != std::string::npos);
  }

  static const char* refusalOf(DBusMessage* call) {
    const std::string what = joined(argumentsOf(call));
    const bool isLesserLock = what.starts_with("sleep") && what.find("lid") == std::string::npos;
    return isLesserLock ? DBUS_ERROR_INTERACTIVE_AUTHORIZATION_REQUIRED : DBUS_ERROR_ACCESS_DENIED;
  }

  void answer(DBusMessage* call) {
    const std::string interface = dbus_message_get_interface(call);
    const std::string member = dbus_message_get_member(call);
    if (interface == "org.freedesktop.login1.Manager" && member == "Inhibit") return lock(call);
    if (interface == "org.freedesktop.login1.Manager") return listLocks(call);
    if (interface == "org.freedesktop.portal.Inhibit") return givePortal(call);
    if (interface == "org.freedesktop.portal.Request") return takeBack(call, "portal closed");
    if (interface == "org.freedesktop.ScreenSaver" && member == "Inhibit") return giveCookie(call);
    if (interface == "org.freedesktop.ScreenSaver") {
      return takeBack(call, "screensaver released " + joined(argumentsOf(call)));
    }
    if (interface == "org.a11y.Bus") return tellAddress(call);
    if (member == "GetCapabilities") return tellCapabilities(call);
    if (member == "Notify") {
      say("notification " + joined(argumentsOf(call)));
      return replyNumber(call, 1);
    }
    send(dbus_message_new_error(call, DBUS_ERROR_UNKNOWN_METHOD, "Unknown method"));
  }

  // An answer to add to, or an error that looks like one.
  DBusMessage* newReply(DBusMessage* call) {
    return mBehaviours[dbus_message_get_destination(call)] == "fails"
               ? dbus_message_new_error(call, DBUS_ERROR_FAILED, nullptr)
               : dbus_message_new_method_return(call);
  }

  void lock(DBusMessage* call) {
    if (mBehaviours[dbus_message_get_destination(call)] == "confused") {
      say("confused " + joined(argumentsOf(call)));
      return replyNumber(call, 2);
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
    mLocks.push_back({argumentsOf(call), ends[0]});
    say("lock " + joined(mLocks.back().arguments));
    DBusMessage* const reply = newReply(call);
    dbus_message_append_args(reply, DBUS_TYPE_UNIX_FD, &ends[1], DBUS_TYPE_INVALID);
    close(ends[1]);
    send(reply);
  }

  // For `systemd-inhibit --list`.
  void listLocks(DBusMessage* call) {
    DBusMessage* const reply = dbus_message_new_method_return(call);
    DBusMessageIter arguments;
    DBusMessageIter list;
    dbus_message_iter_init_append(reply, &arguments);
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, kSignatureOfInhibitors, &list);
    for (const Lock& each : mLocks) {
      DBusMessageIter entry;
      dbus_message_iter_open_container(&list, DBUS_TYPE_STRUCT, nullptr, &entry);
      for (const std::string& argument : each.arguments) {
        const char* const text = argument.c_str();
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, &text);
      }
      const std::uint32_t unknown = 0;
      dbus_message_iter_append_basic(&entry, DBUS_TYPE_UINT32, &unknown);
      dbus_message_iter_append_basic(&entry, DBUS_TYPE_UINT32, &unknown);
      dbus_message_iter_close_container(&list, &entry);
    }
    dbus_message_iter_close_container(&arguments, &list);
    send(reply);
  }

  void givePortal(DBusMessage* call) {
    const std::string behaviour = mBehaviours[dbus_message_get_destination(call)];
    const char* const request = "/org/freedesktop/portal/desktop/request/1";
    say("portal " + joined(argumentsOf(call)));
    if (behaviour == "confused") return replyNumber(call, 2);
    DBusMessage* const reply = newReply(call);
    dbus_message_append_args(reply, DBUS_TYPE_OBJECT_PATH, &request, DBUS_TYPE_INVALID);
    send(reply);
    const bool gives = behaviour != "cancels" && behaviour != "stammers";
    respond(call, request, behaviour);
    if (gives) mHolders.insert(dbus_message_get_sender(call));
  }

  void respond(DBusMessage* call, const char* request, const std::string& behaviour) {
    const std::uint32_t response = behaviour == "cancels" ? 2 : 0;
    const char* const text = "given";
    DBusMessage* const signal =
        dbus_message_new_signal(request, "org.freedesktop.portal.Request", "Response");
    dbus_message_set_destination(signal, dbus_message_get_sender(call));
    if (behaviour == "stammers") {
      dbus_message_append_args(signal, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
    } else {
      dbus_message_append_args(signal, DBUS_TYPE_UINT32, &response, DBUS_TYPE_INVALID);
    }
    send(signal);
  }

  void giveCookie(DBusMessage* call) {
    say("screensaver " + joined(argumentsOf(call)));
    mHolders.insert(dbus_message_get_sender(call));
    if (mBehaviours[dbus_message_get_destination(call)] == "confused") {
      return replyText(call, "4711");
    }
    replyNumber(call, 4711);
  }

  void takeBack(DBusMessage* call, const std::string& line) {
    mHolders.erase(dbus_message_get_sender(call));
    say(line);
    if (!dbus_message_get_no_reply(call)) send(dbus_message_new_method_return(call));
  }

  void tellCapabilities(DBusMessage* call) {
    const std::string behaviour = mBehaviours[dbus_message_get_destination(call)];
    if (behaviour == "confused") return replyNumber(call, 2);
    std::vector<const char*> capabilities{"body", "body-markup", "persistence"};
    if (behaviour == "plain") capabilities.erase(capabilities.begin() + 1);
    const char** const list = capabilities.data();
    DBusMessage* const reply = dbus_message_new_method_return(call);
    dbus_message_append_args(reply, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING, &list,
                             static_cast<int>(capabilities.size()), DBUS_TYPE_INVALID);
    send(reply);
  }

  void tellAddress(DBusMessage* call) {
    const std::string address = mBehaviours[dbus_message_get_destination(call)];
    if (address == "confused") return replyNumber(call, 2);
    replyText(call, address);
  }

  void replyText(DBusMessage* call, const std::string& text) {
    const char* const bytes = text.c_str();
    DBusMessage* const reply = dbus_message_new_method_return(call);
    dbus_message_append_args(reply, DBUS_TYPE_STRING, &bytes, DBUS_TYPE_INVALID);
    send(reply);
  }

  void replyNumber(DBusMessage* call, std::uint32_t number) {
    if (dbus_message_get_no_reply(call)) return;
    DBusMessage* const reply = newReply(call);
    dbus_message_append_args(reply, DBUS_TYPE_UINT32, &number, DBUS_TYPE_INVALID);
    send(reply);
  }

  void send(DBusMessage* message) {
    dbus_connection_send(mBus, message, nullptr);
    dbus_message_unref(message);
  }

  DBusConnection* mBus;
  std::map<std::string, std::string> mBehaviours;  // by name on the bus
  std::list<Lock> mLocks;
  std::set<std::string> mHolders;  // of what a portal or screen saver gave
  std::vector<std::function<void()>> mWaiting;
};

}  // namespace

int main(int argc, char** argv) {
  const bool isSystem = argc > 1 && argv[1] == std::string("system");
  DBusConnection* const bus =
      dbus_bus_get_private(isSystem ? DBUS_BUS_SYSTEM : DBUS_BUS_SESSION, nullptr);
  if (bus == nullptr) return EXIT_FAILURE;
  dbus_connection_set_exit_on_disconnect(bus, FALSE);
  Services services(bus);
  for (int i = 2; i < argc; ++i) {
    if (!services.offer(argv[i])) return EXIT_FAILURE;
  }
  services.run();
  dbus_connection_close(bus);
  dbus_connection_unref(bus);
}
