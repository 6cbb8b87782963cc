// Whatever logind, the desktop's portal, its screen saver and its notifications say on their buses:
// the computer is kept awake exactly while somebody has promised so, what was given is given back
// once, and notifications reach who can be asked for them. The input says what is wanted, what
// comes back, and when.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FakeRunLoop.h"
#include "Script.h"
#include "ScriptedBus.h"
#include "platform/dbus/DesktopNotifier.h"
#include "platform/dbus/IdleInhibition.h"
#include "platform/dbus/SleepLock.h"
#include "require.h"

namespace {

using platform::BusMessage;

const platform::PowerLockTexts kLockTexts{"Updater", "Firmware is being downloaded"};
constexpr std::array<const char*, 8> kSignatures{"", "u", "o", "s", "as", "h", "us", "ou"};
constexpr std::string_view kNothing = "Unable to keep the computer awake during downloads: ";
constexpr std::string_view kLess = "Unable to block more than ";

bool isFor(const BusMessage& call, const char* member) {
  return dbus_message_has_member(call.get(), member);
}

std::string firstText(const BusMessage& message) {
  const char* text = "";
  DBusMessageIter argument;
  if (dbus_message_iter_init(message.get(), &argument)) {
    dbus_message_iter_get_basic(&argument, &text);
  }
  return text;
}

// A lock that logind gives: it knows whether somebody still has it.
class Lock {
 public:
  Lock() { require(::pipe2(mEnds.data(), O_CLOEXEC) == 0); }
  ~Lock() {
    for (const int end : mEnds) ::close(end);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  // Appends the descriptor that holds it, and keeps none.
  void giveTo(const BusMessage& reply) {
    dbus_message_append_args(reply.get(), DBUS_TYPE_UNIX_FD, &mEnds[1], DBUS_TYPE_INVALID);
    ::close(std::exchange(mEnds[1], ::open("/dev/null", O_RDONLY | O_CLOEXEC)));
  }

  bool isHeld() const {
    pollfd end{mEnds[0], POLLIN, 0};
    return ::poll(&end, 1, 0) == 0;
  }

 private:
  std::array<int, 2> mEnds{-1, -1};
};

class Run {
 public:
  Run() { settle(); }

  void step(Script& script) {
    const std::uint8_t code = script.take();
    const std::uint8_t operand = code >> 3;
    switch (code & 7) {
      case 0:
        lockSleep(operand % 2 == 0);
        break;
      case 1:
        operand % 2 == 0 ? mIdle->begin() : mIdle->end();
        break;
      case 2:
        mNotifier->show(busText(script), mText);
        break;
      case 3:
      case 4:
        answer(operand, script, (code & 7) == 3);
        break;
      case 5:
        signal(operand, script);
        break;
      case 6:
        advance(operand);
        break;
      default:
        if (operand < mBus.peers()) hangUp(operand);
    }
    settle();
    check();
  }

  void end() {
    mIdle->end();
    settle();
    mSleep.reset();
    mIdle.reset();
    mNotifier.reset();
    mBus.settle();
    receive();
    require(std::ranges::none_of(mLocks, [](const auto& lock) { return lock->isHeld(); }));
    // What nobody has given back was given to somebody who could not say so any more.
    for (const Given& given : mGiven) require(given.isGivenBack || given.isLost);
    require(mRunLoop.enabledWatches() == 0 && mRunLoop.timers() == 0);
  }

 private:
  struct Waiting {
    std::size_t peer;
    BusMessage call;
    std::size_t lock;  // which of the sleep locks asks
  };
  struct Given {
    std::size_t peer;
    std::string giveBack;  // the call that gives it back, as text
    bool isGivenBack = false;
    bool isLost = false;
  };

  void settle() {
    mBus.settle();
    receive();
  }

  void receive() {
    for (ScriptedBus::Received& each : mBus.takeReceived()) {
      if (isFor(each.message, "Notify")) {
        notified(each.message);
      } else if (isFor(each.message, "Close") || isFor(each.message, "UnInhibit")) {
        givenBack(each.peer, textOf(each.message));
      } else if (!dbus_message_get_no_reply(each.message.get())) {
        mWaiting.push_back({each.peer, std::move(each.message), mSleepNumber});
      }
    }
  }

