// A button that shows parts of its window and hides them again (a DisclosureButton in an interface
// file, promoted from QPushButton): the widgets whose names are in its dynamic property
// "discloses", hidden at first. Assistive technology hears whether it is expanded. It issues no
// command. Owned by its window.
#pragma once

#include "platform/qt/Button.h"

namespace platform {

class DisclosureButton final : public Button {
 public:
  explicit DisclosureButton(QWidget* parent);

  bool isExpanded() const { return mExpanded; }

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void setExpanded(bool expanded);
  void showState();

  bool mExpanded = false;
};

}  // namespace platform
