#include "platform/qt/QtEvents.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/qt/QtEventLoop.h"
#include "platform/qt/TerminationSignals.h"

namespace platform {
namespace {

class QtEventsOnLoop final : public QtEvents, private QObject {
 public:
  explicit QtEventsOnLoop(QtEventLoop& loop)
      : mLoop(loop), mSignals([this] { mLoop.call([this] { quitInEveryState(); }); }) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  OSStatus createEvent(FourCharCode eventClass, std::uint32_t kind,
                       std::unique_ptr<Event>& created) override {
    created = std::make_unique<Event>(eventClass, kind);
    return noErr;
  }

  OSStatus setParameter(Event& target, FourCharCode name, Event::Parameter value) override {
    target.setParameter(name, value);
    return noErr;
  }

  OSStatus postToMainQueue(std::unique_ptr<Event> posted) override {
    mQueue.push_back(std::move(posted));
    askForDelivery();
    return noErr;
  }

  OSStatus installHandler(const EventTarget& target, std::span<const EventSpec> specs,
                          EventHandler handler, void* userData,
                          EventHandlerRef& installed) override {
    installed = ++mLastRef;
    mHandlers.push_back({installed, target, {specs.begin(), specs.end()}, handler, userData});
    return noErr;
  }

  void removeHandler(EventHandlerRef installed) override {
    std::erase_if(mHandlers, [&](const Installed& each) { return each.ref == installed; });
  }

  OSStatus installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                    AppleEventHandler handler, void* refCon) override {
    mAppleHandlers[{eventClass, eventId}] = {handler, refCon};
    return noErr;
  }

  OSStatus processCommand(const HICommand& command) override;

  void runApplicationEventLoop() override;
  void quitApplicationEventLoop() override { mLoop.quit(); }

  OSStatus sendToTarget(const EventTarget& target, const Event& sent) override;

  void whenAskedToQuit(std::function<bool()> mayQuit) override { mMayQuit = std::move(mayQuit); }

 private:
  struct Installed {
    EventHandlerRef ref;
    EventTarget target;
    std::vector<EventSpec> specs;
    EventHandler handler;
    void* userData;
  };
  struct Run {};  // of the loop
  struct AppleHandler {
    AppleEventHandler handler;
    void* refCon;
  };

  bool eventFilter(QObject* watched, QEvent* filtered) override;
  void askForDelivery();
  void deliverNext();
  void openApplication();
  void quitInEveryState();
  std::vector<EventHandlerRef> chain(const EventTarget& target, const Event& sent) const;

  QtEventLoop& mLoop;
  EventHandlerRef mLastRef = 0;
  std::vector<Installed> mHandlers;  // in the order of their installation
  std::map<std::pair<FourCharCode, FourCharCode>, AppleHandler> mAppleHandlers;
  std::deque<std::unique_ptr<Event>> mQueue;
  std::shared_ptr<Run> mRun = std::make_shared<Run>();
  std::function<bool()> mMayQuit;
  TerminationSignals mSignals;
};

// What an earlier run left over waits for this one.
void QtEventsOnLoop::runApplicationEventLoop() {
  mRun = std::make_shared<Run>();
  mLoop.callLater([this, run = std::weak_ptr(mRun)] {
    if (!run.expired()) openApplication();
  });
  for (std::size_t waiting = mQueue.size(); waiting > 0; --waiting) askForDelivery();
  mLoop.run();
}

void QtEventsOnLoop::askForDelivery() {
  mLoop.callLater([this, run = std::weak_ptr(mRun)] {
    if (!run.expired()) deliverNext();
  });
}

OSStatus QtEventsOnLoop::processCommand(const HICommand& command) {
  Event issued(kCommandEvent);
  issued.setParameter(kEventParamDirectObject, command);
  const OSStatus answer = sendToTarget(kApplicationTarget, issued);
  if (answer == eventNotHandledErr && command.commandId == kQuitCommand) {
    sendToTarget(kApplicationTarget, Event(kApplicationQuitEvent));
    mLoop.quit();
  }
  return answer;
}

// The handlers for an event, in the order of asking.
std::vector<EventHandlerRef> QtEventsOnLoop::chain(const EventTarget& target,
                                                   const Event& sent) const {
  std::vector<EventHandlerRef> refs;
  for (auto each = mHandlers.rbegin(); each != mHandlers.rend(); ++each) {
    const bool wanted = std::ranges::any_of(each->specs, [&](const EventSpec& spec) {
      return spec.eventClass == sent.eventClass() && spec.kind == sent.kind();
    });
    if (wanted && each->target == target) refs.push_back(each->ref);
  }
  return refs;
}

// Handlers may remove themselves or each other meanwhile, so each is looked up when its turn comes.
OSStatus QtEventsOnLoop::sendToTarget(const EventTarget& target, const Event& sent) {
  for (const EventHandlerRef ref : chain(target, sent)) {
    const auto found = std::ranges::find(mHandlers, ref, &Installed::ref);
    if (found == mHandlers.end()) continue;
    const EventHandler handler = found->handler;
    const OSStatus answer = handler(nullptr, sent, found->userData);
    if (answer != eventNotHandledErr) return answer;
  }
  return eventNotHandledErr;
}

void QtEventsOnLoop::deliverNext() {
  const std::unique_ptr<Event> next = std::move(mQueue.front());
  mQueue.pop_front();
  sendToTarget(kApplicationTarget, *next);
}

void QtEventsOnLoop::openApplication() {
  const auto found =
      mAppleHandlers.find({kOpenApplicationEvent.eventClass, kOpenApplicationEvent.kind});
  if (found == mAppleHandlers.end()) return;
  const Event open(kOpenApplicationEvent);
  Event reply("aevt"_4cc, "ansr"_4cc);
  found->second.handler(open, reply, found->second.refCon);
}

// Qt's own way of quitting asks each window to close, which sheets do not.
bool QtEventsOnLoop::eventFilter(QObject* watched, QEvent* filtered) {
  if (filtered->type() != QEvent::Quit) return QObject::eventFilter(watched, filtered);
  mLoop.call([this] {
    if (!mMayQuit || mMayQuit()) quitInEveryState();
  });
  return true;
}

void QtEventsOnLoop::quitInEveryState() {
  HICommand quit;
  quit.commandId = kQuitCommand;
  mLoop.guard([&] { processCommand(quit); });
  mLoop.quit();
}

}  // namespace

std::unique_ptr<QtEvents> makeQtEvents(QtEventLoop& loop) {
  return std::make_unique<QtEventsOnLoop>(loop);
}

}  // namespace platform
