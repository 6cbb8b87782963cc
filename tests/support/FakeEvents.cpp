#include "FakeEvents.h"

#include <algorithm>
#include <utility>

using namespace platform;

namespace {

std::string described(const EventSpec& spec) {
  return fourCharText(spec.eventClass) + " " + std::to_string(spec.kind);
}

std::string described(const Event& event) {
  return described(EventSpec{event.eventClass(), event.kind()});
}

std::string described(const EventTarget& target) {
  if (const auto* window = std::get_if<WindowRef>(&target)) {
    return " on window " + std::to_string(static_cast<std::uint64_t>(*window));
  }
  if (const auto* control = std::get_if<ControlRef>(&target)) {
    return " on control " + std::to_string(static_cast<std::uint64_t>(*control));
  }
  return "";
}

}  // namespace

std::string fourCharText(FourCharCode code) {
  std::string text;
  for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(code >> shift & 0xFF);
  return text;
}

void FakeEvents::fail(Operation operation, OSStatus status, int successes) {
  mFailures[operation] = {status, successes};
}

std::vector<std::string> FakeEvents::takeCalls() { return std::exchange(mCalls, {}); }

std::vector<std::string> FakeEvents::takeCommands() { return std::exchange(mCommands, {}); }

std::vector<std::string> FakeEvents::waiting() const {
  std::vector<std::string> waiting;
  for (const auto& event : mQueue) waiting.push_back(described(*event));
  return waiting;
}

OSStatus FakeEvents::record(Operation operation, const std::string& call) {
  mCalls.push_back(call);
  const auto failure = mFailures.find(operation);
  if (failure == mFailures.end()) return noErr;
  return failure->second.successes-- > 0 ? noErr : failure->second.status;
}

bool FakeEvents::deliverNext() {
  if (mQueue.empty()) return false;
  const std::unique_ptr<Event> event = std::move(mQueue.front());
  mQueue.pop_front();
  send(kApplicationTarget, *event);
  return true;
}

void FakeEvents::deliverAll() {
  while (deliverNext()) {
  }
}

bool FakeEvents::Handler::wants(const EventTarget& receiver, const Event& event) const {
  return target == receiver && std::ranges::any_of(specs, [&](const EventSpec& spec) {
           return spec.eventClass == event.eventClass() && spec.kind == event.kind();
         });
}

OSStatus FakeEvents::send(const EventTarget& target, const Event& event) {
  std::vector<EventHandlerRef> chain;
  for (const auto& [reference, handler] : mHandlers) {
    if (handler.wants(target, event)) chain.insert(chain.begin(), reference);
  }
  for (const EventHandlerRef reference : chain) {
    const auto found = mHandlers.find(reference);
    if (found == mHandlers.end()) continue;
    const OSStatus status = found->second.function(nullptr, event, found->second.userData);
    if (status != eventNotHandledErr) return status;
  }
  return eventNotHandledErr;
}

OSStatus FakeEvents::sendAppleEvent(FourCharCode eventClass, FourCharCode eventId) {
  const auto found = mAppleHandlers.find({eventClass, eventId});
  if (found == mAppleHandlers.end()) return errAEEventNotHandled;
  const Event event(eventClass, eventId);
  Event reply("aevt"_4cc, "ansr"_4cc);
  return found->second.function(event, reply, found->second.refCon);
}

OSStatus FakeEvents::createEvent(FourCharCode eventClass, std::uint32_t kind,
                                 std::unique_ptr<Event>& event) {
  event.reset();
  const OSStatus status =
      record(Operation::CreateEvent, "create " + described(EventSpec{eventClass, kind}));
  if (status == noErr) event = std::make_unique<Event>(eventClass, kind);
  return status;
}

OSStatus FakeEvents::setParameter(Event& event, FourCharCode name, Event::Parameter value) {
  const OSStatus status = record(Operation::SetParameter, "set " + fourCharText(name));
  if (status == noErr) event.setParameter(name, value);
  return status;
}

OSStatus FakeEvents::postToMainQueue(std::unique_ptr<Event> event) {
  const OSStatus status = record(Operation::Post, "post " + described(*event));
  if (status == noErr) mQueue.push_back(std::move(event));
  return status;
}

OSStatus FakeEvents::installHandler(const EventTarget& target, std::span<const EventSpec> specs,
                                    EventHandler handler, void* userData,
                                    EventHandlerRef& installed) {
  std::string call = "install";
  for (const EventSpec& spec : specs) call += (&spec == &specs[0] ? " " : ", ") + described(spec);
  const OSStatus status = record(Operation::InstallHandler, call + described(target));
  if (status != noErr) return status;
  installed = ++mLastHandler;
  mHandlers[installed] = {target, {specs.begin(), specs.end()}, handler, userData};
  return noErr;
}

void FakeEvents::removeHandler(EventHandlerRef installed) {
  mCalls.push_back("remove " + std::to_string(installed));
  mHandlers.erase(installed);
}

OSStatus FakeEvents::installAppleEventHandler(FourCharCode eventClass, FourCharCode eventId,
                                              AppleEventHandler handler, void* refCon) {
  const OSStatus status =
      record(Operation::InstallAppleEventHandler,
             "installAppleEvent " + fourCharText(eventClass) + " " + fourCharText(eventId));
  if (status == noErr) mAppleHandlers[{eventClass, eventId}] = {handler, refCon};
  return status;
}

OSStatus FakeEvents::processCommand(const HICommand& command) {
  mCalls.push_back("command " + fourCharText(command.commandId));
  mCommands.push_back(fourCharText(command.commandId));
  Event event("cmds"_4cc, 1);
  event.setParameter("----"_4cc, command);
  const OSStatus status = send(kApplicationTarget, event);
  if (command.commandId == "quit"_4cc && status == eventNotHandledErr) {
    send(kApplicationTarget, Event("appl"_4cc, 3));
    mQuit = true;
  }
  return status;
}

void FakeEvents::runApplicationEventLoop() {
  mCalls.push_back("run");
  mQuit = false;
  sendAppleEvent("aevt"_4cc, "oapp"_4cc);
  while (!mQuit && (deliverNext() || (mIdle && mIdle()))) {
  }
}

void FakeEvents::quitApplicationEventLoop() {
  mCalls.push_back("quit");
  mQuit = true;
}
