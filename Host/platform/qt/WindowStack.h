// The windows, which sheet is up on which, and what that blocks and shows. A sheet whose parent is
// not on screen appears together with it. Of a blocked main window the contents are disabled, and
// not its menu bar: Quit is there. When a sheet goes, what it blocked is made the active window,
// and the control that had the focus gets it back. Used by the toolkit, which owns it.
#pragma once

#include <QActionGroup>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>
#include <map>
#include <memory>
#include <vector>

#include "platform/Handles.h"

namespace platform {

class WindowStack {
 public:
  WindowStack();
  ~WindowStack();
  WindowStack(const WindowStack&) = delete;
  WindowStack& operator=(const WindowStack&) = delete;

  WindowRef add(std::unique_ptr<QWidget> window);

  // Null when it is gone.
  QWidget* widget(WindowRef window) const;
  WindowRef refOf(const QWidget& window) const;  // None when there is none
  std::vector<WindowRef> all() const;

  void show(WindowRef window);

  // Both refuse, and change nothing, when a window is gone; attaching also when the sheet is up
  // elsewhere already, or would block itself.
  bool attach(WindowRef sheet, WindowRef parent);
  bool detach(WindowRef sheet);

  // Its sheets stay, but come off the screen. The widget is deleted by the event loop, since it may
  // be in the middle of an event.
  void remove(WindowRef window);

  // Actions that the window's sheets disable with it.
  void setActions(WindowRef window, QActionGroup& actions);

  bool isBlocked(WindowRef window) const;

  // Whether it is on screen, a sheet together with its parent.
  bool isUp(WindowRef window) const;

  // Makes it the active window.
  void activate(WindowRef window);

 private:
  struct Window {
    QWidget* widget = nullptr;
    WindowRef parent = WindowRef::None;  // of a sheet that is up
    bool shown = false;                  // of a window that is no sheet
    QPointer<QWidget> focus;             // while it is blocked
    QPointer<QActionGroup> actions;
  };

  Window* find(WindowRef window);
  bool isOnScreen(const Window& window) const;
  void updateBlockingOf(WindowRef ref);
  void updateBlocking();
  void updateBlockingBelow(WindowRef parent);
  void present(WindowRef window);
  void hideWithSheets(WindowRef window);

  // To the sheet on top, when a blocked window has got the keyboard.
  void passKeyboardOn(const QWindow* focused);
  std::vector<WindowRef> sheetsOf(WindowRef parent) const;

  std::map<WindowRef, Window> mWindows;
  std::uint64_t mLastRef = 0;
  QMetaObject::Connection mFocusChanges;
};

}  // namespace platform
