// A label of an alert that says something of the download which the alert is about (a ReportLabel
// in an interface file, promoted from QLabel). Its dynamic property "reports" says what:
// "headline", "printer", "versions", "cause" or "nextStep". What the file has as its text stands
// where there is nothing else to say; a label without any text hides. Owned by its window.
#pragma once

#include <QLabel>

#include "platform/qt/DownloadWatcher.h"

namespace platform {

class ReportLabel final : public QLabel, public DownloadWatcher {
 public:
  using QLabel::QLabel;

  void watch(const DownloadState& download) override;
};

}  // namespace platform
