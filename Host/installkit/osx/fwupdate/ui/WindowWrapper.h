// One window of the interface file, disposed of when this object goes, if it is still there then.
// It is created hidden.
#pragma once

#include "platform/Handles.h"
#include "platform/Text.h"

class NibWrapper;

class WindowWrapper {
 public:
  // Throws std::runtime_error when the window cannot be created.
  WindowWrapper(const platform::Text& name, NibWrapper& nib);
  ~WindowWrapper();
  WindowWrapper(const WindowWrapper&) = delete;
  WindowWrapper& operator=(const WindowWrapper&) = delete;

  platform::WindowRef get() const { return mWindow; }

 private:
  platform::WindowRef mWindow = platform::WindowRef::None;
};
