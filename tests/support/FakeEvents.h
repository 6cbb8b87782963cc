// Events and commands without a toolkit. Posted events wait until a test delivers them; commands
// and sent events reach their handlers at once. Every call is recorded as a line of text, in order:
// "create FwDl 1", "set ----", "post FwDl 1", "install FwDl 1, FwDl 2", "command DlNo".
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Events.h"

class FakeEvents : public platform::Events {
 public:
  enum class Operation {
    CreateEvent,
    SetParameter,
    Post,
    InstallHandler,
    InstallAppleEventHandler
  };

  // Lets the next `successes` calls of an operation pass, and makes all after them answer `status`
  // and do nothing.
  void fail(Operation operation, platform::OSStatus status, int successes = 0);

  const std::vector<std::string>& calls() const { return mCalls; }
  std::vector<std::string> takeCalls();

  // The commands so far: "DlNo". The second forgets them.
  const std::vector<std::string>& commands() const { return mCommands; }
  std::vector<std::string> takeCommands();

  // The events that were posted and wait for their delivery: "FwDl 1".
  std::vector<std::string> waiting() const;

  // Delivers the event that was posted first; false when none waits.
  bool deliverNext();
  void deliverAll();
  std::size_t queued() const { return mQueue.size(); }
  const platform::Event& nextQueued() const { return *mQueue.front(); }

  // What the toolkit and the session do: an event for one target, an event from outside.
  platform::OSStatus send(const platform::EventTarget& target, const platform::Event& event);
  platform::OSStatus sendAppleEvent(platform::FourCharCode eventClass,
                                    platform::FourCharCode eventId);

  // While the application loop runs, it calls this whenever no event waits, and ends when the call
  // answers false. Without it the loop ends when no event waits.
  void whenIdle(std::function<bool()> idle) { mIdle = std::move(idle); }

  std::size_t installedHandlers() const { return mHandlers.size(); }

  platform::OSStatus createEvent(platform::FourCharCode eventClass, std::uint32_t kind,
                                 std::unique_ptr<platform::Event>& event) override;
  platform::OSStatus setParameter(platform::Event& event, platform::FourCharCode name,
                                  platform::Event::Parameter value) override;
  platform::OSStatus postToMainQueue(std::unique_ptr<platform::Event> event) override;
  platform::OSStatus installHandler(const platform::EventTarget& target,
                                    std::span<const platform::EventSpec> specs,
                                    platform::EventHandler handler, void* userData,
                                    platform::EventHandlerRef& installed) override;
  void removeHandler(platform::EventHandlerRef installed) override;
  platform::OSStatus installAppleEventHandler(platform::FourCharCode eventClass,
                                              platform::FourCharCode eventId,
                                              platform::AppleEventHandler handler,
                                              void* refCon) override;
  platform::OSStatus processCommand(const platform::HICommand& command) override;
  void runApplicationEventLoop() override;
  void quitApplicationEventLoop() override;

 private:
  struct Handler {
    platform::EventTarget target;
    std::vector<platform::EventSpec> specs;
    platform::EventHandler function;
    void* userData;

    bool wants(const platform::EventTarget& receiver, const platform::Event& event) const;
  };

  struct AppleHandler {
    platform::AppleEventHandler function;
    void* refCon;
  };

  struct Failure {
    platform::OSStatus status = platform::noErr;
    int successes = 0;
  };

  platform::OSStatus record(Operation operation, const std::string& call);

  std::map<platform::EventHandlerRef, Handler> mHandlers;
  std::map<std::pair<platform::FourCharCode, platform::FourCharCode>, AppleHandler> mAppleHandlers;
  std::deque<std::unique_ptr<platform::Event>> mQueue;
  std::map<Operation, Failure> mFailures;
  std::vector<std::string> mCalls;
  std::vector<std::string> mCommands;
  std::function<bool()> mIdle;
  platform::EventHandlerRef mLastHandler = 0;
  bool mQuit = false;
};

// The four characters of a code.
std::string fourCharText(platform::FourCharCode code);
