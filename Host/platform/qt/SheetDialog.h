// A sheet of an interface file (a QDialog there). Escape issues the command in its dynamic property
// "cancelCommand", and so does the close button of its frame, unless the property "closeCommand"
// names another; without them they do nothing, so that a running download is not dismissed by
// accident. Only the program hides a sheet. It is as high as what it shows, and no higher than the
// screen.
//
// A sheet is about the row that is selected in the list of the window below it. A label with the
// property "selectedColumns" ("lcNm lcId") says which row that is: its text in the first of these
// columns, and that in the second in parentheses. The sheet leaves the row in sight where the
// screen has the room, and where programs place their own windows: on Wayland they do not. Owned by
// the toolkit.
#pragma once

#include <QDialog>
#include <functional>
#include <utility>

#include "platform/FourCharCode.h"

namespace platform {

class ListControl;

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
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  FourCharCode closeCommand() const;
  void issue(FourCharCode command);
  void fitToContents();
  void keepOnScreen();
  void nameRow(const ListControl& list);
  bool placeClearOf(const QRect& row, const QWidget& over);

  std::function<void(FourCharCode)> mCommanded;
};

}  // namespace platform
