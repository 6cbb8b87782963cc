// Whatever Avahi's daemon, or who has taken its name, says on the bus: what has the promised types
// is told as it was said, once and in its order, and all else is a refusal or nothing. The input
// says what is asked, what comes back, and when.
#include <arpa/inet.h>
#include <avahi-common/domain.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FakeRunLoop.h"
#include "Script.h"
#include "ScriptedBus.h"
#include "platform/avahi/DaemonResponder.h"
#include "platform/avahi/DomainBrowses.h"
#include "require.h"

namespace {

using platform::BusMessage;
using platform::DaemonResponder;
using platform::Place;
using platform::Responder;
using platform::ServiceName;
using State = DaemonResponder::State;

constexpr std::size_t kMostQueries = 6;
constexpr const char* kFound = "iissssisqaayu";
constexpr std::array<const char*, 3> kInterfaces{"org.freedesktop.Avahi.ServiceBrowser",
                                                 "org.freedesktop.Avahi.DomainBrowser",
                                                 "org.freedesktop.Avahi.ServiceResolver"};
constexpr std::array<const char*, 5> kMembers{"ItemNew", "ItemRemove", "Found", "Failure",
                                              "AllForNow"};
constexpr std::array<const char*, 14> kSignatures{kFound, "iisssu", "iissu", "s",           "o",
                                                  "",     "iis",    "iisss", "sss",         "u",
                                                  "h",    "os",     "as",    "iissssisqasu"};

// The texts and numbers at the front of a message, texts as they are.
std::vector<std::string> valuesOf(DBusMessage* message) {
  std::vector<std::string> values;
  DBusMessageIter argument;
  if (!dbus_message_iter_init(message, &argument)) return values;
  do {
    DBusBasicValue value{};
    const int type = dbus_message_iter_get_arg_type(&argument);
    if (!dbus_type_is_basic(type) || type == DBUS_TYPE_UNIX_FD) break;
    dbus_message_iter_get_basic(&argument, &value);
    const bool isText = type == DBUS_TYPE_STRING || type == DBUS_TYPE_OBJECT_PATH;
    values.push_back(isText                     ? value.str
                     : type == DBUS_TYPE_UINT16 ? std::to_string(value.u16)
                                                : std::to_string(value.i32));
  } while (dbus_message_iter_next(&argument));
  return values;
}

// The TXT record of a Found, as the wire has it: the daemon sends the strings from the last on.
std::string txtOf(DBusMessage* found) {
  DBusMessageIter argument;
  dbus_message_iter_init(found, &argument);
  for (int skipped = 0; skipped < 9; ++skipped) dbus_message_iter_next(&argument);
  std::string record;
  DBusMessageIter strings;
  dbus_message_iter_recurse(&argument, &strings);
  for (; dbus_message_iter_get_arg_type(&strings) == DBUS_TYPE_ARRAY;
       dbus_message_iter_next(&strings)) {
    DBusMessageIter bytes;
    dbus_message_iter_recurse(&strings, &bytes);
    const char* text = nullptr;
    int size = 0;
    dbus_message_iter_get_fixed_array(&bytes, &text, &size);
    const auto length = static_cast<std::size_t>(std::min(size, 255));
    if (length == 0) continue;
    record = static_cast<char>(length) + std::string(text, length) + record;
  }
  return record.empty() ? std::string(1, '\0') : record;
}

std::string addressOf(const std::vector<std::string>& found) {
  std::array<std::uint8_t, 16> bytes{};
  const int interface = std::stoi(found[0]);
  const int family = std::stoi(found[6]);
  const auto port = static_cast<std::uint16_t>(std::stoi(found[8]));
  const std::string portBytes{static_cast<char>(port >> 8), static_cast<char>(port & 0xFF)};
  if ((family == 0 || family == -1) && inet_pton(AF_INET, found[7].c_str(), bytes.data()) == 1) {
    return std::string("\x10\x02", 2) + portBytes + std::string(bytes.begin(), bytes.begin() + 4) +
           std::string(8, '\0');
  }
  if ((family == 1 || family == -1) && inet_pton(AF_INET6, found[7].c_str(), bytes.data()) == 1) {
    std::string scope(4, '\0');
    const bool isLinkLocal = bytes[0] == 0xFE && bytes[1] >= 0x80 && bytes[1] <= 0xBF;
    if (isLinkLocal) std::copy_n(reinterpret_cast<const char*>(&interface), 4, scope.begin());
    return std::string("\x1C\x1E", 2) + portBytes + std::string(4, '\0') +
           std::string(bytes.begin(), bytes.end()) + scope;
  }
  return "";
}

std::string textOfData(const platform::Data& data) {
  return data == nullptr ? "none" : std::string(data->begin(), data->end());
}

// What is told to whoever asked, a line for each call.
class Told : public platform::BrowseListener, public platform::DomainListener {
 public:
  Told(std::vector<std::string>& lines, std::string who) : mLines(lines), mWho(std::move(who)) {}

