#include "FakeScreen.h"

#include <algorithm>

#include "platform/Platform.h"

using namespace platform::literals;
using platform::ControlId;
using platform::ControlRef;
using platform::WindowRef;

bool FakeScreen::press(const std::string& window, ControlId button) {
  const Control* pressed = find(window, button);
  if (pressed == nullptr || !pressed->enabled || !takesInput(window)) return false;
  if (isQuitQuestion(pressed->owner)) {
    find(pressed->owner)->parent = WindowRef::None;
    if (pressed->plan.command != "quit"_4cc) return true;
  }
  platform::current().events->processCommand({0, pressed->plan.command, 0, 0});
  return true;
}

bool FakeScreen::chooseMenuItem(platform::FourCharCode command) {
  const bool sheetIsUp = std::ranges::any_of(
      mWindows, [](const auto& entry) { return entry.second.parent != WindowRef::None; });
  if (std::ranges::count(mMenuCommands, command) == 0) return false;
  if (command != "quit"_4cc && sheetIsUp) return false;
  if (command == "quit"_4cc && asksBeforeQuit()) return true;
  platform::current().events->processCommand({0, command, 0, 1});
  return true;
}

bool FakeScreen::select(const std::string& window, ControlId list, platform::ItemId item) {
  FakeListControl* found = this->list(window, list);
  if (found == nullptr || !takesInput(window)) return false;
  if (item != 0 && !found->contains(item)) return false;
  found->select(item);
  return true;
}

bool FakeScreen::closeWindow(const std::string& window) {
  const WindowRef closed = this->window(window);
  if (!isVisible(window) || (find(closed)->isSheet && isBlocked(closed))) return false;
  if (asksBeforeQuit()) return true;
  const platform::Event close("wind"_4cc, 72);
  if (mSendEvent(closed, close) == platform::eventNotHandledErr) removeWindow(closed);
  return true;
}

platform::OSStatus FakeScreen::resize(ControlRef list, platform::FloatRect from,
                                      platform::FloatRect to) {
  platform::Event event("cntl"_4cc, 154);
  event.setParameter("----"_4cc, list);
  event.setParameter("orct"_4cc, from);
  event.setParameter("crct"_4cc, to);
  return mSendEvent(list, event);
}

bool FakeScreen::exists(const std::string& window) const {
  return this->window(window) != WindowRef::None;
}

bool FakeScreen::isVisible(const std::string& window) const {
  return isOnScreen(this->window(window));
}

bool FakeScreen::isBlocked(const std::string& window) const {
  return exists(window) && isBlocked(this->window(window));
}

std::optional<std::string> FakeScreen::text(const std::string& window, ControlId control) const {
  const Control* found = find(window, control);
  if (found == nullptr || found->text.isNull()) return std::nullopt;
  return std::string(found->text.utf8());
}

bool FakeScreen::isEnabled(const std::string& window, ControlId control) const {
  const Control* found = find(window, control);
  return found != nullptr && found->enabled;
}

ControlRef FakeScreen::control(const std::string& window, ControlId id) const {
  return controlIn(this->window(window), id);
}

FakeListControl* FakeScreen::list(const std::string& window, ControlId id) {
  Control* found = find(control(window, id));
  const bool isList = found != nullptr && found->plan.kind == FakeControlPlan::Kind::List;
  return isList ? &found->list : nullptr;
}

WindowRef FakeScreen::window(const std::string& name) const {
  const auto found =
      std::ranges::find_if(mWindows, [&](const auto& entry) { return entry.second.name == name; });
  return found != mWindows.end() ? found->first : WindowRef::None;
}

FakeScreen::Window* FakeScreen::find(WindowRef window) {
  const auto found = mWindows.find(window);
  return found != mWindows.end() ? &found->second : nullptr;
}

FakeScreen::Control* FakeScreen::find(ControlRef control) {
  const auto found = mControls.find(control);
  return found != mControls.end() ? &found->second : nullptr;
}