  static std::string textOf(const BusMessage& call) {
    std::uint32_t cookie = 0;
    dbus_message_get_args(call.get(), nullptr, DBUS_TYPE_UINT32, &cookie, DBUS_TYPE_INVALID);
    return isFor(call, "Close") ? std::string("Close ") + dbus_message_get_path(call.get())
                                : "UnInhibit " + std::to_string(cookie);
  }

  void givenBack(std::size_t peer, const std::string& call) {
    const auto given = std::ranges::find_if(mGiven, [&](const Given& each) {
      return each.peer == peer && each.giveBack == call && !each.isGivenBack;
    });
    require(given != mGiven.end());
    given->isGivenBack = true;
  }

  void lockSleep(bool lock) {
    mSleep.reset();
    mSleepReports.clear();
    mExpectedReports.clear();
    mRefusal.clear();
    mHolds.reset();
    if (!lock) return;
    ++mSleepNumber;
    mChoice = 0;
    mHasPatience = true;
    mWaited = 0;
    mSleep.emplace(mRunLoop, kLockTexts,
                   [this](const std::string& entry) { mSleepReports.push_back(entry); });
    settle();
    mSleepPeer = mBus.peers() - 1;
  }

  void answer(std::uint8_t which, Script& script, bool asPromised) {
    if (mWaiting.empty()) return;
    const auto at = mWaiting.begin() + static_cast<std::ptrdiff_t>(which % mWaiting.size());
    const Waiting waiting = std::move(*at);
    mWaiting.erase(at);
    const std::string destination = dbus_message_get_destination(waiting.call.get());
    const bool isError = !asPromised && script.take() % 2 == 0;
    const BusMessage reply = isError ? newError(waiting.call, "org.freedesktop.DBus.Error.Failed")
                                     : newReply(waiting.call);
    if (destination == "org.freedesktop.login1") {
      return answerSleep(waiting, reply, asPromised, script);
    }
    const char* const promised = destination == "org.freedesktop.portal.Desktop"  ? "o"
                                 : destination == "org.freedesktop.Notifications" ? "as"
                                                                                  : "u";
    appendValues(reply, asPromised ? promised : script.choose(kSignatures), script);
    const bool isGiven = isReturn(reply.get()) && startsWith(reply.get(), promised);
    if (destination == "org.freedesktop.Notifications") {
      if (isReturn(reply.get())) mExpectedBodies.push_back(isGiven && has(reply, "body-markup"));
    } else if (isGiven) {
      give(waiting.peer, destination, reply);
    }
    send(waiting.peer, reply);
  }

  void send(std::size_t peer, const BusMessage& message) {
    mBus.send(peer, message);
    settle();
  }

  void give(std::size_t peer, const std::string& who, const BusMessage& reply) {
    std::uint32_t cookie = 0;
    dbus_message_get_args(reply.get(), nullptr, DBUS_TYPE_UINT32, &cookie, DBUS_TYPE_INVALID);
    mGiven.push_back({peer, who == "org.freedesktop.portal.Desktop"
                                ? "Close " + firstText(reply)
                                : "UnInhibit " + std::to_string(cookie)});
  }

  static bool has(const BusMessage& reply, const std::string& name) {
    char** names = nullptr;
    int count = 0;
    dbus_message_get_args(reply.get(), nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING, &names, &count,
                          DBUS_TYPE_INVALID);
    bool found = false;
    for (int i = 0; i < count; ++i) found = found || name == names[i];
    dbus_free_string_array(names);
    return found;
  }

  void answerSleep(const Waiting& waiting, const BusMessage& reply, bool asPromised,
                   Script& script) {
    mLocks.push_back(std::make_unique<Lock>());
    const bool givesLock = asPromised || script.take() % 4 == 0;
    if (givesLock) mLocks.back()->giveTo(reply);
    const std::uint8_t more = asPromised ? std::uint8_t{0} : script.take();
    if (more % 2 != 0) appendValues(reply, "u", script);
    const bool isCurrent = mSleep && waiting.lock == mSleepNumber;
    const bool isGiven = isReturn(reply.get()) && givesLock && more % 2 == 0;
    if (isCurrent) modelSleep(isReturn(reply.get()), isGiven);
    send(waiting.peer, reply);
    if (!givesLock) mLocks.pop_back();
  }

