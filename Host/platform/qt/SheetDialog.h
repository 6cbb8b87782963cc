// A sheet of an interface file (a QDialog there). Escape and the window manager's close button
// issue the command in its dynamic property "cancelCommand"; without one they do nothing, so that a
// running download is not dismissed by accident. Only the program hides a sheet. Owned by the
// toolkit.
#pragma once

#include <QDialog>
#include <functional>
#include <utility>

#include "platform/FourCharCode.h"

namespace platform {

class SheetDialog : public QDialog {
 public:
  explicit SheetDialog(QWidget* parent);

  void whenCancelled(std::function<void(FourCharCode command)> cancelled) {
    mCancelled = std::move(cancelled);
  }

  // Shows the sheet in front of `over`, in the size that its texts need.
  void showOver(QWidget& over);

  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitToContents();

  std::function<void(FourCharCode)> mCancelled;
};

}  // namespace platform