const FakeScreen::Control* FakeScreen::find(const std::string& window, ControlId id) const {
  const auto found = mControls.find(control(window, id));
  return found != mControls.end() ? &found->second : nullptr;
}

ControlRef FakeScreen::controlIn(WindowRef window, ControlId id) const {
  const auto found = std::ranges::find_if(mControls, [&](const auto& entry) {
    const FakeControlPlan& plan = entry.second.plan;
    return entry.second.owner == window && plan.id.signature == id.signature && plan.id.id == id.id;
  });
  return found != mControls.end() ? found->first : ControlRef::None;
}

bool FakeScreen::attach(WindowRef sheet, WindowRef parent) {
  Window* attached = find(sheet);
  if (attached == nullptr || !attached->isSheet || find(parent) == nullptr) return false;
  if (attached->parent != WindowRef::None) return attached->parent == parent;
  for (WindowRef above = parent; above != WindowRef::None; above = find(above)->parent) {
    if (above == sheet) return false;
  }
  withdrawQuitQuestion(parent);
  attached->parent = parent;
  return true;
}

bool FakeScreen::detach(WindowRef sheet) {
  Window* detached = find(sheet);
  if (detached == nullptr) return false;
  withdrawQuitQuestion(sheet);
  detached->parent = WindowRef::None;
  return true;
}

WindowRef FakeScreen::addWindow(const FakeWindowPlan& plan) {
  const WindowRef window{++mLastRef};
  mWindows[window].name = plan.name;
  mWindows[window].isSheet = plan.isSheet;
  for (const FakeControlPlan& controlPlan : plan.controls) {
    const ControlRef ref{++mLastRef};
    Control& control = mControls.emplace(ref, ref).first->second;
    control.plan = controlPlan;
    control.owner = window;
    control.enabled = controlPlan.enabled;
    control.list.columns = controlPlan.columns;
  }
  return window;
}

// A list's handlers of its end still find it.
void FakeScreen::removeWindow(WindowRef window) {
  std::vector<ControlRef> controls;
  for (const auto& [ref, control] : mControls) {
    if (control.owner == window) controls.push_back(ref);
  }
  for (const ControlRef ref : controls) {
    if (mControls.at(ref).plan.kind == FakeControlPlan::Kind::List) {
      platform::Event disposed("cntl"_4cc, 1001);
      disposed.setParameter("----"_4cc, ref);
      mSendEvent(ref, disposed);
    }
    mControls.erase(ref);
  }
  for (auto& [ref, other] : mWindows) {
    if (other.parent == window) other.parent = WindowRef::None;
  }
  mWindows.erase(window);
}

void FakeScreen::setMenuCommands(const std::vector<platform::FourCharCode>& commands) {
  mMenuCommands = commands;
}

bool FakeScreen::isOnScreen(WindowRef window) const {
  const auto found = mWindows.find(window);
  if (found == mWindows.end()) return false;
  const Window& shown = found->second;
  return shown.parent == WindowRef::None ? shown.shown : isOnScreen(shown.parent);
}

bool FakeScreen::isBlocked(WindowRef window) const {
  return std::ranges::any_of(mWindows,
                             [&](const auto& entry) { return entry.second.parent == window; });
}

bool FakeScreen::asksBeforeQuit() {
  for (const auto& [ref, sheet] : mWindows) {
    Window* question = find(sheet.quitQuestion);
    if (question == nullptr) continue;
    if (question->parent != WindowRef::None) return true;
    if (!isOnScreen(ref) || isBlocked(ref)) continue;
    question->parent = ref;
    return true;
  }
  return false;
}

bool FakeScreen::isQuitQuestion(WindowRef window) const {
  return std::ranges::any_of(
      mWindows, [&](const auto& entry) { return entry.second.quitQuestion == window; });
}

void FakeScreen::withdrawQuitQuestion(WindowRef sheet) {
  if (Window* question = find(find(sheet)->quitQuestion)) question->parent = WindowRef::None;
}

bool FakeScreen::takesInput(const std::string& window) const {
  return isVisible(window) && !isBlocked(window);
}
