// The program's windows on Qt, without the program: a test looks at the widgets themselves and does
// to them what mouse, keyboard and assistive technology do. Commands that come out are kept.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "FakeBundle.h"
#include "platform/Events.h"
#include "platform/Toolkit.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/QtApplication.h"

class QtWindows : public testing::Test {
 protected:
  QtWindows();
  ~QtWindows() override;

  platform::Toolkit& toolkit() { return mApplication->toolkit(); }

  platform::WindowRef create(const char* window);
  // The main window, on screen, with its Download button enabled.
  void showMain();
  platform::WindowRef showSheet(const char* sheet);

  // The widget of a window that was made from that file; null when there is none.
  QWidget* window(const char* name);
  QAbstractButton* button(const char* name, platform::FourCharCode command);
  QAction* action(platform::FourCharCode command);
  platform::ListControl& list();

  // Rows named after their items, the first selected where there is one.
  void fillList(int rows);

  static void press(QWidget& widget, Qt::Key key, bool autoRepeat = false);
  // What assistive technology does to a control.
  static void pressByAssistiveTechnology(QWidget& widget);

  // A button that assistive technology presses goes down for a moment first.
  static void waitForClick();

  // Lets Qt do what it has put off.
  static void settle();

  FakeBundle mBundle;
  std::unique_ptr<platform::QtApplication> mApplication;
  platform::NibRef mNib = platform::NibRef::None;
  platform::WindowRef mMain = platform::WindowRef::None;
  std::vector<std::string> mCommands;
  std::function<void()> mOnCommand;

 private:
  static platform::OSStatus keep(platform::EventHandlerCallRef call, const platform::Event& event,
                                 void* userData);
};
