#include "platform/qt/WindowStack.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QWindow>
#include <utility>

#include "platform/qt/SheetDialog.h"

namespace platform {
namespace {

QWidget& contentsOf(QWidget& window) {
  const auto* mainWindow = qobject_cast<QMainWindow*>(&window);
  const bool hasContents = mainWindow != nullptr && mainWindow->centralWidget() != nullptr;
  return hasContents ? *mainWindow->centralWidget() : window;
}

}  // namespace

// Some window managers give the keyboard to a blocked window when it is clicked; Escape would then
// reach nobody.
WindowStack::WindowStack()
    : mFocusChanges(QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged,
                                     [this](const QWindow* window) { passKeyboardOn(window); })) {}

WindowStack::~WindowStack() {
  QObject::disconnect(mFocusChanges);
  for (const WindowRef window : all()) remove(window);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

WindowRef WindowStack::add(std::unique_ptr<QWidget> window) {
  const auto ref = static_cast<WindowRef>(++mLastRef);
  mWindows[ref].widget = window.release();
  return ref;
}

WindowStack::Window* WindowStack::find(WindowRef window) {
  const auto found = mWindows.find(window);
  return found == mWindows.end() ? nullptr : &found->second;
}

QWidget* WindowStack::widget(WindowRef window) const {
  const auto found = mWindows.find(window);
  return found == mWindows.end() ? nullptr : found->second.widget;
}

WindowRef WindowStack::refOf(const QWidget& window) const {
  for (const auto& [ref, each] : mWindows) {
    if (each.widget == &window) return ref;
  }
  return WindowRef::None;
}

std::vector<WindowRef> WindowStack::all() const {
  std::vector<WindowRef> refs;
  for (const auto& each : mWindows) refs.push_back(each.first);
  return refs;
}

void WindowStack::show(WindowRef window) {
  Window* shown = find(window);
  if (shown == nullptr) return;
  shown->shown = true;
  present(window);
}

bool WindowStack::attach(WindowRef sheet, WindowRef parent) {
  Window* attached = find(sheet);
  if (attached == nullptr || find(parent) == nullptr) return false;
  if (attached->parent == parent) return true;
  if (attached->parent != WindowRef::None) return false;
  for (WindowRef above = parent; above != WindowRef::None; above = find(above)->parent) {
    if (above == sheet) return false;
  }
  attached->parent = parent;
  updateBlocking();
  if (isOnScreen(*find(parent))) present(sheet);
  return true;
}

bool WindowStack::detach(WindowRef sheet) {
  Window* detached = find(sheet);
  if (detached == nullptr) return false;
  if (detached->parent == WindowRef::None) return true;
  hideWithSheets(sheet);
  detached->parent = WindowRef::None;
  updateBlocking();
  return true;
}

// The widgets of sheets are children of their parent's: they are taken out before it goes.
void WindowStack::remove(WindowRef window) {
  Window* removed = find(window);
  if (removed == nullptr) return;
  for (const WindowRef sheet : sheetsOf(window)) detach(sheet);
  detach(window);
  for (auto& [ref, each] : mWindows) {
    if (each.widget->parentWidget() == removed->widget) each.widget->setParent(nullptr);
  }
  removed->widget->hide();
  removed->widget->deleteLater();
  mWindows.erase(window);
}

void WindowStack::setActions(WindowRef window, QActionGroup& actions) {
  Window* owner = find(window);
  if (owner == nullptr) return;
  owner->actions = &actions;
  actions.setEnabled(!isBlocked(window));
}

bool WindowStack::isBlocked(WindowRef window) const { return !sheetsOf(window).empty(); }

bool WindowStack::isUp(WindowRef window) const {
  const auto found = mWindows.find(window);
  return found != mWindows.end() && isOnScreen(found->second);
}

void WindowStack::activate(WindowRef window) {
  if (isUp(window)) widget(window)->activateWindow();
}

bool WindowStack::isOnScreen(const Window& window) const {
  if (window.parent == WindowRef::None) return window.shown;
  return isOnScreen(mWindows.at(window.parent));
}

void WindowStack::updateBlockingOf(WindowRef ref) {
  Window& window = *find(ref);
  QWidget& contents = contentsOf(*window.widget);
  const bool blocked = isBlocked(ref);
  if (contents.isEnabled() == !blocked) return;
  if (blocked) window.focus = window.widget->focusWidget();
  contents.setEnabled(!blocked);
  if (window.actions != nullptr) window.actions->setEnabled(!blocked);
  if (blocked) return;
  if (window.focus != nullptr) window.focus->setFocus();
  activate(ref);
}

void WindowStack::updateBlocking() { updateBlockingBelow(WindowRef::None); }

// From the bottom up, since disabling a window reaches the sheets among its children too.
void WindowStack::updateBlockingBelow(WindowRef parent) {
  for (const WindowRef window : sheetsOf(parent)) {
    updateBlockingOf(window);
    if (isBlocked(window)) updateBlockingBelow(window);
  }
}

void WindowStack::present(WindowRef window) {
  const Window& presented = *find(window);
  QWidget& shown = *presented.widget;
  QWidget* const over = widget(presented.parent);
  auto* const sheet = dynamic_cast<SheetDialog*>(&shown);
  if (sheet != nullptr && over != nullptr) {
    sheet->showOver(*over);
  } else {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): another type is not a null pointer
    shown.show();
    shown.activateWindow();
  }
  for (const WindowRef each : sheetsOf(window)) present(each);
}

// An open menu needs the keyboard.
void WindowStack::passKeyboardOn(const QWindow* focused) {
  if (focused == nullptr || QApplication::activePopupWidget() != nullptr) return;
  for (const auto& [ref, each] : mWindows) {
    if (each.widget->windowHandle() != focused || !isBlocked(ref)) continue;
    WindowRef top = ref;
    while (isBlocked(top)) top = sheetsOf(top).back();
    widget(top)->activateWindow();
    return;
  }
}

void WindowStack::hideWithSheets(WindowRef window) {
  for (const WindowRef sheet : sheetsOf(window)) hideWithSheets(sheet);
  widget(window)->hide();
}

// With None: the windows that are no sheets, or are not up.
std::vector<WindowRef> WindowStack::sheetsOf(WindowRef parent) const {
  std::vector<WindowRef> refs;
  for (const auto& [ref, each] : mWindows) {
    if (each.parent == parent) refs.push_back(ref);
  }
  return refs;
}

}  // namespace platform
