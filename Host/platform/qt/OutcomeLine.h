// The line in a window that says which printer was updated last, and when (an OutcomeLine in an
// interface file, promoted from QLabel), or that a download could not start. Empty when the last
// one ended with an alert. The label that its dynamic property "mark" names is there after a
// success. It has two lines' height, whatever it says: a name that is too long for that is cut, but
// for assistive technology and in the tool tip. Owned by its window.
#pragma once

#include <QString>

#include "platform/qt/DownloadWatcher.h"
#include "platform/qt/LiveLabel.h"

namespace platform {

class DownloadState;

class OutcomeLine : public LiveLabel, public DownloadWatcher {
 public:
  using LiveLabel::LiveLabel;

  void watch(const DownloadState& download) override;

  int heightForWidth(int width) const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void tellOutcome(const DownloadState& download);
  QString fitting() const;

  QString mSentence;  // with %1 for the printer
  QString mPrinter;
  QString mInfo;
};

}  // namespace platform
