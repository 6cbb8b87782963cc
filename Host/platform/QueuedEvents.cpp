#include "platform/QueuedEvents.h"

#include <algorithm>
#include <cstddef>

namespace platform {

using namespace literals;

OSStatus QueuedEvents::createEvent(FourCharCode eventClass, std::uint32_t kind,
                                   std::unique_ptr<Event>& event) {
  event = std::make_unique<Event>(eventClass, kind);
  return noErr;
}

OSStatus QueuedEvents::setParameter(Event& event, FourCharCode name, Event::Parameter value) {
  event.setParameter(name, value);
  return noErr;
}

OSStatus QueuedEvents::postToMainQueue(std::unique_ptr<Event> event) {
  mQueue.push_back(std::move(event));
  callInThisRun(&QueuedEvents::deliverNext);
  return noErr;
}

OSStatus QueuedEvents::installHandler(const EventTarget& target, std::span<const EventSpec> specs,
                                      EventHandler handler, void* userData,
                                      EventHandlerRef& installed) {
  installed = ++mLastRef;
  mHandlers.push_back({installed, target, {specs.begin(), specs.end()}, handler, userData});
  return noErr;
}

void QueuedEvents::removeHandler(EventHandlerRef installed) {
  std::erase_if(mHandlers, [&](const Installed& each) { return each.ref == installed; });
}

OSStatus QueuedEvents::installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                                AppleEventHandler handler, void* refCon) {
  mAppleHandlers[{eventClass, eventId}] = {handler, refCon};
  return noErr;
}

OSStatus QueuedEvents::processCommand(const HICommand& command) {
  Event issued(kCommandEvent);
  issued.setParameter(kEventParamDirectObject, command);
  const OSStatus answer = sendToTarget(kApplicationTarget, issued);
  if (answer == eventNotHandledErr && command.commandId == kQuitCommand) {
    sendToTarget(kApplicationTarget, Event(kApplicationQuitEvent));
    quitApplicationEventLoop();
  }
  return answer;
}

// The handlers for an event, in the order of asking.
std::vector<EventHandlerRef> QueuedEvents::chain(const EventTarget& target,
                                                 const Event& event) const {
  std::vector<EventHandlerRef> refs;
  for (auto each = mHandlers.rbegin(); each != mHandlers.rend(); ++each) {
    const bool wanted = std::ranges::any_of(each->specs, [&](const EventSpec& spec) {
      return spec.eventClass == event.eventClass() && spec.kind == event.kind();
    });
    if (wanted && each->target == target) refs.push_back(each->ref);
  }
  return refs;
}

// Handlers may remove themselves or each other meanwhile, so each is looked up when its turn comes.
OSStatus QueuedEvents::sendToTarget(const EventTarget& target, const Event& event) {
  for (const EventHandlerRef ref : chain(target, event)) {
    const auto found = std::ranges::find(mHandlers, ref, &Installed::ref);
    if (found == mHandlers.end()) continue;
    const EventHandler handler = found->handler;
    const OSStatus answer = handler(nullptr, event, found->userData);
    if (answer != eventNotHandledErr) return answer;
  }
  return eventNotHandledErr;
}

void QueuedEvents::beginRun() {
  mRun = std::make_shared<Run>();
  callInThisRun(&QueuedEvents::openApplication);
  for (std::size_t left = mQueue.size(); left > 0; --left) {
    callInThisRun(&QueuedEvents::deliverNext);
  }
}

void QueuedEvents::callInThisRun(void (QueuedEvents::*deliver)()) {
  callLater([this, deliver, run = std::weak_ptr(mRun)] {
    if (!run.expired()) (this->*deliver)();
  });
}

void QueuedEvents::deliverNext() {
  const std::unique_ptr<Event> next = std::move(mQueue.front());
  mQueue.pop_front();
  sendToTarget(kApplicationTarget, *next);
}

void QueuedEvents::openApplication() {
  const auto found =
      mAppleHandlers.find({kOpenApplicationEvent.eventClass, kOpenApplicationEvent.kind});
  if (found == mAppleHandlers.end()) return;
  const Event open(kOpenApplicationEvent);
  Event reply("aevt"_4cc, "ansr"_4cc);
  found->second.handler(open, reply, found->second.refCon);
}

}  // namespace platform
