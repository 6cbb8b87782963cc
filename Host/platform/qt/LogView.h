// The log of the download that an alert is about, line by line, to be read and copied (a LogView in
// an interface file, promoted from QPlainTextEdit). Its height is bounded: it scrolls. Owned by its
// window.
#pragma once

#include <QPlainTextEdit>

#include "platform/qt/DownloadWatcher.h"

namespace platform {

class LogView final : public QPlainTextEdit, public DownloadWatcher {
 public:
  explicit LogView(QWidget* parent);

  void watch(const DownloadState& download) override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  QSize sizeOfLines(int count) const;
};

}  // namespace platform
