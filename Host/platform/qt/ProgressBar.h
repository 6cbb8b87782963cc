// A progress bar that fills smoothly and tells assistive technology of every tenth only (a
// ProgressBar in an interface file, promoted from QProgressBar). Owned by its window.
#pragma once

#include <QProgressBar>

namespace platform {

class ProgressBar : public QProgressBar {
 public:
  using QProgressBar::QProgressBar;

  // Moves without an end.
  void showBusy();

  // Filled so far, from 0 to 1; what is beyond them counts as the nearer one.
  void showPart(double part);

  // What showPart() was told last; below 0 while it is busy.
  double part() const { return mPart; }

 protected:
  void initStyleOption(QStyleOptionProgressBar* option) const override;

 private:
  double mPart = -1;
};

}  // namespace platform
