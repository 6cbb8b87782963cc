// A line in a window that says what a command lacks (a Notice there, promoted from QLabel): the
// command in its dynamic property "selectionMissingFor" was issued with nothing selected in the
// window's list. With the property "saysCopied" it says that something is on the clipboard. A page
// of a QStackedWidget, whose first page it stands in for. Owned by its window.
#pragma once

#include <QLabel>

#include "platform/FourCharCode.h"

namespace platform {

class ListControl;

class Notice : public QLabel {
 public:
  explicit Notice(QWidget* parent);

  // Goes with the next selection in `list`, which the keyboard gets when it appears.
  void watch(ListControl& list);

  // To be called for each command that is issued in the window. Assistive technology reads the
  // line out each time that it appears.
  void noteCommand(FourCharCode command);

  // To be called when something has been copied.
  void noteCopied();

 private:
  void appear();
  void leave();

  ListControl* mList = nullptr;
};

}  // namespace platform