  void appeared(const ServiceName& service, Place place) override { say("new", service, place); }
  void disappeared(const ServiceName& service, Place place) override {
    say("gone", service, place);
  }
  void allForNow() override { mLines.push_back(mWho + "all"); }
  void browsingFailed() override { mLines.push_back(mWho + "failed"); }
  void domainAppeared(const std::string& domain) override {
    mLines.push_back(mWho + "new " + domain);
  }
  void domainDisappeared(const std::string& domain) override {
    mLines.push_back(mWho + "gone " + domain);
  }

 private:
  void say(const char* what, const ServiceName& service, Place place) {
    mLines.push_back(mWho + what + " " + std::to_string(place.interface) + " " +
                     std::to_string(place.protocol) + " " + service.name + " " + service.type +
                     " " + service.domain);
  }

  std::vector<std::string>& mLines;
  const std::string mWho;
};

// Of a search in all domains, which asks for itself: nothing of it is in the model.
class Ignored : public platform::BrowseListener {
 public:
  void appeared(const ServiceName&, Place) override {}
  void disappeared(const ServiceName&, Place) override {}
  void allForNow() override {}
  void browsingFailed() override {}
};

enum class Kind { Browse, Domains, Resolve };

// A question as the model has it.
struct Query {
  Kind kind;
  std::string who;
  bool wantsTxt = true;
  bool isTold = false;  // a resolution that has its answer
  std::string path;     // empty before it has an object
  std::unique_ptr<Told> listener;
  std::unique_ptr<Responder::Query> query;  // null when it was dropped
};

class Run {
 public:
  Run() {
    mResponder = platform::connectToDaemon(
        mRunLoop, [this](State state) { mStates.push_back(static_cast<int>(state)); });
    require(mResponder != nullptr);
    settle();
  }

  void step(Script& script) {
    const std::uint8_t code = script.take();
    const std::uint8_t operand = code >> 3;
    switch (code & 7) {
      case 0:
        answer(operand, script, true);
        break;
      case 1:
        answer(operand, script, false);
        break;
      case 2:
        signalOfDaemon(operand, script);
        break;
      case 3:
        signalOfBus(script);
        break;
      case 4:
        if (mResponder->state() == State::Ready) ask(operand, script);
        break;
      case 5:
        if (!mQueries.empty()) drop(mQueries[operand % mQueries.size()]);
        break;
      case 6:
        if (mResponder->state() == State::Ready && mDomains == nullptr && mQueries.empty()) {
          mDomains =
              std::make_unique<platform::DomainBrowses>(*mResponder, "_x._tcp", "", mIgnored);
        }
        break;
      default:
        if (operand == 31) hangUp();
    }
    settle();
    check();
  }

  void end() {
    mDomains.reset();
    mQueries.clear();
    mResponder.reset();
    mRunLoop.runAllLater();
    require(mRunLoop.enabledWatches() == 0 && mRunLoop.timers() == 0);
  }

 private:
  // A call that waits for its answer, and the question that it is for, if it is one of the model's.
  struct Waiting {
    BusMessage call;
    std::size_t query;
  };
  static constexpr std::size_t kNoQuery = SIZE_MAX;

  void settle() {
    mBus.settle();
    for (ScriptedBus::Received& each : mBus.takeReceived()) {
      if (dbus_message_get_no_reply(each.message.get())) continue;
      const bool isOfModel = mAsked != kNoQuery && dbus_message_has_path(each.message.get(), "/") &&
                             !dbus_message_has_member(each.message.get(), "GetDomainName");
      mWaiting.push_back({std::move(each.message), isOfModel ? mAsked : kNoQuery});
      if (isOfModel) mAsked = kNoQuery;
    }
  }