  void modelSleep(bool isReturn, bool isGiven) {
    constexpr std::array<std::string_view, 3> kChoices{"sleep:shutdown:handle-lid-switch",
                                                       "sleep:shutdown", "sleep"};
    if (isGiven) {
      mHolds = mLocks.size() - 1;
      mHasPatience = false;
      if (mChoice > 0) {
        expectReport(std::string(kLess) + std::string(kChoices[mChoice]) +
                     " during downloads: " + mRefusal);
      }
      return;
    }
    if (mChoice == 0) {
      mRefusal = isReturn ? "not understood" : "org.freedesktop.DBus.Error.Failed";
    }
    if (++mChoice == kChoices.size()) expectReport(std::string(kNothing) + mRefusal);
  }

  void expectReport(const std::string& entry) {
    mHasPatience = false;
    if (mExpectedReports.empty()) mExpectedReports.push_back(entry);
  }

  // The portal takes back what it gave, or says something else.
  void signal(std::uint8_t which, Script& script) {
    if (mGiven.empty()) return;
    Given& given = mGiven[which % mGiven.size()];
    if (!given.giveBack.starts_with("Close ") || given.isGivenBack) return;
    const BusMessage response(dbus_message_new_signal(
        given.giveBack.substr(6).c_str(), "org.freedesktop.portal.Request", "Response"));
    appendValues(response, script.take() < 192 ? "u" : script.choose(kSignatures), script);
    std::uint32_t code = 1;
    dbus_message_get_args(response.get(), nullptr, DBUS_TYPE_UINT32, &code, DBUS_TYPE_INVALID);
    // Of two with the same path the older one is told of, and the newer one is.
    for (Given& each : mGiven) {
      if (code != 0 && each.giveBack == given.giveBack && each.peer == given.peer) {
        each.isLost = true;
      }
    }
    send(given.peer, response);
  }

  void advance(std::uint8_t seconds) {
    mRunLoop.advance(std::chrono::seconds(seconds));
    mWaited += seconds;
    if (mSleep && mHasPatience && mWaited >= 5) {
      expectReport(std::string(kNothing) + "no answer");
    }
  }

  void hangUp(std::size_t peer) {
    for (Given& each : mGiven) {
      if (each.peer == peer) each.isLost = true;
    }
    mBus.drop(peer);
    std::erase_if(mWaiting, [&](const Waiting& each) { return each.peer == peer; });
    if (mSleep && peer == mSleepPeer && !mHolds) {
      expectReport(std::string(kNothing) + "the system bus has gone");
    }
  }

  void notified(const BusMessage& notify) {
    std::vector<std::string> texts;
    DBusMessageIter argument;
    dbus_message_iter_init(notify.get(), &argument);
    do {
      if (dbus_message_iter_get_arg_type(&argument) != DBUS_TYPE_STRING) continue;
      const char* text = nullptr;
      dbus_message_iter_get_basic(&argument, &text);
      texts.emplace_back(text);
    } while (dbus_message_iter_next(&argument));
    require(texts.size() == 4 && !mExpectedBodies.empty());
    require(texts[3] == (mExpectedBodies.front() ? "1 &lt; 2 &amp;&amp; 3 &gt; 2" : mText));
    mExpectedBodies.erase(mExpectedBodies.begin());
  }

  void check() {
    require(mSleepReports == mExpectedReports);
    for (std::size_t i = 0; i < mLocks.size(); ++i) {
      require(mLocks[i]->isHeld() == (mHolds == i));
    }
  }

  const std::string mText = "1 < 2 && 3 > 2";
  FakeRunLoop mRunLoop;
  ScriptedBus mBus{mRunLoop};
  std::optional<platform::SleepLock> mSleep;
  std::unique_ptr<platform::IdleInhibition> mIdle =
      std::make_unique<platform::IdleInhibition>(mRunLoop, kLockTexts);
  std::unique_ptr<platform::DesktopNotifier> mNotifier =
      std::make_unique<platform::DesktopNotifier>(mRunLoop, "updater");

  std::vector<Waiting> mWaiting;
  std::vector<std::unique_ptr<Lock>> mLocks;
  std::size_t mSleepNumber = 0;
  std::size_t mSleepPeer = 0;
  std::size_t mChoice = 0;
  bool mHasPatience = false;
  int mWaited = 0;  // seconds
  std::string mRefusal;
  std::optional<std::size_t> mHolds;  // which of the locks
  std::vector<std::string> mSleepReports;
  std::vector<std::string> mExpectedReports;
  std::vector<Given> mGiven;
  std::vector<bool> mExpectedBodies;  // whether each has its markup escaped
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  Run run;
  while (!script.isOver()) run.step(script);
  run.end();
  return 0;
}
