// A sheet of an interface file (a QDialog there). Escape issues the command in its dynamic property
// "cancelCommand", and so does the close button of its frame, unless the property "closeCommand"
// names another; without them they do nothing, so that a running download is not dismissed by
// accident. Only the program hides a sheet. Owned by the toolkit.
#pragma once

#include <QDialog>
#include <functional>
#include <utility>

#include "platform/FourCharCode.h"

namespace platform {

class SheetDialog : public QDialog {
 public:
  explicit SheetDialog(QWidget* parent);

  void whenCommanded(std::function<void(FourCharCode command)> commanded) {
    mCommanded = std::move(commanded);
  }

  // Shows the sheet in front of `over`, in the size that its texts need.
  void showOver(QWidget& over);

  // Whether the close button of its frame does the same as Escape.
  bool isAnsweredByClosing() const;

  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  FourCharCode closeCommand() const;
  void issue(FourCharCode command);
  void fitToContents();

  std::function<void(FourCharCode)> mCommanded;
};

}  // namespace platform
