// A button that copies texts of its window to the clipboard (a CopyButton in an interface file,
// promoted from QPushButton): those of the widgets whose names are in its dynamic property
// "copies", one below the other. Its own text is then that in its property "copiedText". It issues
// no command. Owned by its window.
#pragma once

#include "platform/qt/Button.h"

namespace platform {

class CopyButton final : public Button {
 public:
  explicit CopyButton(QWidget* parent);

 private:
  void copy();
};

}  // namespace platform