  void answer(std::uint8_t which, Script& script, bool asPromised) {
    if (mWaiting.empty() || mIsHungUp) return;
    const auto at = mWaiting.begin() + static_cast<std::ptrdiff_t>(which % mWaiting.size());
    const Waiting waiting = std::move(*at);
    mWaiting.erase(at);
    const bool isText = dbus_message_has_member(waiting.call.get(), "GetNameOwner") ||
                        dbus_message_has_member(waiting.call.get(), "GetDomainName");
    const bool isError = !asPromised && script.take() % 4 == 0;
    const BusMessage reply =
        isError ? newError(waiting.call, "org.freedesktop.Avahi.TooManyObjectsError")
                : newReply(waiting.call);
    appendValues(reply, asPromised ? (isText ? "s" : "o") : script.choose(kSignatures), script);
    mBus.send(0, reply);
    if (waiting.query != kNoQuery) {
      modelReply(waiting.query, reply.get());
    } else if (isText) {
      modelText(waiting.call.get(), reply.get());
    }
  }

  void modelText(DBusMessage* call, DBusMessage* reply) {
    const bool isThere = isReturn(reply) && startsWith(reply, "s");
    const std::string text = isThere ? valuesOf(reply).front() : "";
    if (dbus_message_has_member(call, "GetNameOwner")) {
      daemonIs(text);
    } else if (dbus_message_get_destination(call) == mOwner && mDaemon.empty()) {
      const bool isDaemon = isThere && avahi_is_valid_domain_name(text.c_str()) != 0;
      if (isDaemon) mDaemon = mOwner;
      become(isDaemon ? State::Ready : State::Absent);
    }
  }

  void daemonIs(const std::string& owner) {
    if (mState == State::Ready) return become(State::Lost);
    mOwner = dbus_validate_bus_name(owner.c_str(), nullptr) ? owner : "";
    become(mOwner.empty() ? State::Absent : State::Unknown);
  }

  void become(State state) {
    if (mState == State::Lost || mState == state) return;
    mState = state;
    mExpectedStates.push_back(static_cast<int>(state));
  }

  void modelReply(std::size_t number, DBusMessage* reply) {
    Query& query = mQueries[number];
    const bool isAccepted = isReturn(reply) && startsWith(reply, "o");
    if (query.query == nullptr) return;
    if (isAccepted) {
      query.path = valuesOf(reply).front();
      mPaths[query.path] = number;
    }
    if (query.kind == Kind::Resolve) {
      mExpected.push_back(query.who + (isAccepted ? "accepted" : "refused"));
      if (!isAccepted) query.isTold = true;
    } else if (query.kind == Kind::Browse && !isAccepted) {
      mExpected.push_back(query.who + "failed");
    }
  }

  // The first steps of one in the right form; anything at all where the byte says so.
  void signalOfDaemon(std::uint8_t how, Script& script) {
    constexpr std::array<const char*, 4> kSenders{":1.7", "org.freedesktop.Avahi", ":1.8", ""};
    constexpr std::array<const char*, 4> kPaths{"/", "/a", "/Client1/ServiceResolver1", "/b_2/c"};
    const std::size_t kind = how % 3;
    const std::size_t member = (how / 3) % kMembers.size();
    const std::string sender = mDaemon.empty() || how == 30 ? script.choose(kSenders) : mDaemon;
    const BusMessage signal(dbus_message_new_signal(
        script.choose(kPaths), how == 31 ? "org.freedesktop.Avahi.Server" : kInterfaces[kind],
        kMembers[member]));
    if (!sender.empty()) dbus_message_set_sender(signal.get(), sender.c_str());
    const std::uint8_t form = script.take();
    constexpr std::array<const char*, 3> kPromised{"iisssu", "iissu", kFound};
    appendValues(signal, form < 192 ? kPromised[kind] : kSignatures[form % kSignatures.size()],
                 script);
    if (mIsHungUp) return;
    mBus.send(0, signal);
    if (!sender.empty() && sender == mDaemon) modelSignal(signal.get());
  }

