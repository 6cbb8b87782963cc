#include "platform/qt/SheetGuard.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "platform/qt/SheetDialog.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr auto kQuietTime = 500ms;

// Longer than keyboards wait until a key repeats.
constexpr auto kForgottenAfter = 3s;

// Null for a window that is no sheet.
const SheetDialog* sheetOf(const QWindow& window) {
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto found = std::ranges::find(windows, &window, &QWidget::windowHandle);
  return found == windows.end() ? nullptr : dynamic_cast<const SheetDialog*>(*found);
}

bool isInSheet(const QObject& object) {
  const auto* widget = qobject_cast<const QWidget*>(&object);
  return widget != nullptr && dynamic_cast<const SheetDialog*>(widget->window()) != nullptr;
}

// What a key means depends on modifiers and layouts, its place does not.
quint32 placeOf(const QKeyEvent& event) {
  return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<quint32>(event.key());
}

}  // namespace

SheetGuard::SheetGuard(std::function<Time()> now) : mNow(std::move(now)) {
  QCoreApplication::instance()->installEventFilter(this);
}

// Keys and clicks come to a window first and go to its controls from there, but for those that a
// button has as its shortcut.
bool SheetGuard::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) return isInSheet(*watched) && !mTookKey;
  auto* const window = qobject_cast<QWindow*>(watched);
  return window != nullptr && refuses(*window, *event);
}

bool SheetGuard::refuses(QWindow& window, QEvent& event) {
  switch (event.type()) {
    case QEvent::Show:
      if (sheetOf(window) == nullptr) return false;
      mNotYetOnScreen = &window;
      sheetAppears();
      return false;
    case QEvent::Expose:
      if (mNotYetOnScreen != &window || !window.isExposed()) return false;
      mNotYetOnScreen = nullptr;
      sheetAppears();
      return false;
    case QEvent::FocusIn:
      mKeyboardSince = mNow();
      mTakesKeys = false;
      return false;
    case QEvent::ShortcutOverride:
      keyPressed(static_cast<QKeyEvent&>(event));
      return false;
    case QEvent::KeyPress:
      keyPressed(static_cast<QKeyEvent&>(event));
      return sheetOf(window) != nullptr && !mTookKey;
    case QEvent::KeyRelease:
      keyReleased(static_cast<QKeyEvent&>(event));
      return false;
    case QEvent::MouseMove:
      mButtonsToLetGo &= static_cast<QMouseEvent&>(event).buttons();
      return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      mousePressed(static_cast<QMouseEvent&>(event));
      return sheetOf(window) != nullptr && !mTakesClicks;
    case QEvent::MouseButtonRelease:
      mButtonsToLetGo &= static_cast<QMouseEvent&>(event).buttons();
      mLastInput = mNow();
      return false;
    case QEvent::Close:
      if (const auto* sheet = sheetOf(window); !sheet || !sheet->isAnsweredByClosing())
        return false;
      pressArrives();
      event.setAccepted(mTakesClicks);
      return !mTakesClicks;
    default:
      return false;
  }
}

void SheetGuard::sheetAppears() {
  mTakesKeys = mTakesClicks = false;
  mLastInput = mNow();
  for (auto& each : mKeysDown) each.second.mustBeLetGo = true;
  mModifiersToLetGo =
      QGuiApplication::queryKeyboardModifiers() &
      (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  mButtonsToLetGo = QGuiApplication::mouseButtons();
}

// Comes twice for a press that is no shortcut.
void SheetGuard::keyPressed(const QKeyEvent& event) {
  mModifiersToLetGo &= event.modifiers();
  pressArrives();
  mTookKey = mTakesKeys && !event.isAutoRepeat();
  Key& key = mKeysDown[placeOf(event)];
  key.lastSign = mLastInput;
  if (!mTookKey) key.mustBeLetGo = true;
}

void SheetGuard::keyReleased(const QKeyEvent& event) {
  mModifiersToLetGo &= event.modifiers();
  mLastInput = mNow();
  if (mKeysDown.erase(placeOf(event)) == 0) mTakesKeys = mTakesClicks = false;
  if (event.isAutoRepeat()) mKeysDown[placeOf(event)] = {mLastInput, true};
}

void SheetGuard::mousePressed(const QMouseEvent& event) {
  mModifiersToLetGo &= event.modifiers();
  mButtonsToLetGo &= event.buttons();
  pressArrives();
  if (!mTakesClicks) mButtonsToLetGo |= event.button();
}

void SheetGuard::pressArrives() {
  const Time now = mNow();
  if (isQuiet(now)) {
    mTakesClicks = true;
    mTakesKeys = mTakesKeys || now - mKeyboardSince >= kQuietTime;
  }
  mLastInput = now;
}

bool SheetGuard::isQuiet(Time now) const {
  const bool isKeyHeld = std::ranges::any_of(mKeysDown, [&](const auto& each) {
    return each.second.mustBeLetGo && now - each.second.lastSign < kForgottenAfter;
  });
  return mNotYetOnScreen == nullptr && !isKeyHeld && !mModifiersToLetGo && !mButtonsToLetGo &&
         now - mLastInput >= kQuietTime;
}

}  // namespace platform
