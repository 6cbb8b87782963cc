// A sheet of the main window: a window of the interface file with, optionally, one text that can be
// set. Made once, hidden, and then shown and hidden; the window lives until the process ends.
#pragma once

#include "platform/FourCharCode.h"
#include "platform/Handles.h"
#include "platform/Text.h"

class DialogSheet {
 public:
  // `msgControlSignature` names the text's control; 0 for a sheet without one. Throws
  // std::runtime_error when the window or the control is not there.
  DialogSheet(const platform::Text& windowName, platform::NibRef nib, platform::WindowRef parent,
              platform::FourCharCode msgControlSignature);
  virtual ~DialogSheet();
  DialogSheet(const DialogSheet&) = delete;
  DialogSheet& operator=(const DialogSheet&) = delete;

  void show();
  void hide();

  // Sets nothing on a sheet without a text control.
  void setMsg(const platform::Text& text);

 protected:
  platform::NibRef nib() const { return mNib; }
  platform::WindowRef sheet() const { return mSheet; }

 private:
  platform::NibRef mNib;
  platform::WindowRef mSheet = platform::WindowRef::None;
  platform::WindowRef mParent;
  platform::ControlRef mMsgControl = platform::ControlRef::None;
};