  void modelSignal(DBusMessage* signal) {
    const auto found = mPaths.find(dbus_message_get_path(signal));
    if (found == mPaths.end()) return;
    Query& query = mQueries[found->second];
    const auto kind = static_cast<std::size_t>(query.kind);
    if (!dbus_message_has_interface(signal, kInterfaces[kind])) return;
    const std::string member = dbus_message_get_member(signal);
    const std::vector<std::string> values = valuesOf(signal);
    const bool isItem = member == "ItemNew" || member == "ItemRemove";
    const std::string what = member == "ItemNew" ? "new " : "gone ";
    if (query.kind == Kind::Browse) {
      if (member == "AllForNow") mExpected.push_back(query.who + "all");
      if (member == "Failure") mExpected.push_back(query.who + "failed");
      if (isItem && startsWith(signal, "iisss")) {
        mExpected.push_back(query.who + what + values[0] + " " + values[1] + " " + values[2] + " " +
                            values[3] + " " + values[4]);
      }
    } else if (query.kind == Kind::Domains) {
      if (isItem && startsWith(signal, "iis")) mExpected.push_back(query.who + what + values[2]);
    } else if (!query.isTold) {
      if (member == "Found" && std::string(kFound) == dbus_message_get_signature(signal)) {
        query.isTold = true;
        const std::string address = addressOf(values);
        mExpected.push_back(query.who + (address.empty()
                                             ? "refused"
                                             : "at " + address + " with " +
                                                   (query.wantsTxt ? txtOf(signal) : "none")));
      } else if (member == "Failure") {
        query.isTold = true;
        mExpected.push_back(query.who + "refused");
      }
    }
  }

  void signalOfBus(Script& script) {
    const bool isRight = script.take() < 224;
    const BusMessage signal(dbus_message_new_signal(DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS,
                                                    isRight ? "NameOwnerChanged" : "NameLost"));
    dbus_message_set_sender(signal.get(), DBUS_SERVICE_DBUS);
    appendValues(signal, isRight ? "sss" : script.choose(kSignatures), script);
    if (mIsHungUp) return;
    mBus.send(0, signal);
    if (isRight && valuesOf(signal.get())[0] == "org.freedesktop.Avahi") {
      daemonIs(valuesOf(signal.get())[2]);
    }
  }

  void ask(std::uint8_t how, Script& script) {
    if (mQueries.size() == kMostQueries || mDomains != nullptr || mIsHungUp) return;
    const std::size_t number = mQueries.size();
    mAsked = number;
    Query& query = mQueries.emplace_back();
    query.kind = static_cast<Kind>(how % 3);
    query.who = std::to_string(number) + " ";
    query.listener = std::make_unique<Told>(mTold, query.who);
    query.wantsTxt = how < 16;
    const ServiceName service{busText(script), "_x._tcp", "local"};
    switch (query.kind) {
      case Kind::Browse:
        query.query = mResponder->browse(service.type, service.name, *query.listener);
        break;
      case Kind::Domains:
        query.query = mResponder->browseDomains(*query.listener);
        break;
      case Kind::Resolve:
        query.query = mResponder->resolve(
            service, {Place{2, 0}, 0, query.wantsTxt},
            [this, who = query.who](Responder::News news, const platform::Resolved& resolved) {
              mTold.push_back(who + textOf(news, resolved));
            });
    }
    require(query.query != nullptr);
  }

  static std::string textOf(Responder::News news, const platform::Resolved& resolved) {
    if (news == Responder::News::Accepted) return "accepted";
    if (news == Responder::News::Refused) return "refused";
    return "at " + textOfData(resolved.address) + " with " + textOfData(resolved.txt);
  }

  void drop(Query& query) {
    if (query.query == nullptr) return;
    query.query.reset();
    mPaths.erase(query.path);
  }

  void hangUp() {
    if (std::exchange(mIsHungUp, true)) return;
    mBus.drop(0);
    become(State::Lost);
  }

  void check() {
    require(mStates == mExpectedStates);
    require(mResponder->state() == mState);
    require(mTold == mExpected);
  }

  FakeRunLoop mRunLoop;
  ScriptedBus mBus{mRunLoop};
  std::vector<int> mStates;
  std::vector<int> mExpectedStates;
  std::vector<std::string> mTold;
  std::vector<std::string> mExpected;
  Ignored mIgnored;
  std::unique_ptr<DaemonResponder> mResponder;
  std::vector<Query> mQueries;
  std::unique_ptr<platform::DomainBrowses> mDomains;

  State mState = State::Unknown;
  std::string mOwner;   // as the bus says
  std::string mDaemon;  // the one that has answered
  std::vector<Waiting> mWaiting;
  std::size_t mAsked = kNoQuery;  // whose call comes next
  std::map<std::string, std::size_t> mPaths;
  bool mIsHungUp = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  Run run;
  while (!script.isOver()) run.step(script);
  run.end();
  return 0;
}
