// Keeps sheets from being answered by accident, all of them and in one place. A sheet takes a key,
// a click or the close button of its frame only when everything that was down when it appeared has
// been let go, and nothing was pressed or let go for half a second. That time starts when the sheet
// is really on the screen, for keys again each time it gets the keyboard, and every press in it
// starts it anew: who types or clicks on has not read the question. A key that is held down never
// answers.
//
// The release of a key may go to another program, which had the keyboard: a key that gives no sign
// of being held for some seconds counts as let go. So may its press: a release without a press is
// taken for the sign of a key that was held down, since keys that repeat are released each time.
//
// A program that hangs must not take what was pressed meanwhile for an answer: `now` is to be a
// clock that stands still with it.
//
// Assistive technology presses a button without any key or click and is not held up; neither is
// Quit. Owned by the toolkit; needs the QApplication.
#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QObject>
#include <QWindow>
#include <chrono>
#include <functional>
#include <map>

namespace platform {

class SheetGuard : public QObject {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit SheetGuard(std::function<Time()> now);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Key {
    Time lastSign;
    bool mustBeLetGo = false;
  };

  bool refuses(QWindow& window, QEvent& event);
  void sheetAppears();
  void keyPressed(const QKeyEvent& event);
  void keyReleased(const QKeyEvent& event);
  void mousePressed(const QMouseEvent& event);
  void pressArrives();
  bool isQuiet(Time now) const;

  std::function<Time()> mNow;
  std::map<quint32, Key> mKeysDown;  // by their places on the keyboard
  Qt::KeyboardModifiers mModifiersToLetGo;
  Qt::MouseButtons mButtonsToLetGo;
  Time mLastInput;
  Time mKeyboardSince;
  const QWindow* mNotYetOnScreen = nullptr;
  bool mTakesKeys = false;
  bool mTakesClicks = false;
  bool mTookKey = false;  // the last that was pressed
};

}  // namespace platform
